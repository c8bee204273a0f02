// What a refresh of the list window costs above the platform: the window
// list, then role and title of each window, the snapshot of the grouped
// applications and the change signal, on the simulated desktop with the
// selected application showing 10, 100 and 1,000 windows. Every fifth
// window is one the list leaves out (untitled), as real applications have
// helper windows.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "listwindow/InteractionController.h"
#include "listwindow/ListWindowViewModel.h"
#include "platform/sim/SimDesktop.h"
#include "support/StandardOutput.h"
#include "tracking/AppsMonitor.h"

namespace {

using platform::sim::SimWindowSetup;

void refreshWindows(benchmark::State& state) {
    const quillbox::CapturedOutput quiet;
    platform::sim::SimDesktop desktop;
    const platform::ScopedInstall install(desktop.services());
    const auto fileManager = desktop.populateSampleApplications().front();
    const auto count = static_cast<int>(state.range(0));
    for (int i = 3; i < count; ++i) {
        auto setup = SimWindowSetup::titled("Window " + std::to_string(i));
        if (i % 5 == 0)
            setup.title.reset();
        desktop.accessibility().addWindow(fileManager->processIdentifier(), setup);
    }
    desktop.loop().runUntilIdle();

    tarnwick::ListWindowViewModel model(std::make_shared<tarnwick::InteractionController>(nullptr),
                                        std::make_shared<tarnwick::AppsMonitor>());
    for (auto _ : state) {
        model.refreshWindows();
        benchmark::DoNotOptimize(model.state());
    }
    state.SetItemsProcessed(state.iterations() * count);
}

BENCHMARK(refreshWindows)->Arg(10)->Arg(100)->Arg(1000)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
