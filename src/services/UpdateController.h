#pragma once

#include <memory>

#include "platform/Updater.h"
#include "services/UpdaterDelegate.h"

namespace tarnwick {

// The program's side of software updates: it starts the platform's updater
// with the standard user interface and the channel delegate, and forwards
// the update commands of the status menu and Settings. Everything else (the
// feed, signatures, downloads, dialogues, the automatic checks) is the
// updater's.
class UpdateController {
  public:
    // The delegate first: the updater asks it from its start.
    UpdateController();
    UpdateController(const UpdateController&) = delete;
    UpdateController& operator=(const UpdateController&) = delete;

    // A check the user asked for, with the updater's own dialogues.
    void checkForUpdates() { updateController_->checkForUpdates(); }

    platform::Updater& updater() const { return updateController_->updater(); }
    const std::shared_ptr<UpdaterDelegate>& updateDelegate() const { return updateDelegate_; }

  private:
    std::shared_ptr<UpdaterDelegate> updateDelegate_;
    std::unique_ptr<platform::StandardUpdaterController> updateController_;
};

}  // namespace tarnwick
