#pragma once

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>

#include <chrono>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "X11TestClientProcess.h"
#include "platform/sim/SimMainLoop.h"
#include "platform/x11/X11Accessibility.h"
#include "platform/xdg/XdgProcessLauncher.h"

namespace x11test {

using platform::AXErrorCode;
using platform::AXUIElementRef;
using platform::CFValue;

// A test on the real desktop: the accessibility backend on its own X
// connection, its events taken in by a main loop that the test runs.
class X11DesktopTest : public ::testing::Test {
  protected:
    void SetUp() override {
        if (!std::getenv("DISPLAY"))
            GTEST_SKIP() << "needs a display (scripts/virtual-desktop.sh)";
        ax = platform::x11::X11Accessibility::open(loop);
        ASSERT_TRUE(ax) << "cannot open the display";
        ASSERT_TRUE(waitForManagedWindows()) << "the window manager manages no window";
    }
    void TearDown() override {
        for (const pid_t group : startedGroups) {
            ::kill(-group, SIGKILL);
            ::waitpid(group, nullptr, 0);
        }
    }

    // Starts a program in a session of its own, ended with the test; with a
    // title, waits for its window.
    pid_t start(std::vector<std::string> commandLine, const std::string& title = {}) {
        platform::xdg::XdgProcessLauncher::Options options;
        options.quiet = true;
        const auto started = launcher.spawn(std::move(commandLine), options);
        EXPECT_TRUE(started) << started.error;
        startedGroups.push_back(started.pid);
        EXPECT_TRUE(title.empty() || windowTitled(started.pid, title, 10)) << title;
        return started.pid;
    }

    // A window manager that has only just started may announce itself and
    // still miss a window mapped in that moment, leaving it unmanaged for
    // good. A probe window that it does manage shows it is ready.
    bool waitForManagedWindows() {
        for (int attempt = 0; attempt < 20; ++attempt) {
            TestClient probe;
            probe.create("probe", "Desktop probe");
            if (windowTitled(probe.pid(), "Desktop probe", 1))
                return true;
        }
        return false;
    }

    // Runs the loop until the predicate holds; false when the time ran out.
    bool eventually(const std::function<bool()>& predicate, double seconds = 5) {
        return loop.runUntil(predicate, seconds);
    }

    AXErrorCode read(const AXUIElementRef& element, const std::string& attribute,
                     std::optional<CFValue>& value) {
        value.reset();
        return ax->copyAttributeValue(element, attribute, value);
    }
    std::optional<CFValue> value(const AXUIElementRef& element, const std::string& attribute) {
        std::optional<CFValue> result;
        read(element, attribute, result);
        return result;
    }
    std::string text(const AXUIElementRef& element, const std::string& attribute) {
        auto result = value(element, attribute);
        const auto* string = result ? result->get<std::string>() : nullptr;
        return string ? *string : "<none>";
    }
    bool flag(const AXUIElementRef& element, const std::string& attribute) {
        auto result = value(element, attribute);
        const auto* boolean = result ? result->get<bool>() : nullptr;
        return boolean && *boolean;
    }
    AXUIElementRef elementOf(const AXUIElementRef& element, const std::string& attribute) {
        auto result = value(element, attribute);
        const auto* handle = result ? result->get<AXUIElementRef>() : nullptr;
        return handle ? *handle : nullptr;
    }

    std::vector<AXUIElementRef> windowsOf(pid_t pid) {
        std::vector<AXUIElementRef> windows;
        auto list = value(ax->createApplication(pid), "AXWindows");
        if (const auto* array = list ? list->get<CFValue::Array>() : nullptr) {
            for (const auto& item : *array)
                windows.push_back(*item.get<AXUIElementRef>());
        }
        return windows;
    }
    std::vector<std::string> titlesOf(pid_t pid) {
        std::vector<std::string> titles;
        for (const auto& window : windowsOf(pid))
            titles.push_back(text(window, "AXTitle"));
        return titles;
    }
    // The process's window with the title, once the backend has seen it.
    AXUIElementRef windowTitled(pid_t pid, const std::string& title, double seconds = 5) {
        AXUIElementRef found;
        eventually(
            [&] {
                for (const auto& window : windowsOf(pid)) {
                    if (text(window, "AXTitle") == title)
                        found = window;
                }
                return found != nullptr;
            },
            seconds);
        return found;
    }

    platform::sim::SimMainLoop loop;
    std::unique_ptr<platform::x11::X11Accessibility> ax;
    platform::xdg::XdgProcessLauncher launcher{loop};
    std::vector<pid_t> startedGroups;
};

}  // namespace x11test
