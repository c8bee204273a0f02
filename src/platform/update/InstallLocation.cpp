#include "platform/update/InstallLocation.h"

#include <unistd.h>

#include <system_error>

namespace platform::update {

namespace {

namespace fs = std::filesystem;

bool isWritable(const fs::path& folder) {
    return ::access(folder.c_str(), W_OK) == 0;
}

// The distribution's own tree: whatever lies there belongs to the package
// manager, even for a user who could write it.
bool isInSystemTree(const fs::path& path) {
    const auto text = path.generic_string();
    return text.starts_with("/usr/") && !text.starts_with("/usr/local/");
}

bool isCurrentVersion(const fs::path& root, const fs::path& versionFolder) {
    std::error_code error;
    const auto link = root / releaseLayout::currentLink;
    if (!fs::is_symlink(fs::symlink_status(link, error)))
        return false;
    return fs::equivalent(link, versionFolder, error);
}

}  // namespace

InstallLocation InstallLocation::of(const std::filesystem::path& executable) {
    std::error_code error;
    const auto real = fs::canonical(executable, error);
    InstallLocation location;
    if (error)
        return location;
    location.versionFolder = real.parent_path().parent_path();
    location.root = location.versionFolder.parent_path();
    if (isInSystemTree(real) || !isWritable(real.parent_path())) {
        location.kind = Kind::packageManaged;
    } else if (real.parent_path().filename() == "bin" &&
               isCurrentVersion(location.root, location.versionFolder) &&
               isWritable(location.root)) {
        location.kind = Kind::releaseFolder;
    }
    return location;
}

}  // namespace platform::update
