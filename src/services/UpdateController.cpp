#include "services/UpdateController.h"

namespace tarnwick {

UpdateController::UpdateController()
    : updateDelegate_(std::make_shared<UpdaterDelegate>()),
      updateController_(std::make_unique<platform::StandardUpdaterController>(updateDelegate_)) {}

}  // namespace tarnwick
