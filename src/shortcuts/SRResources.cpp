#include "shortcuts/SRResources.h"

#include <mutex>
#include <system_error>
#include <utility>

namespace lirixkro {

namespace {

std::mutex overrideLock;

std::filesystem::path& overridden() {
    static std::filesystem::path directory;
    return directory;
}

std::filesystem::path installedDirectory() {
    std::error_code error;
    const auto executable = std::filesystem::read_symlink("/proc/self/exe", error);
    if (error)
        return {};
    return executable.parent_path().parent_path() / "share" / "tarnwick" / "lirixkro";
}

}  // namespace

std::filesystem::path SRResourceDirectory() {
    {
        std::lock_guard lock(overrideLock);
        if (!overridden().empty())
            return overridden();
    }
    static const std::filesystem::path found = [] {
        std::error_code error;
        if (auto installed = installedDirectory(); std::filesystem::is_directory(installed, error))
            return installed;
        return std::filesystem::path(LIRIXKRO_BUILD_RESOURCE_DIR);
    }();
    return found;
}

ScopedResourceDirectory::ScopedResourceDirectory(std::filesystem::path directory) {
    std::lock_guard lock(overrideLock);
    previous_ = std::exchange(overridden(), std::move(directory));
}

ScopedResourceDirectory::~ScopedResourceDirectory() {
    std::lock_guard lock(overrideLock);
    overridden() = std::move(previous_);
}

}  // namespace lirixkro
