#include "platform/Platform.h"
#include "platform/Updater.h"

namespace platform {

StandardUpdaterController::StandardUpdaterController(std::weak_ptr<UpdaterDelegate> updaterDelegate)
    : updater_(platform::updater()) {
    updater_.startUpdater(std::move(updaterDelegate));
}

}  // namespace platform
