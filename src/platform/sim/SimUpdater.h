#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "platform/Updater.h"

namespace platform::sim {

// The update service of the simulated desktop: a check asks for the allowed
// channels, as the real one does, and records them.
class SimUpdater final : public Updater {
  public:
    void setAllowedChannelsProvider(std::function<std::set<std::string>()> provider) override {
        provider_ = std::move(provider);
    }
    void checkForUpdates() override {
        checks_.push_back(provider_ ? provider_() : std::set<std::string>{});
    }
    bool automaticallyChecksForUpdates() const override { return automaticallyChecks_; }
    void setAutomaticallyChecksForUpdates(bool value) override { automaticallyChecks_ = value; }

    // The allowed channels of each check made, in order.
    const std::vector<std::set<std::string>>& checks() const { return checks_; }

  private:
    std::function<std::set<std::string>()> provider_;
    std::vector<std::set<std::string>> checks_;
    bool automaticallyChecks_ = false;
};

}  // namespace platform::sim
