#pragma once

#include <filesystem>

namespace platform::update {

// The layout of a release folder, as the release archive unpacks it:
//
//   tarnwick/                  the root, anywhere the user can write
//     current -> tarnwick-0.2.0
//     tarnwick-0.2.0/bin/tarnwick
//     tarnwick-0.2.0/libexec/tarnwick/AppRestartHelper
//
// The program is started as root/current/bin/tarnwick, so switching the one
// link switches the version.
namespace releaseLayout {
inline constexpr const char* currentLink = "current";
inline const std::filesystem::path program = std::filesystem::path("bin") / "tarnwick";
inline const std::filesystem::path restartHelper =
    std::filesystem::path("libexec") / "tarnwick" / "AppRestartHelper";
}  // namespace releaseLayout

// Where the running program is installed, which decides how it is updated.
struct InstallLocation {
    enum class Kind {
        releaseFolder,   // updated in place by switching the link
        packageManaged,  // the system's package manager's files: never written
        elsewhere,       // a build tree or a hand-made copy: not ours to replace
    };

    Kind kind = Kind::elsewhere;
    std::filesystem::path root;           // for a release folder
    std::filesystem::path versionFolder;  // the running version's folder

    static InstallLocation of(const std::filesystem::path& executable);
};

}  // namespace platform::update
