// What the Linux backend's workspace costs: opening the whole backend (the
// process scan included), listing the running applications, and reading
// the windows of one application (the list, then role and title of each)
// through the backend's accessibility service at 10, 100 and 1,000
// windows. Run under scripts/virtual-desktop.sh.
#include <benchmark/benchmark.h>
#include <signal.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "platform/sim/SimMainLoop.h"
#include "platform/x11/X11Desktop.h"

namespace {

using platform::AXUIElementRef;
using platform::CFValue;
using platform::x11::X11Desktop;

// Windows of this process, mapped where they stand and without the focus,
// on a connection of their own.
class OwnWindows {
  public:
    OwnWindows() : connection_(xcb_connect(nullptr, nullptr)) {
        screen_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
    }
    ~OwnWindows() { xcb_disconnect(connection_); }

    void resize(std::size_t count) {
        while (windows_.size() < count)
            add();
        while (windows_.size() > count) {
            xcb_destroy_window(connection_, windows_.back());
            windows_.pop_back();
        }
        std::free(
            xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    }

  private:
    void add() {
        const xcb_window_t window = xcb_generate_id(connection_);
        xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, screen_->root, 0, 0, 100, 60,
                          0, XCB_WINDOW_CLASS_INPUT_OUTPUT, screen_->root_visual, 0, nullptr);
        const std::string title = "Window " + std::to_string(windows_.size());
        xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME,
                            XCB_ATOM_STRING, 8, static_cast<uint32_t>(title.size()), title.data());
        uint32_t sizeHints[18] = {};
        sizeHints[0] = 1 | 4;  // a position of our choosing: no placement search
        xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NORMAL_HINTS,
                            XCB_ATOM_WM_SIZE_HINTS, 32, 18, sizeHints);
        xcb_map_window(connection_, window);
        windows_.push_back(window);
    }

    xcb_connection_t* connection_;
    xcb_screen_t* screen_ = nullptr;
    std::vector<xcb_window_t> windows_;
};

struct Backend {
    platform::sim::SimMainLoop loop;
    std::unique_ptr<X11Desktop> desktop = X11Desktop::open(loop, {});
    OwnWindows windows;

    ~Backend() {
        // The file manager started for the Finder's part, if we did.
        if (!desktop)
            return;
        for (const auto& app : desktop->workspace().runningApplications()) {
            if (app->bundleIdentifier() == "com.apple.finder" &&
                platform::x11::parentProcessIdentifier(app->processIdentifier()) == getpid())
                ::kill(app->processIdentifier(), SIGTERM);
        }
    }

    AXUIElementRef ownApplication() {
        const auto self = desktop->workspace().currentApplication();
        return desktop->accessibility().createApplication(self->processIdentifier());
    }
    std::size_t windowCount() {
        std::int64_t count = 0;
        desktop->accessibility().getAttributeValueCount(ownApplication(), "AXWindows", count);
        return static_cast<std::size_t>(count);
    }
    // A window manager that has only just started may miss windows mapped
    // in that moment; one probe window that it manages shows it is ready.
    bool ready() {
        for (int attempt = 0; attempt < 20; ++attempt) {
            windows.resize(1);
            if (loop.runUntil([&] { return windowCount() == 1; }, 1))
                return true;
            windows.resize(0);
        }
        return false;
    }
    bool ensureWindows(std::size_t count) {
        static const bool isReady = desktop && ready();
        if (!isReady)
            return false;
        windows.resize(count);
        return loop.runUntil([&] { return windowCount() == count; }, 60);
    }
};

Backend& backend() {
    static Backend instance;
    return instance;
}

void BM_OpenBackend(benchmark::State& state) {
    auto& b = backend();
    if (!b.desktop)
        return state.SkipWithError("no display");
    for (auto _ : state) {
        auto desktop = X11Desktop::open(b.loop, {});
        benchmark::DoNotOptimize(desktop->workspace().runningApplications().size());
    }
}
BENCHMARK(BM_OpenBackend)->Unit(benchmark::kMillisecond);

void BM_ListRunningApplications(benchmark::State& state) {
    auto& b = backend();
    if (!b.desktop || !b.ensureWindows(10))
        return state.SkipWithError("no desktop");
    for (auto _ : state) {
        for (const auto& app : b.desktop->workspace().runningApplications())
            benchmark::DoNotOptimize(app->bundleIdentifier());
    }
    state.counters["applications"] =
        static_cast<double>(b.desktop->workspace().runningApplications().size());
}
BENCHMARK(BM_ListRunningApplications);

void BM_ReadTheWindowsOfOneApplication(benchmark::State& state) {
    auto& b = backend();
    const auto count = static_cast<std::size_t>(state.range(0));
    if (!b.desktop || !b.ensureWindows(count))
        return state.SkipWithError("the window manager didn't manage the windows");
    auto& ax = b.desktop->accessibility();
    const auto pid = b.desktop->workspace().currentApplication()->processIdentifier();
    for (auto _ : state) {
        const auto application = ax.createApplication(pid);
        std::optional<CFValue> list;
        ax.copyAttributeValue(application, "AXWindows", list);
        for (const auto& item : *list->get<CFValue::Array>()) {
            const auto& window = *item.get<AXUIElementRef>();
            std::optional<CFValue> role, title;
            ax.copyAttributeValue(window, "AXRole", role);
            ax.copyAttributeValue(window, "AXTitle", title);
            benchmark::DoNotOptimize(title);
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_ReadTheWindowsOfOneApplication)
    ->Arg(10)
    ->Arg(100)
    ->Arg(1000)
    ->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
