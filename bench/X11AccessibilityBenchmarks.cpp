// What reads of the X11 accessibility backend cost once its mirror is
// current: one attribute, and a whole refresh of an application's window
// list (the list, then role and title of each window) at 10, 100 and 1,000
// windows. Run under scripts/virtual-desktop.sh.
#include <benchmark/benchmark.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "platform/sim/SimMainLoop.h"
#include "platform/x11/X11Accessibility.h"

namespace {

using platform::AXUIElementRef;
using platform::CFValue;

// Makes this process's windows on a connection of its own.
class WindowMaker {
  public:
    WindowMaker() : connection_(xcb_connect(nullptr, nullptr)) {
        screen_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
        userTime_ = intern("_NET_WM_USER_TIME");
    }
    ~WindowMaker() { xcb_disconnect(connection_); }

    void resize(std::size_t count) {
        while (windows_.size() < count)
            create("Window " + std::to_string(windows_.size()));
        while (windows_.size() > count) {
            xcb_destroy_window(connection_, windows_.back());
            windows_.pop_back();
        }
        std::free(
            xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    }

  private:
    xcb_atom_t intern(const char* name) {
        auto* reply = xcb_intern_atom_reply(
            connection_,
            xcb_intern_atom(connection_, 0, static_cast<uint16_t>(std::strlen(name)), name),
            nullptr);
        const xcb_atom_t atom = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
        std::free(reply);
        return atom;
    }

    void create(const std::string& title) {
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

    xcb_connection_t* connection_;
    xcb_screen_t* screen_ = nullptr;
    xcb_atom_t userTime_ = XCB_ATOM_NONE;
    std::vector<xcb_window_t> windows_;
};

struct Desktop {
    platform::sim::SimMainLoop loop;
    std::unique_ptr<platform::x11::X11Accessibility> ax =
        platform::x11::X11Accessibility::open(loop);
    WindowMaker maker;
    AXUIElementRef application = ax ? ax->createApplication(getpid()) : nullptr;

    std::size_t windowCount() {
        std::int64_t count = 0;
        ax->getAttributeValueCount(application, "AXWindows", count);
        return static_cast<std::size_t>(count);
    }
    // A window manager that has only just started may miss windows mapped
    // in that moment; one probe window that it manages shows it is ready.
    bool windowManagerReady() {
        for (int attempt = 0; attempt < 20; ++attempt) {
            maker.resize(1);
            if (loop.runUntil([&] { return windowCount() == 1; }, 1))
                return true;
            maker.resize(0);
        }
        return false;
    }
    // Until the window manager has managed exactly that many of our windows.
    bool ensureWindows(std::size_t count) {
        static const bool ready = windowManagerReady();
        if (!ready)
            return false;
        maker.resize(count);
        return loop.runUntil([&] { return windowCount() == count; }, 60);
    }
};

Desktop& desktop() {
    static Desktop instance;
    return instance;
}

void BM_ReadOneAttribute(benchmark::State& state) {
    auto& d = desktop();
    if (!d.ax || !d.ensureWindows(10))
        return state.SkipWithError("no desktop");
    std::optional<CFValue> windows;
    d.ax->copyAttributeValue(d.application, "AXWindows", windows);
    const auto window = *windows->get<CFValue::Array>()->front().get<AXUIElementRef>();
    for (auto _ : state) {
        std::optional<CFValue> title;
        benchmark::DoNotOptimize(d.ax->copyAttributeValue(window, "AXTitle", title));
        benchmark::DoNotOptimize(title);
    }
}
BENCHMARK(BM_ReadOneAttribute);

void BM_ListWindowsAndReadRoleAndTitle(benchmark::State& state) {
    auto& d = desktop();
    const auto count = static_cast<std::size_t>(state.range(0));
    if (!d.ax || !d.ensureWindows(count)) {
        const auto managed = std::to_string(d.windowCount());
        return state.SkipWithError(("only " + managed + " windows managed").c_str());
    }
    for (auto _ : state) {
        std::optional<CFValue> windows;
        d.ax->copyAttributeValue(d.application, "AXWindows", windows);
        for (const auto& item : *windows->get<CFValue::Array>()) {
            const auto& window = *item.get<AXUIElementRef>();
            std::optional<CFValue> role, title;
            d.ax->copyAttributeValue(window, "AXRole", role);
            d.ax->copyAttributeValue(window, "AXTitle", title);
            benchmark::DoNotOptimize(title);
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_ListWindowsAndReadRoleAndTitle)
    ->Arg(10)
    ->Arg(100)
    ->Arg(1000)
    ->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
