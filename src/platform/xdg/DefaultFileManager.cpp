#include "platform/xdg/DefaultFileManager.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "platform/xdg/DesktopEntryExec.h"
#include "platform/xdg/DesktopEntryStartability.h"
#include "platform/xdg/ProcessIdentities.h"
#include "support/StandardOutput.h"

namespace platform::xdg {

namespace {

struct BackgroundMode {
    std::string_view program;
    std::string_view option;
};

// File managers that can run without a window, waiting to be asked for one.
constexpr std::array<BackgroundMode, 5> backgroundModes{{
    {"pcmanfm", "--daemon-mode"},
    {"pcmanfm-qt", "--daemon-mode"},
    {"thunar", "--daemon"},
    {"Thunar", "--daemon"},
    {"nautilus", "--gapplication-service"},
}};

bool runsAmong(const DesktopEntry& entry, const std::set<std::string>& runningPrograms) {
    const auto program = desktopEntryProgramName(entry.exec);
    if (program && runningPrograms.contains(*program))
        return true;
    return entry.tryExec &&
           runningPrograms.contains(std::filesystem::path(*entry.tryExec).filename().string());
}

// The handlers in the order to try: the lists' own choices as they stand,
// then the applications that only declare they open folders, running ones
// first.
std::vector<const DesktopEntry*> candidates(const DesktopEntryIndex& index,
                                            const MimeApps& mimeApps,
                                            const std::set<std::string>& runningPrograms) {
    auto handlers = mimeApps.applicationsFor(DefaultFileManager::contentType, index);
    const auto chosen = mimeApps.associatedApplications(DefaultFileManager::contentType, index);
    const auto declaring = handlers.begin() + static_cast<std::ptrdiff_t>(chosen.size());
    std::stable_partition(declaring, handlers.end(), [&](const DesktopEntry* entry) {
        return runsAmong(*entry, runningPrograms);
    });
    return handlers;
}

}  // namespace

const std::filesystem::path& DefaultFileManager::finderBundlePath() {
    static const std::filesystem::path path("/System/Library/CoreServices/Finder.app");
    return path;
}

std::optional<DefaultFileManager> DefaultFileManager::find(const DesktopEntryIndex& index) {
    return find(index, MimeApps(index.directories()), runningProgramNames());
}

std::optional<DefaultFileManager> DefaultFileManager::find(
    const DesktopEntryIndex& index, const MimeApps& mimeApps,
    const std::set<std::string>& runningPrograms) {
    std::string tried;
    for (const auto* entry : candidates(index, mimeApps, runningPrograms)) {
        auto startability = DesktopEntryStartability::of(*entry);
        if (startability.program)
            return DefaultFileManager(*entry, std::move(startability.program));
        tried += (tried.empty() ? "" : ", ") + entry->id + " (" + startability.problem + ")";
    }
    quillbox::printLine(tried.empty()
                            ? "No file manager is installed: no application opens folders."
                            : "No file manager can start; tried " + tried + ".");
    return std::nullopt;
}

std::vector<std::string> DefaultFileManager::backgroundCommandLine() const {
    auto commandLine = desktopEntryCommandLine(entry_.exec);
    if (commandLine.empty())
        return commandLine;
    if (program_)
        commandLine.front() = program_->string();
    const auto program = std::filesystem::path(commandLine.front()).filename().string();
    for (const auto& mode : backgroundModes) {
        if (program == mode.program)
            return {commandLine.front(), std::string(mode.option)};
    }
    return commandLine;
}

}  // namespace platform::xdg
