#include "services/UpdaterDelegate.h"

#include "settings/SettingsKeys.h"
#include "support/DefaultsManager.h"

namespace tarnwick {

std::set<std::string> UpdaterDelegate::allowedChannelsForUpdater(const platform::Updater&) {
    auto channel = quillbox::DefaultsManager::shared().getValue(releaseChannel);
    if (channel == "default")
        return {};
    return {std::move(channel)};
}

}  // namespace tarnwick
