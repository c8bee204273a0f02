#pragma once

namespace tarnwick {

// What the Settings window asks of the application beyond its own
// coordinator; the root coordinator answers it.
class SettingsCoordinatorDelegate {
  public:
    virtual ~SettingsCoordinatorDelegate() = default;
    // A check for updates that the user asked for.
    virtual void checkForUpdates() = 0;
};

}  // namespace tarnwick
