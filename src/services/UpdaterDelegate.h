#pragma once

#include <set>
#include <string>

#include "platform/Updater.h"

namespace tarnwick {

// Tells the updater which release channels the user follows, from the
// stored channel, read again at every question so that a change in Settings
// counts at the next check without a restart.
class UpdaterDelegate final : public platform::UpdaterDelegate {
  public:
    // "default": the empty set, the default channel alone. Any other word,
    // the empty one included, is the one channel followed beside it.
    std::set<std::string> allowedChannelsForUpdater(const platform::Updater& updater) override;
};

}  // namespace tarnwick
