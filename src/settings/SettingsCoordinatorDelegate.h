#pragma once

#include <memory>

#include "services/UpdateController.h"

namespace tarnwick {

// How the Settings window reaches the application's update controller; the
// root coordinator answers it.
class SettingsCoordinatorDelegate {
  public:
    virtual ~SettingsCoordinatorDelegate() = default;
    virtual const std::shared_ptr<UpdateController>& updateController() const = 0;
};

}  // namespace tarnwick
