// What a refresh of the list window costs on the Linux backend: the core's
// model over the real accessibility service, with this process selected
// and showing 10, 100 and 1,000 managed windows. The same refresh on the
// simulated desktop is in RefreshWindowsBenchmarks. Run under
// scripts/virtual-desktop.sh.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <variant>

#include "X11OwnWindows.h"
#include "listwindow/InteractionController.h"
#include "listwindow/ListWindowViewModel.h"
#include "support/StandardOutput.h"
#include "tracking/AppsMonitor.h"

namespace {

using tarnwick::ListWindowViewModel;

bench::BackendWithOwnWindows& backend() {
    static bench::BackendWithOwnWindows instance;
    return instance;
}

std::size_t listedCount(const ListWindowViewModel& model) {
    const auto* listing = std::get_if<ListWindowViewModel::WindowsState>(&model.state());
    return listing ? listing->windows.size() : 0;
}

void refreshWindows(benchmark::State& state) {
    const quillbox::CapturedOutput quiet;
    auto& b = backend();
    const auto count = static_cast<std::size_t>(state.range(0));
    if (!b.ensureWindows(count))
        return state.SkipWithError("the window manager didn't manage the windows");
    const platform::ScopedInstall install(b.desktop->services());
    ListWindowViewModel model(std::make_shared<tarnwick::InteractionController>(nullptr),
                              std::make_shared<tarnwick::AppsMonitor>());
    model.selectApp(b.desktop->workspace().currentApplication());
    if (listedCount(model) != count)
        return state.SkipWithError(("listed " + std::to_string(listedCount(model))).c_str());
    for (auto _ : state) {
        model.refreshWindows();
        benchmark::DoNotOptimize(model.state());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(refreshWindows)->Arg(10)->Arg(100)->Arg(1000)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
