#pragma once

// What the benchmarks on a real display share: windows of this process that
// the window manager manages, and the whole Linux backend opened as the
// program opens it. Run them under scripts/virtual-desktop.sh.
#include <benchmark/benchmark.h>
#include <signal.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/sim/SimMainLoop.h"
#include "platform/x11/X11Desktop.h"
#include "platform/xdg/ProcessIdentities.h"

namespace bench {

// Windows of this process, on a connection of their own, mapped where they
// stand and without taking the focus. The count of them that the backend
// under measurement sees managed is told by the function given.
class OwnWindows {
  public:
    using ManagedCount = std::function<std::size_t()>;

    OwnWindows(platform::sim::SimMainLoop& loop, ManagedCount managedCount)
        : loop_(loop),
          managedCount_(std::move(managedCount)),
          connection_(xcb_connect(nullptr, nullptr)) {
        screen_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
        userTime_ = intern("_NET_WM_USER_TIME");
    }
    ~OwnWindows() { xcb_disconnect(connection_); }
    OwnWindows(const OwnWindows&) = delete;
    OwnWindows& operator=(const OwnWindows&) = delete;

    // Until the window manager manages exactly that many of our windows;
    // false when it doesn't within a minute.
    bool ensure(std::size_t count) {
        if (!ready_)
            ready_ = windowManagerReady();
        if (!*ready_)
            return false;
        resize(count);
        return loop_.runUntil([&] { return managedCount_() == count; }, 60);
    }

  private:
    // A window manager that has only just started may miss windows mapped
    // in that moment; one probe window that it manages shows it is ready.
    bool windowManagerReady() {
        for (int attempt = 0; attempt < 20; ++attempt) {
            resize(1);
            if (loop_.runUntil([&] { return managedCount_() == 1; }, 1))
                return true;
            resize(0);
        }
        return false;
    }

    void resize(std::size_t count) {
        while (windows_.size() < count)
            add("Window " + std::to_string(windows_.size()));
        while (windows_.size() > count) {
            xcb_destroy_window(connection_, windows_.back());
            windows_.pop_back();
        }
        std::free(
            xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    }

    void add(const std::string& title) {
        const xcb_window_t window = xcb_generate_id(connection_);
        xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, screen_->root, 0, 0, 120, 80,
                          0, XCB_WINDOW_CLASS_INPUT_OUTPUT, screen_->root_visual, 0, nullptr);
        xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME,
                            XCB_ATOM_STRING, 8, static_cast<uint32_t>(title.size()), title.data());
        const uint32_t zero = 0;  // appear without taking the focus
        xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, userTime_,
                            XCB_ATOM_CARDINAL, 32, 1, &zero);
        // A position of the user's choosing spares the window manager its
        // placement search, which grows with the number of windows.
        uint32_t sizeHints[18] = {};
        sizeHints[0] = 1 | 4;  // USPosition | PPosition
        xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NORMAL_HINTS,
                            XCB_ATOM_WM_SIZE_HINTS, 32, 18, sizeHints);
        xcb_map_window(connection_, window);
        windows_.push_back(window);
    }

    xcb_atom_t intern(const char* name) {
        auto* reply = xcb_intern_atom_reply(
            connection_,
            xcb_intern_atom(connection_, 0, static_cast<uint16_t>(std::strlen(name)), name),
            nullptr);
        const xcb_atom_t atom = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
        std::free(reply);
        return atom;
    }

    platform::sim::SimMainLoop& loop_;
    ManagedCount managedCount_;
    xcb_connection_t* connection_;
    xcb_screen_t* screen_ = nullptr;
    xcb_atom_t userTime_ = XCB_ATOM_NONE;
    std::vector<xcb_window_t> windows_;
    std::optional<bool> ready_;
};

// The whole Linux backend as the program opens it, with windows of our
// own. The file manager it starts to play the Finder ends with it.
struct BackendWithOwnWindows {
    platform::sim::SimMainLoop loop;
    std::unique_ptr<platform::x11::X11Desktop> desktop = platform::x11::X11Desktop::open(loop, {});
    OwnWindows windows{loop, [this] { return ownWindowCount(); }};

    BackendWithOwnWindows() = default;
    ~BackendWithOwnWindows() {
        if (!desktop)
            return;
        for (const auto& app : desktop->workspace().runningApplications()) {
            if (app->bundleIdentifier() == "com.apple.finder" &&
                platform::xdg::parentProcessIdentifier(app->processIdentifier()) == ::getpid())
                ::kill(app->processIdentifier(), SIGTERM);
        }
    }
    BackendWithOwnWindows(const BackendWithOwnWindows&) = delete;
    BackendWithOwnWindows& operator=(const BackendWithOwnWindows&) = delete;

    pid_t ownProcess() { return desktop->workspace().currentApplication()->processIdentifier(); }
    std::size_t ownWindowCount() {
        std::int64_t count = 0;
        auto& ax = desktop->accessibility();
        ax.getAttributeValueCount(ax.createApplication(ownProcess()), "AXWindows", count);
        return static_cast<std::size_t>(count);
    }
    bool ensureWindows(std::size_t count) { return desktop && windows.ensure(count); }
};

// What listing one application's windows costs a reader: the window list,
// then the role and title of each window.
inline void readWindowsRoleAndTitle(platform::Accessibility& ax,
                                    const platform::AXUIElementRef& application) {
    std::optional<platform::CFValue> windows;
    ax.copyAttributeValue(application, "AXWindows", windows);
    const auto* list = windows ? windows->get<platform::CFValue::Array>() : nullptr;
    for (const auto& item : list ? *list : platform::CFValue::Array{}) {
        const auto& window = *item.get<platform::AXUIElementRef>();
        std::optional<platform::CFValue> role, title;
        ax.copyAttributeValue(window, "AXRole", role);
        ax.copyAttributeValue(window, "AXTitle", title);
        benchmark::DoNotOptimize(title);
    }
}

}  // namespace bench
