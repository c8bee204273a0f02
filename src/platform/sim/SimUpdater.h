#pragma once

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "platform/Updater.h"

namespace platform::sim {

// The update service of the simulated desktop: a check asks the delegate for
// the allowed channels, as the real one does, and records them.
class SimUpdater final : public Updater {
  public:
    void startUpdater(std::weak_ptr<UpdaterDelegate> delegate) override {
        delegate_ = std::move(delegate);
        ++starts_;
    }
    void checkForUpdates() override {
        auto delegate = delegate_.lock();
        checks_.push_back(delegate ? delegate->allowedChannelsForUpdater(*this)
                                   : std::set<std::string>{});
    }
    bool automaticallyChecksForUpdates() const override { return automaticallyChecks_; }
    void setAutomaticallyChecksForUpdates(bool value) override { automaticallyChecks_ = value; }

    // The allowed channels of each check made, in order.
    const std::vector<std::set<std::string>>& checks() const { return checks_; }
    int starts() const { return starts_; }
    bool hasDelegate() const { return !delegate_.expired(); }

  private:
    std::weak_ptr<UpdaterDelegate> delegate_;
    std::vector<std::set<std::string>> checks_;
    bool automaticallyChecks_ = false;
    int starts_ = 0;
};

}  // namespace platform::sim
