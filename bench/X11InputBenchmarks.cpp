// The per-event cost of the X11 input path: a raw key event or a raw motion
// event in, a platform event out. The key path needs no server; the pointer
// paths need a display ($DISPLAY) and are skipped without one.
#include <benchmark/benchmark.h>
#include <xcb/xinput.h>

#include <cstdlib>
#include <memory>

#include "platform/x11/X11InputEventTranslator.h"
#include "platform/x11/XkbInputSource.h"

namespace {

using platform::x11::X11InputEventTranslator;
using platform::x11::XkbInputSource;

std::shared_ptr<XkbInputSource> usLayout() {
    static auto context = platform::x11::makeXkbContext();
    const xkb_rule_names names{nullptr, nullptr, "us", nullptr, nullptr};
    auto keymap = platform::x11::adoptXkbKeymap(
        xkb_keymap_new_from_names(context.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS));
    return std::make_shared<XkbInputSource>(keymap, 0, "xkb:us");
}

// A raw key event as it comes off the connection, and its translation into
// a key-down event with its characters, then the key-up.
void BM_RawKeyEventToEvent(benchmark::State& state) {
    auto layout = usLayout();
    X11InputEventTranslator translator([&] { return layout.get(); });
    xcb_input_raw_key_press_event_t raw{};
    raw.detail = 38;  // the A key
    for (auto _ : state) {
        raw.time += 1;
        auto down = translator.keyEvent(static_cast<xcb_keycode_t>(raw.detail), true, raw.time);
        auto up = translator.keyEvent(static_cast<xcb_keycode_t>(raw.detail), false, raw.time);
        benchmark::DoNotOptimize(down);
        benchmark::DoNotOptimize(up);
    }
    state.SetItemsProcessed(state.iterations() * 2);
}
BENCHMARK(BM_RawKeyEventToEvent);

// A modifier key: a flags-changed event, no characters.
void BM_RawModifierEventToEvent(benchmark::State& state) {
    X11InputEventTranslator translator([] { return nullptr; });
    for (auto _ : state) {
        auto down = translator.keyEvent(37, true, 1);
        auto up = translator.keyEvent(37, false, 2);
        benchmark::DoNotOptimize(down);
        benchmark::DoNotOptimize(up);
    }
    state.SetItemsProcessed(state.iterations() * 2);
}
BENCHMARK(BM_RawModifierEventToEvent);

// A pointer position from a query reply turned into a mouse-moved event.
void BM_PointerReplyToMouseMovedEvent(benchmark::State& state) {
    X11InputEventTranslator translator([] { return nullptr; });
    double x = 0;
    for (auto _ : state) {
        x += 1;
        auto event = translator.mouseMovedEvent(platform::CGPoint{x, 200}, 800, 1);
        benchmark::DoNotOptimize(event);
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_PointerReplyToMouseMovedEvent);

struct Display {
    xcb_connection_t* connection = nullptr;
    xcb_window_t root = XCB_NONE;
    Display() {
        if (!std::getenv("DISPLAY"))
            return;
        connection = xcb_connect(nullptr, nullptr);
        if (xcb_connection_has_error(connection)) {
            xcb_disconnect(connection);
            connection = nullptr;
            return;
        }
        root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    }
    ~Display() {
        if (connection)
            xcb_disconnect(connection);
    }
};

// What a pointer query costs when the event waits for it: one round trip.
// The input path avoids this per event: it sends the query and collects the
// reply with a later batch.
void BM_PointerQueryRoundTrip(benchmark::State& state) {
    Display display;
    if (!display.connection) {
        state.SkipWithError("no display");
        return;
    }
    for (auto _ : state) {
        std::free(xcb_query_pointer_reply(
            display.connection, xcb_query_pointer(display.connection, display.root), nullptr));
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_PointerQueryRoundTrip);

// The same query sent without waiting, and its reply collected 32 queries
// later, as a burst of motion leaves it: the amortised cost per motion event.
void BM_PointerQueryPipelined(benchmark::State& state) {
    Display display;
    if (!display.connection) {
        state.SkipWithError("no display");
        return;
    }
    constexpr int depth = 32;
    xcb_query_pointer_cookie_t cookies[depth];
    int sent = 0;
    for (auto _ : state) {
        if (sent >= depth) {
            std::free(xcb_query_pointer_reply(display.connection, cookies[sent % depth], nullptr));
        }
        cookies[sent % depth] = xcb_query_pointer(display.connection, display.root);
        ++sent;
    }
    for (int i = std::max(0, sent - depth); i < sent; ++i) {
        std::free(xcb_query_pointer_reply(display.connection, cookies[i % depth], nullptr));
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_PointerQueryPipelined);

}  // namespace

BENCHMARK_MAIN();
