// A first run as a new user meets it, on a desktop whose window manager
// starts late: the permission page, the grant, the relaunch through the
// helper, the instructions once, then the panel at once. And the About
// window from the status menu, one at a time.
#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "AccessibilityBus.h"
#include "DesktopDriver.h"
#include "PreferenceFile.h"
#include "RunningProgram.h"
#include "x11/InputTestDisplay.h"

namespace {

using e2e::AccessibleNode;
using e2e::eventually;
using e2e::Geometry;

const char* const chordText = "⌃⌥⇧";

e2e::Point centreOf(const AccessibleNode& node) {
    return {node.x + node.width / 2, node.y + node.height / 2};
}

Geometry extentsOf(const AccessibleNode& node) {
    return {node.x, node.y, node.width, node.height};
}

std::string describe(const std::optional<AccessibleNode>& tree) {
    std::string text;
    if (tree) {
        for (const auto* node : tree->flattened())
            text +=
                "[" + node->role + "] " + node->name + (node->enabled ? "" : " (disabled)") + "\n";
    }
    return text;
}

// The first label whose text holds the part.
const AccessibleNode* labelHolding(const AccessibleNode& tree, const std::string& part) {
    for (const auto* node : tree.flattened()) {
        if (node->role == "label" && node->name.find(part) != std::string::npos)
            return node;
    }
    return nullptr;
}

// The program's top-level window of that title that holds the control:
// the panel, hidden, holds a copy of the permission steps too.
const AccessibleNode* windowWith(const AccessibleNode& application, const std::string& title,
                                 const std::string& role, const std::string& name) {
    for (const auto& window : application.children) {
        if (window.name == title && window.find(role, name))
            return &window;
    }
    return nullptr;
}

// A desktop of the test's own, with no window manager until the test starts
// one, and the accessibility bus on it.
class FirstRunOnDesktopTest : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(display.started()) << "Xvfb did not start";
        environment.set("DISPLAY", display.name());
    }

    // The window of that title of the program's process, once it holds the
    // control; nothing when it doesn't come.
    std::optional<AccessibleNode> windowWith(pid_t pid, const std::string& title,
                                             const std::string& role, const std::string& name,
                                             double seconds = 20) {
        std::optional<AccessibleNode> window;
        eventually(
            [&] {
                const auto tree = bus().application("Tarnwick", 1, pid);
                const auto* found = tree ? ::windowWith(*tree, title, role, name) : nullptr;
                if (found)
                    window = *found;
                return found != nullptr;
            },
            seconds);
        return window;
    }

    e2e::AccessibilityBus& bus() { return e2e::AccessibilityBus::shared(); }

    x11test::InputTestDisplay display;
    testsupport::ScopedEnvironment environment;
    e2e::PrivateFolders folders;
};

}  // namespace

