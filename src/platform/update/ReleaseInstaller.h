#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace platform::update {

struct InstallResult {
    std::string problem;            // empty when installed, else what failed, in a few words
    std::filesystem::path program;  // the new version's program, started through the link
};

// Installs a release archive whose signature has been checked into a
// release folder: it is unpacked in a hidden folder inside the root, its
// version folder moved beside the running one, and the link switched to it
// in one rename. Until that rename nothing the running version uses has
// changed, and a failure on the way takes away whatever the attempt had
// made. Once switched, the versions older than the running one are
// removed, so that a folder updated for years holds two versions, not all
// of them. Runs off the main loop: it waits for the unpacking.
InstallResult installRelease(std::string_view archive, const std::filesystem::path& root,
                             const std::filesystem::path& runningVersion);

// Points the release folder's link at the named version folder, in one
// rename. Empty on success, else what failed.
std::string switchCurrentVersion(const std::filesystem::path& root,
                                 const std::filesystem::path& versionName);

}  // namespace platform::update
