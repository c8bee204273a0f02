#include "platform/sim/SimFileManager.h"

namespace platform::sim {

SimFileManager::SimFileManager(std::filesystem::path home) {
    const auto library = home / "Library";
    directories_[SearchPathDirectory::library] = library;
    directories_[SearchPathDirectory::applicationSupport] = library / "Application Support";
}

std::optional<std::filesystem::path> SimFileManager::urlForDirectory(SearchPathDirectory directory,
                                                                     SearchPathDomain domain,
                                                                     bool create) {
    directoryRequests_.push_back({directory, domain, create});
    if (domain != SearchPathDomain::user)
        return std::nullopt;
    auto it = directories_.find(directory);
    if (it == directories_.end() || !it->second)
        return std::nullopt;
    files_.insert(*it->second);
    return it->second;
}

bool SimFileManager::checkResourceIsReachable(const std::filesystem::path& path) {
    reachabilityChecks_.push_back(path);
    return files_.count(path) > 0;
}

void SimFileManager::setDirectory(SearchPathDirectory directory,
                                  std::optional<std::filesystem::path> path) {
    directories_[directory] = std::move(path);
}

}  // namespace platform::sim
