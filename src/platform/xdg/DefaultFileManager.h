#pragma once

#include <filesystem>
#include <optional>
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

    // The handler of folders in the mime-apps lists, else the first
    // installed application that declares it opens folders. Nothing when no
    // file manager is installed.
    static std::optional<DefaultFileManager> find(const DesktopEntryIndex& index,
                                                  const MimeApps& mimeApps);
    static std::optional<DefaultFileManager> find(const DesktopEntryIndex& index) {
        return find(index, MimeApps(index.directories()));
    }

    explicit DefaultFileManager(DesktopEntry entry) : entry_(std::move(entry)) {}

    const DesktopEntry& entry() const { return entry_; }
    // The command that starts the file manager without opening a window,
    // for the file managers that have such a mode; otherwise its ordinary
    // command, without the field codes. Empty when the entry has no Exec.
    std::vector<std::string> backgroundCommandLine() const;

  private:
    DesktopEntry entry_;
};

}  // namespace platform::xdg
