// The cost of a key translation that hits the cache, and of making a
// shortcut of a key event, as the monitors do for every key.
#include <benchmark/benchmark.h>

#include "SimLayoutsDesktop.h"
#include "platform/Platform.h"
#include "platform/sim/SimKeyboardLayouts.h"
#include "platform/sim/SimMainLoop.h"
#include "shortcuts/SRKeyCodeTranslator.h"
#include "shortcuts/SRLiteralKeyCodeTransformer.h"
#include "shortcuts/SRShortcut.h"
#include "shortcuts/SRShortcutSelfCodable.h"
#include "support/Log.h"

namespace {

using Desktop = benchsupport::SimLayoutsDesktop;

void CachedTranslation(benchmark::State& state) {
    Desktop desktop;
    auto& translator = lirixkro::detail::SRKeyCodeTranslator::shared();
    translator.translateKeyCode(40, 0, 0x100000, true);
    for (auto _ : state) {
        benchmark::DoNotOptimize(translator.translateKeyCode(40, 0, 0x100000, true));
    }
}
BENCHMARK(CachedTranslation);

void CachedLiteralTransform(benchmark::State& state) {
    Desktop desktop;
    auto transformer = lirixkro::SRLiteralKeyCodeTransformer::sharedTransformer();
    for (auto _ : state) {
        benchmark::DoNotOptimize(transformer->transformedValue(lirixkro::SRNumber(40)));
    }
}
BENCHMARK(CachedLiteralTransform);

void ShortcutWithKeyEvent(benchmark::State& state) {
    Desktop desktop;
    platform::Event event;
    event.type = platform::EventType::keyDown;
    event.keyCode = 40;
    event.modifierFlags = 0x120000;
    event.characters = "K";
    event.charactersIgnoringModifiers = "k";
    for (auto _ : state) {
        auto shortcut = lirixkro::SRShortcut::shortcutWithEvent(event);
        benchmark::DoNotOptimize(lirixkro::SRShortcutSelfCodable::fromShortcut(*shortcut));
    }
}
BENCHMARK(ShortcutWithKeyEvent);

void ShortcutWithFlagsChangedEvent(benchmark::State& state) {
    Desktop desktop;
    platform::Event event;
    event.type = platform::EventType::flagsChanged;
    event.keyCode = 56;
    event.modifierFlags = 0xE0000;
    for (auto _ : state) {
        benchmark::DoNotOptimize(lirixkro::SRShortcut::shortcutWithEvent(event));
    }
}
BENCHMARK(ShortcutWithFlagsChangedEvent);

}  // namespace

BENCHMARK_MAIN();
