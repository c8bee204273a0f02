#pragma once

namespace tarnwick {

// What the Settings window asks of the application beyond its own
// coordinator; the root coordinator answers it.
class SettingsCoordinatorDelegate {
  public:
    virtual ~SettingsCoordinatorDelegate() = default;
};

}  // namespace tarnwick
