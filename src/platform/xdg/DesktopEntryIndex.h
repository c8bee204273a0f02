#pragma once

#include <sys/types.h>

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "platform/xdg/DesktopEntry.h"
#include "platform/xdg/DesktopEntryDirectories.h"
#include "platform/xdg/DesktopEntryLocale.h"
#include "platform/xdg/ProcessInfo.h"

namespace platform::xdg {

// Every installed desktop entry, read once from the applications
// directories. An entry of the same id in an earlier directory (the user's
// before the system's) hides the later ones.
class DesktopEntryIndex {
  public:
    explicit DesktopEntryIndex(DesktopEntryDirectories directories,
                               DesktopEntryLocale locale = DesktopEntryLocale::fromEnvironment());

    // Reads the directories again, for entries installed or removed since.
    void reload();

    // In the order of the directories, and by id within one directory.
    const std::vector<DesktopEntry>& entries() const { return entries_; }
    const DesktopEntryDirectories& directories() const { return directories_; }
    const DesktopEntryLocale& locale() const { return locale_; }

    // By desktop-file id, with or without ".desktop". Hidden entries are
    // found too: they stand for a deleted application.
    const DesktopEntry* entryWithId(std::string_view id) const;

    // The application that runs an executable of this name: an entry whose
    // Exec program or TryExec has the name. Among several, a visible one,
    // then one whose id is the name, then one whose reverse-domain id ends
    // in it, then one starting the program without options of its own (not
    // a settings or helper entry), then the first. Hidden entries and
    // entries of other types are left out.
    const DesktopEntry* entryForExecutableName(std::string_view name) const;
    // The application a process runs, by the names ProcessInfo knows it by.
    const DesktopEntry* entryForProcess(const ProcessInfo& process) const;
    const DesktopEntry* entryForProcess(pid_t pid) const;
    // The application of a window of this WM_CLASS: StartupWMClass equal to
    // the class or the instance name, else an id equal to either, else a
    // reverse-domain id ending in either, ignoring case, a visible entry
    // before a NoDisplay one.
    const DesktopEntry* entryForWindowClass(std::string_view instanceName,
                                            std::string_view className) const;
    // The application whose desktop-file id a window names as its
    // application id (_GTK_APPLICATION_ID), when it is installed.
    const DesktopEntry* entryForApplicationId(std::string_view applicationId) const;

  private:
    void addDirectory(const std::filesystem::path& directory);
    const DesktopEntry* bestOf(const std::vector<std::size_t>& candidates,
                               std::string_view name) const;

    DesktopEntryDirectories directories_;
    DesktopEntryLocale locale_;
    std::vector<DesktopEntry> entries_;
    std::map<std::string, std::size_t, std::less<>> byId_;
    std::map<std::string, std::vector<std::size_t>, std::less<>> byExecutable_;
    std::map<std::string, std::vector<std::size_t>, std::less<>> byWindowClass_;
};

}  // namespace platform::xdg
