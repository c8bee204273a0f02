// What the Linux backend's workspace costs: opening the whole backend (the
// process scan included), listing the running applications, and reading
// the windows of one application (the list, then role and title of each)
// through the backend's accessibility service at 10, 100 and 1,000
// windows. Run under scripts/virtual-desktop.sh.
#include <benchmark/benchmark.h>

#include <memory>

#include "X11OwnWindows.h"
#include "platform/x11/X11Desktop.h"

namespace {

using platform::AXUIElementRef;
using platform::CFValue;
using platform::x11::X11Desktop;

using Backend = bench::BackendWithOwnWindows;

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
    const auto pid = b.ownProcess();
    for (auto _ : state)
        bench::readWindowsRoleAndTitle(ax, ax.createApplication(pid));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_ReadTheWindowsOfOneApplication)
    ->Arg(10)
    ->Arg(100)
    ->Arg(1000)
    ->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
