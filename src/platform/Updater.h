#pragma once

#include <functional>
#include <set>
#include <string>

namespace platform {

// The update service: checks a feed for newer releases on the allowed
// channels.
class Updater {
  public:
    virtual ~Updater() = default;
    // Asked at every check: the channels beside the default one.
    virtual void setAllowedChannelsProvider(std::function<std::set<std::string>()> provider) = 0;
    virtual void checkForUpdates() = 0;
    virtual bool automaticallyChecksForUpdates() const = 0;
    virtual void setAutomaticallyChecksForUpdates(bool value) = 0;
};

}  // namespace platform
