#pragma once

#include <sys/types.h>

#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/xdg/DefaultFileManager.h"
#include "platform/xdg/DesktopEntryIcons.h"
#include "platform/xdg/DesktopEntryIndex.h"
#include "platform/xdg/XdgRunningApplication.h"

namespace platform::xdg {

// What a window says of the application it belongs to: its WM_CLASS
// (instance and class name) and the application id a toolkit gives it
// (_GTK_APPLICATION_ID, a desktop-file id).
struct WindowIdentity {
    std::string instanceName;
    std::string className;
    std::string applicationId;
};

// Who a process is to the workspace: the program itself, the file manager
// playing the Finder, an installed application found by its desktop entry,
// or an unbundled program known by its executable's name.
class ProcessIdentities {
  public:
    using Identity = XdgRunningApplication::Identity;

    // The index and icons must outlive this object.
    ProcessIdentities(const DesktopEntryIndex& entries, const DesktopEntryIcons& icons,
                      std::optional<DefaultFileManager> fileManager, Identity own,
                      std::filesystem::path ownExecutable);

    // The identity of a process. What one of its windows says of itself
    // names the application before the process's names do: several entries
    // may run one program, and interpreters and launchers run many. A
    // process whose windows are all accessories (docks, desktops, windows
    // kept out of the taskbar) is no regular application, so it isn't
    // offered under its entry's name; the file manager playing the Finder
    // stays the Finder.
    Identity identityOf(pid_t pid, const std::optional<WindowIdentity>& window = {},
                        bool onlyAccessoryWindows = false) const;
    const Identity& ownIdentity() const { return own_; }
    // Whether the process runs this program.
    bool isOurs(pid_t pid) const;

    const DefaultFileManager* fileManager() const {
        return fileManager_ ? &*fileManager_ : nullptr;
    }
    // The Finder's identity, when there is a file manager to play it.
    std::optional<Identity> finderIdentity() const;

    // Where the installed application of a bundle identifier lies: the
    // Finder's location for the Finder's identifier while a file manager
    // plays it, else the application's desktop entry. Nothing for an
    // identifier without an entry, or whose entry stands for a deleted
    // application.
    std::optional<std::filesystem::path> applicationLocation(
        const std::string& bundleIdentifier) const;
    // The icon of the application whose bundle lies there; nothing for a
    // location that is no application's or an application without one.
    std::optional<Image> applicationIcon(const std::filesystem::path& location) const;

    // The user's processes on this display that run an installed
    // application, in ascending order. A process started by another of the
    // same application (a helper, a renderer) is left out: the application
    // is its first process.
    std::vector<pid_t> processesWithEntries() const;

  private:
    const DesktopEntry* entryOf(pid_t pid, const std::optional<WindowIdentity>& window) const;

    const DesktopEntryIndex& entries_;
    const DesktopEntryIcons& icons_;
    std::optional<DefaultFileManager> fileManager_;
    Identity own_;
    std::filesystem::path ownExecutable_;
};

// The names (ProcessInfo::executableNames) of the programs the user runs on
// this display.
std::set<std::string> runningProgramNames();
// The parent of a process; nothing when the process is gone.
std::optional<pid_t> parentProcessIdentifier(pid_t pid);
// Whether the process belongs to the user this program runs as.
bool isOwnUsersProcess(pid_t pid);
// Whether the process was started for this display ($DISPLAY, screens
// aside); any process is when we have no display name.
bool isOnDisplay(pid_t pid, const char* display);

}  // namespace platform::xdg
