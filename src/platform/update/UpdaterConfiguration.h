#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <string>

#include "platform/update/Transfer.h"

namespace platform::update {

// Everything the updater is told at its making.
struct UpdaterConfiguration {
    std::string applicationName = "Tarnwick";
    std::string version;         // compared with the feed's versions (the build number)
    std::string displayVersion;  // shown to the user
    // The bundle's settings: the feed's address, which the preference of
    // the same name overrides, and the key releases are signed with.
    std::string feedURL;
    std::string publicEDKey;
    // The running program, whose location decides how it is updated.
    std::filesystem::path executable;
    // How often automatic checks run, in seconds.
    double checkInterval = 24 * 60 * 60;
    TransferLimits feedLimits;
    TransferLimits archiveLimits{.maximumBytes = 512ull * 1024 * 1024};
    // Starts the installed program after this process ends, then ends this
    // one. Empty on success, else what failed.
    std::function<std::string(const std::filesystem::path& program)> relaunch;
    // The wall clock that the time of the last check is kept in.
    std::function<std::chrono::system_clock::time_point()> clock = [] {
        return std::chrono::system_clock::now();
    };
};

}  // namespace platform::update