TEST_F(FirstRunOnDesktopTest, PermissionPageThenGrantRelaunchInstructionsOnceAndThePanelAtLast) {
    ASSERT_TRUE(bus().isUp());
    e2e::Desktop desktop;
    e2e::RunningProgram first(e2e::tarnwickExecutable(), {});
    ASSERT_TRUE(first.waitUntilHandling(SIGTERM, 20)) << first.standardError();

    // No window manager: the permission is missing.
    auto page = windowWith(first.pid(), "Tarnwick", "label", "Welcome to Tarnwick!");
    ASSERT_TRUE(page) << describe(bus().application("Tarnwick", 1, first.pid()))
                      << first.standardOutput() << first.standardError();
    EXPECT_FALSE(page->find("push button", "Relaunch App")->enabled) << describe(page);
    EXPECT_TRUE(page->find("image", "Permission missing")) << describe(page);
    EXPECT_TRUE(e2e::saveScreenshot(extentsOf(*page),
                                    TARNWICK_ARTIFACTS_DIR "/onboarding-permission-light.png"));

    desktop.click(centreOf(*page->find("push button", "Accessibility Permission")));
    e2e::RunningProgram windowManager("/usr/bin/openbox", {"--sm-disable"});
    ASSERT_TRUE(eventually([&] { return desktop.windowManagerRuns(); }, 10));
    const auto managed = std::chrono::steady_clock::now();
    ASSERT_TRUE(eventually(
        [&] {
            page = windowWith(first.pid(), "Tarnwick", "label", "Welcome to Tarnwick!", 1);
            const auto* relaunch = page ? page->find("push button", "Relaunch App") : nullptr;
            return relaunch && relaunch->enabled && page->find("image", "Permission granted");
        },
        10))
        << describe(page);
    std::printf(
        "seal green and relaunch enabled %.0f ms after the window manager answered\n",
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - managed)
            .count());

    // The old process ends and the helper starts a new one.
    desktop.click(centreOf(*page->find("push button", "Relaunch App")));
    EXPECT_EQ(first.waitForExit(10), (e2e::ExitStatus{true, 0})) << first.standardOutput();
    std::vector<pid_t> relaunched;
    ASSERT_TRUE(eventually([&] {
        relaunched = folders.processesRunning(e2e::tarnwickExecutable());
        return relaunched.size() == 1;
    })) << first.standardOutput()
        << first.standardError();
    const pid_t second = relaunched.front();
    EXPECT_NE(second, first.pid());

    page = windowWith(second, "Tarnwick", "push button", "OK");
    ASSERT_TRUE(page) << describe(bus().application("Tarnwick", 1, second))
                      << first.standardOutput() << first.standardError();
    const auto* instructions = labelHolding(*page, "invoke the following keyboard shortcut:");
    ASSERT_TRUE(instructions) << describe(page);
    EXPECT_NE(instructions->name.find(chordText), std::string::npos) << instructions->name;
    EXPECT_EQ(e2e::readPreferenceFile(folders.preferenceFile())["needsShowingInstructions"],
              platform::PropertyList(false));
    EXPECT_TRUE(e2e::saveScreenshot(extentsOf(*page),
                                    TARNWICK_ARTIFACTS_DIR "/onboarding-instructions-light.png"));

    // The window manager may still be placing the window as it is first
    // read: click where the button is now until the window goes.
    const auto instructionsClosed = [&] {
        for (const auto& window : desktop.clientWindowsOf(second)) {
            if (window.title == "Tarnwick")
                return false;
        }
        return true;
    };
    EXPECT_TRUE(eventually(
        [&] {
            if (const auto now = windowWith(second, "Tarnwick", "push button", "OK", 1))
                desktop.click(centreOf(*now->find("push button", "OK")));
            return eventually(instructionsClosed, 1);
        },
        15));
    ::kill(second, SIGTERM);
    ASSERT_TRUE(eventually(
        [&] { return folders.processesRunning(e2e::tarnwickExecutable()).empty(); }, 10));

    // Third start: the panel at the pointer at once, no onboarding.
    desktop.movePointer(640, 400);
    e2e::RunningProgram third(e2e::tarnwickExecutable(), {});
    std::optional<Geometry> panel;
    ASSERT_TRUE(
        eventually([&] { return (panel = desktop.shownPanel(third.pid())).has_value(); }, 20))
        << third.standardOutput() << third.standardError();
    // Centred on the pointer as it was placed; the content may still grow
    // as the file manager the start wakes reports in.
    EXPECT_NEAR(panel->x + panel->width / 2.0, 640, 2);
    EXPECT_TRUE(panel->y < 400 && 400 < panel->y + panel->height)
        << panel->y << " + " << panel->height;
    const auto panelClient = desktop.panelClient(third.pid());
    for (const auto& window : desktop.clientWindowsOf(third.pid()))
        EXPECT_EQ(window.id, panelClient) << "a window beside the panel: " << window.title;
    third.sendSignal(SIGTERM);
    EXPECT_EQ(third.waitForExit(10), (e2e::ExitStatus{true, 0}));
}

