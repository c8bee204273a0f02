// What one event costs in the root coordinator's monitors, including the
// simulated delivery: a flags change that completes the chord (the shortcut
// is made from the event, the stored one is read and compared, the panel is
// placed), a key that doesn't match, and a mouse move that fades the panel.
#include <benchmark/benchmark.h>

#include "SimSpine.h"
#include "platform/sim/SimWindow.h"

namespace {

namespace modifier = platform::modifier;
namespace keycode = platform::keycode;

using Spine = benchsupport::SimSpine;

void handleShortcutEventMatching(benchmark::State& state) {
    Spine spine;
    auto& events = spine.desktop.eventMonitors();
    const auto chord = modifier::control | modifier::option | modifier::shift;
    for (auto _ : state)
        events.flagsChanged(chord, keycode::shift);
}
BENCHMARK(handleShortcutEventMatching);

void handleShortcutEventOtherKey(benchmark::State& state) {
    Spine spine;
    auto& events = spine.desktop.eventMonitors();
    for (auto _ : state)
        events.keyDown(keycode::a, 0, "a", "a");
}
BENCHMARK(handleShortcutEventOtherKey);

void handleMouseMovedFading(benchmark::State& state) {
    Spine spine;
    auto& events = spine.desktop.eventMonitors();
    auto panel = std::static_pointer_cast<platform::sim::SimWindow>(
        spine.root->mainWindowController().window());
    panel->setContentSize({300, 200});
    events.setMouseLocation({600, 400});
    spine.root->presentListWindow();
    double x = 0;
    for (auto _ : state) {
        // Stay within the fade, outside the frame, so the panel never closes.
        x = x > 100 ? 0 : x + 1;
        events.mouseMoved({760 + x, 400});
    }
}
BENCHMARK(handleMouseMovedFading);

}  // namespace

BENCHMARK_MAIN();
