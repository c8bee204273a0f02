#pragma once

#include <string>

#include "platform/Workspace.h"

namespace platform::sim {

// A running application of the simulated desktop. Tests set its data
// directly.
class SimRunningApplication final : public RunningApplication {
  public:
    struct Info {
        pid_t processIdentifier = 0;
        std::optional<std::string> bundleIdentifier;
        std::optional<std::filesystem::path> bundleURL;
        std::optional<std::string> localizedName;
        std::optional<Image> icon;
        ActivationPolicy activationPolicy = ActivationPolicy::regular;
    };

    explicit SimRunningApplication(Info info) : info_(std::move(info)) {}

    pid_t processIdentifier() const override { return info_.processIdentifier; }
    std::optional<std::string> bundleIdentifier() const override { return info_.bundleIdentifier; }
    std::optional<std::filesystem::path> bundleURL() const override { return info_.bundleURL; }
    std::optional<std::string> localizedName() const override { return info_.localizedName; }
    std::optional<Image> icon() const override { return info_.icon; }
    bool isTerminated() const override { return terminated_; }
    ActivationPolicy activationPolicy() const override { return info_.activationPolicy; }
    std::string description() const override;

    Info& info() { return info_; }
    void markTerminated() { terminated_ = true; }

  private:
    Info info_;
    bool terminated_ = false;
};

}  // namespace platform::sim
