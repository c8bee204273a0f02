#include "platform/xdg/XdgFileManager.h"

#include <algorithm>
#include <system_error>

#include "platform/xdg/PlistFileStore.h"

namespace platform::xdg {

std::optional<std::filesystem::path> XdgFileManager::urlForDirectory(SearchPathDirectory directory,
                                                                     SearchPathDomain domain,
                                                                     bool create) {
    if (domain != SearchPathDomain::user)
        return std::nullopt;
    std::filesystem::path path;
    switch (directory) {
        case SearchPathDirectory::applicationSupport:
            path = directories_.dataHome;
            break;
        case SearchPathDirectory::library:
            path = directories_.configHome;
            break;
        default:
            return std::nullopt;
    }
    if (path.empty() || !path.is_absolute())
        return std::nullopt;
    if (create) {
        std::error_code error;
        std::filesystem::create_directories(path, error);
        if (error || !std::filesystem::is_directory(path, error))
            return std::nullopt;
    }
    return path;
}

bool XdgFileManager::checkResourceIsReachable(const std::filesystem::path& path) {
    std::error_code error;
    return std::filesystem::exists(path, error);
}

std::vector<std::filesystem::path> XdgFileManager::applicationsDirectories() const {
    auto directories = directories_.systemApplicationsDirectories();
    // A data directory list that names the user's own data folder doesn't
    // make the user's applications system ones.
    const auto own = directories_.userApplicationsDirectory().lexically_normal();
    std::erase_if(directories, [&](const std::filesystem::path& directory) {
        return directory.lexically_normal() == own;
    });
    return directories;
}

std::filesystem::path XdgFileManager::preferencesDirectory(const std::filesystem::path&) const {
    return PlistFileStore::defaultPath("harrowmere.Tarnwick").parent_path();
}

}  // namespace platform::xdg