TEST_F(FirstRunOnDesktopTest, AboutFromTheStatusMenuShowsTheProgramAndASecondAboutRaisesIt) {
    ASSERT_TRUE(bus().isUp());
    std::filesystem::create_directories(std::getenv("XDG_CONFIG_HOME"));
    bus().watchMenus();
    e2e::RunningProgram windowManager("/usr/bin/openbox", {"--sm-disable"});
    e2e::Desktop desktop;
    ASSERT_TRUE(eventually([&] { return desktop.windowManagerRuns(); }, 10));
    e2e::RunningProgram tray("/usr/bin/tint2", {});
    e2e::RunningProgram tarnwick(e2e::tarnwickExecutable(), {});
    ASSERT_TRUE(tarnwick.waitUntilHandling(SIGTERM, 20)) << tarnwick.standardError();

    std::optional<Geometry> icon;
    ASSERT_TRUE(
        eventually([&] { return (icon = desktop.trayIconOf("tarnwick")).has_value(); }, 10));
    const auto chooseAbout = [&] {
        std::optional<AccessibleNode> menu;
        for (int click = 0; click < 3 && !menu; ++click) {
            desktop.click(icon->centre());
            menu = bus().waitForMenu(2);
        }
        ASSERT_TRUE(menu) << "no menu showed";
        const auto* about = menu->find("menu item", "About");
        ASSERT_TRUE(about);
        desktop.click(centreOf(*about));
    };

    chooseAbout();
    const auto window = windowWith(tarnwick.pid(), "About Tarnwick", "label", "Tarnwick");
    ASSERT_TRUE(window) << describe(bus().application("Tarnwick", 1, tarnwick.pid()))
                        << tarnwick.standardOutput();
    const auto version = e2e::runTarnwick({"--version"}).output;  // "Tarnwick 0.1.0 (build 7)"
    const auto number = version.substr(9, version.find(' ', 9) - 9);
    const auto build =
        version.substr(version.find("build ") + 6, version.find(')') - version.find("build ") - 6);
    EXPECT_TRUE(window->find("label", "v" + number + " (" + build + ")")) << describe(window);
    EXPECT_TRUE(window->find("label", "Developed by Tarnwick contributors (Harrowmere)"));
    EXPECT_TRUE(labelHolding(*window, "Copyright ©")) << describe(window);
    EXPECT_TRUE(e2e::saveScreenshot(extentsOf(*window), TARNWICK_ARTIFACTS_DIR "/about-light.png"));

    const auto aboutWindows = [&] {
        std::vector<xcb_window_t> found;
        for (const auto& client : desktop.clientWindowsOf(tarnwick.pid())) {
            if (client.title == "About Tarnwick")
                found.push_back(client.id);
        }
        return found;
    };
    ASSERT_TRUE(eventually([&] { return aboutWindows().size() == 1; }));
    const auto shown = aboutWindows().front();
    // The onboarding window comes to the front; About raises ours again.
    xcb_window_t onboarding = XCB_NONE;
    for (const auto& client : desktop.clientWindowsOf(tarnwick.pid())) {
        if (client.title == "Tarnwick")
            onboarding = client.id;
    }
    ASSERT_NE(onboarding, XCB_NONE) << "the instructions of a first start";
    desktop.activate(onboarding);
    ASSERT_TRUE(eventually([&] { return desktop.activeWindow() == onboarding; }));
    chooseAbout();
    EXPECT_TRUE(eventually([&] { return desktop.activeWindow() == shown; }));
    EXPECT_EQ(aboutWindows(), (std::vector<xcb_window_t>{shown}));

    tarnwick.sendSignal(SIGTERM);
    EXPECT_EQ(tarnwick.waitForExit(10), (e2e::ExitStatus{true, 0}));
}
