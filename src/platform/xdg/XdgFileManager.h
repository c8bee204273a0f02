#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include "platform/FileSystem.h"
#include "platform/xdg/DesktopEntryDirectories.h"

namespace platform::xdg {

// The user's well-known folders as the XDG base directories name them:
//
//   Application Support  $XDG_DATA_HOME (~/.local/share): where programs
//                        keep the data they make for the user.
//   Library              $XDG_CONFIG_HOME (~/.config): the folder that holds
//                        the preferences' own folder, as Library holds
//                        Preferences.
//
// The applications directories are the system's ($XDG_DATA_DIRS entries'
// "applications" folders); the user's own is left out, as a user's own
// applications folder is.
class XdgFileManager final : public FileManager {
  public:
    explicit XdgFileManager(DesktopEntryDirectories directories)
        : directories_(std::move(directories)) {}

    std::optional<std::filesystem::path> urlForDirectory(SearchPathDirectory directory,
                                                         SearchPathDomain domain,
                                                         bool create) override;
    bool checkResourceIsReachable(const std::filesystem::path& path) override;
    std::vector<std::filesystem::path> applicationsDirectories() const override;
    // The preference file store's folder, whatever the library folder.
    std::filesystem::path preferencesDirectory(const std::filesystem::path& library) const override;

  private:
    DesktopEntryDirectories directories_;
};

}  // namespace platform::xdg
