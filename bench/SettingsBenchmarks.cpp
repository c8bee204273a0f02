// What the Settings window costs: one opening and closing of the window
// with its model and view (the coordinator, the stored shortcut read and
// written back, the floating window, the activation policy both ways), the
// hidden applications' rows for a growing stored set, and reading launch at
// login from a real autostart entry.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <filesystem>
#include <set>
#include <string>

#include "SimSpine.h"
#include "platform/xdg/XdgLoginItemService.h"
#include "settings/SettingsCoordinator.h"
#include "settings/SettingsKeys.h"

namespace {

tarnwick::RootCoordinator::ChildFactories settingsOnly() {
    tarnwick::RootCoordinator::ChildFactories factories;
    factories.settings = tarnwick::SettingsCoordinator::childFactory();
    return factories;
}

tarnwick::SettingsCoordinator& settingsOf(const benchsupport::SimSpine& spine) {
    return dynamic_cast<tarnwick::SettingsCoordinator&>(*spine.root->settingsCoordinator());
}

void openAndCloseSettings(benchmark::State& state) {
    benchsupport::SimSpine spine(settingsOnly());
    for (auto _ : state) {
        spine.root->showSettings();
        spine.root->settingsCoordinator()->rootController().window()->close();
        spine.desktop.loop().runUntilIdle();
    }
}
BENCHMARK(openAndCloseSettings);

// Half of the stored identifiers are installed applications.
void hiddenAppRows(benchmark::State& state) {
    benchsupport::SimSpine spine(settingsOnly());
    std::set<std::string> hidden;
    for (int i = 0; i < state.range(0); ++i) {
        const auto identifier = "org.example.App" + std::to_string(i);
        hidden.insert(identifier);
        if (i % 2 == 0) {
            const auto location = "/Applications/App" + std::to_string(i) + ".app";
            spine.desktop.workspace().setApplicationURL(identifier, location);
            spine.desktop.bundles().addBundle(location, identifier);
        }
    }
    quillbox::DefaultsManager::shared().setValue(hidden, tarnwick::hiddenApps);
    spine.root->showSettings();
    for (auto _ : state)
        benchmark::DoNotOptimize(settingsOf(spine).view().hiddenAppRows());
    state.SetComplexityN(state.range(0));
}
BENCHMARK(hiddenAppRows)->RangeMultiplier(10)->Range(10, 1000)->Complexity();

void launchAtLoginStatus(benchmark::State& state) {
    const auto folder = std::filesystem::temp_directory_path() /
                        ("tarnwick-autostart-bench-" + std::to_string(::getpid()));
    platform::sim::SimMainLoop loop;
    platform::xdg::XdgLoginItemService service(
        loop, platform::xdg::XdgLoginItemService::entryPathIn(folder, "harrowmere.Tarnwick"),
        "/proc/self/exe");
    service.registerMainApp();
    for (auto _ : state)
        benchmark::DoNotOptimize(service.status());
    std::filesystem::remove_all(folder);
}
BENCHMARK(launchAtLoginStatus);

}  // namespace

BENCHMARK_MAIN();
