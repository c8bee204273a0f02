// What finding the running applications costs at start: reading every
// installed desktop entry, and matching every process to one.
#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "platform/xdg/DesktopEntryIndex.h"
#include "platform/xdg/ProcessInfo.h"

namespace {

using namespace platform::xdg;

// A system with this many applications, each with names in 40 languages,
// as the larger desktops install them.
class InstalledApplications {
  public:
    explicit InstalledApplications(int count) {
        std::string pattern = (std::filesystem::temp_directory_path() / "bench-XXXXXX").string();
        root_ = ::mkdtemp(pattern.data());
        const auto applications = root_ / "share/applications";
        std::filesystem::create_directories(applications);
        for (int i = 0; i < count; ++i) {
            std::ofstream file(applications / ("app" + std::to_string(i) + ".desktop"));
            file << "[Desktop Entry]\nType=Application\nName=Application " << i << "\n";
            for (int language = 0; language < 40; ++language) {
                file << "Name[l" << language << "]=Name " << language << "\n";
                file << "Comment[l" << language << "]=A longer comment on what it does\n";
            }
            file << "Exec=/usr/bin/app" << i << " %U\nIcon=app" << i
                 << "\nMimeType=text/plain;image/png;\nCategories=Utility;\n";
        }
    }
    ~InstalledApplications() { std::filesystem::remove_all(root_); }

    DesktopEntryDirectories directories() const {
        DesktopEntryDirectories directories;
        directories.dataHome = root_ / "home";
        directories.dataDirs = {root_ / "share"};
        return directories;
    }

  private:
    std::filesystem::path root_;
};

void readingTheIndex(benchmark::State& state) {
    const InstalledApplications installed(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        DesktopEntryIndex index(installed.directories(), DesktopEntryLocale("de_DE.UTF-8"));
        benchmark::DoNotOptimize(index.entries().size());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(readingTheIndex)->Arg(50)->Arg(300)->Unit(benchmark::kMillisecond);

void matchingEveryProcess(benchmark::State& state) {
    const InstalledApplications installed(300);
    const DesktopEntryIndex index(installed.directories(), DesktopEntryLocale());
    std::size_t processes = 0;
    for (auto _ : state) {
        const auto pids = allProcessIdentifiers();
        processes = pids.size();
        for (const auto pid : pids)
            benchmark::DoNotOptimize(index.entryForProcess(pid));
    }
    state.counters["processes"] = static_cast<double>(processes);
}
BENCHMARK(matchingEveryProcess)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
