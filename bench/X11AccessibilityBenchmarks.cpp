// What reads of the X11 accessibility backend cost once its mirror is
// current: one attribute, and a whole refresh of an application's window
// list (the list, then role and title of each window) at 10, 100 and 1,000
// windows; and the process trust test, which asks the server afresh each
// time. Run under scripts/virtual-desktop.sh.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <string>

#include "X11OwnWindows.h"
#include "platform/x11/X11Accessibility.h"

namespace {

using platform::AXUIElementRef;
using platform::CFValue;

struct Desktop {
    platform::sim::SimMainLoop loop;
    std::unique_ptr<platform::x11::X11Accessibility> ax =
        platform::x11::X11Accessibility::open(loop);
    AXUIElementRef application = ax ? ax->createApplication(getpid()) : nullptr;
    bench::OwnWindows windows{loop, [this] { return windowCount(); }};

    std::size_t windowCount() {
        std::int64_t count = 0;
        ax->getAttributeValueCount(application, "AXWindows", count);
        return static_cast<std::size_t>(count);
    }
    bool ensureWindows(std::size_t count) { return windows.ensure(count); }
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
    for (auto _ : state)
        bench::readWindowsRoleAndTitle(*d.ax, d.application);
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_ListWindowsAndReadRoleAndTitle)
    ->Arg(10)
    ->Arg(100)
    ->Arg(1000)
    ->Unit(benchmark::kMicrosecond);

// Two round trips to the server, and the turn that takes in whatever
// events came with the replies.
void BM_ProcessTrustTest(benchmark::State& state) {
    auto& d = desktop();
    if (!d.ax)
        return state.SkipWithError("no desktop");
    const platform::CFValue::Dictionary options{{"AXTrustedCheckOptionPrompt", false}};
    for (auto _ : state) {
        benchmark::DoNotOptimize(d.ax->isProcessTrustedWithOptions(options));
        d.loop.runUntilIdle();
    }
}
BENCHMARK(BM_ProcessTrustTest)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
