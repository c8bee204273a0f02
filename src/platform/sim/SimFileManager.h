#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <vector>

#include "platform/FileSystem.h"

namespace platform::sim {

// The well-known directories of a simulated user, and which files exist.
// Nothing touches the real file system; every question is recorded.
class SimFileManager final : public FileManager {
  public:
    struct DirectoryRequest {
        SearchPathDirectory directory;
        SearchPathDomain domain;
        bool create;
        friend bool operator==(const DirectoryRequest&, const DirectoryRequest&) = default;
    };

    // The simulated user's home; Library and Application Support lie in it.
    explicit SimFileManager(std::filesystem::path home = "/Users/tarnwick");

    std::optional<std::filesystem::path> urlForDirectory(SearchPathDirectory directory,
                                                         SearchPathDomain domain,
                                                         bool create) override;
    bool checkResourceIsReachable(const std::filesystem::path& path) override;

    // Scripting: a file that exists; a directory that can't be had.
    void addFile(const std::filesystem::path& path) { files_.insert(path); }
    void setDirectory(SearchPathDirectory directory, std::optional<std::filesystem::path> path);

    const std::vector<DirectoryRequest>& directoryRequests() const { return directoryRequests_; }
    const std::vector<std::filesystem::path>& reachabilityChecks() const {
        return reachabilityChecks_;
    }

  private:
    std::map<SearchPathDirectory, std::optional<std::filesystem::path>> directories_;
    std::set<std::filesystem::path> files_;
    std::vector<DirectoryRequest> directoryRequests_;
    std::vector<std::filesystem::path> reachabilityChecks_;
};

}  // namespace platform::sim
