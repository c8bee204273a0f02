#pragma once

#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/xdg/DesktopEntry.h"
#include "platform/xdg/DesktopEntryIndex.h"
#include "platform/xdg/MimeApps.h"

namespace platform::xdg {

// The desktop's file manager: the application that opens folders. It plays
// the Finder's part. The program knows the Finder by its bundle identifier
// and its system location, so the file manager's running application
// reports exactly those, while its name and icon come from its own desktop
// entry; that way every rule about the Finder holds unchanged.
class DefaultFileManager {
  public:
    static constexpr const char* contentType = "inode/directory";
    static constexpr const char* finderBundleIdentifier = "com.apple.finder";
    static const std::filesystem::path& finderBundlePath();

    // The first handler of folders that can really start, in the order of
    // the mime-apps lists (the default first), then the installed
    // applications that declare they open folders, those whose program runs
    // (one of the running programs' names) before the others: a file
    // manager the session runs already plays the part rather than a second
    // one. Nothing, after a line naming the ones tried and why each can't
    // start, when none can.
    static std::optional<DefaultFileManager> find(const DesktopEntryIndex& index,
                                                  const MimeApps& mimeApps,
                                                  const std::set<std::string>& runningPrograms);
    // With the programs the user runs on this display.
    static std::optional<DefaultFileManager> find(const DesktopEntryIndex& index);

    explicit DefaultFileManager(DesktopEntry entry,
                                std::optional<std::filesystem::path> program = std::nullopt)
        : entry_(std::move(entry)), program_(std::move(program)) {}

    const DesktopEntry& entry() const { return entry_; }
    // The command that starts the file manager without opening a window,
    // for the file managers that have such a mode; otherwise its ordinary
    // command, without the field codes. Empty when the entry has no Exec.
    // The program is the executable found when the file manager was chosen,
    // so that starting it searches nothing again.
    std::vector<std::string> backgroundCommandLine() const;

  private:
    DesktopEntry entry_;
    std::optional<std::filesystem::path> program_;
};

}  // namespace platform::xdg
