#include "services/LoginLaunchController.h"

#include "platform/Platform.h"
#include "support/StandardOutput.h"

namespace tarnwick {

const std::shared_ptr<LoginLaunchController>& LoginLaunchController::shared() {
    static const auto instance = make();
    return instance;
}

std::shared_ptr<LoginLaunchController> LoginLaunchController::make() {
    return std::shared_ptr<LoginLaunchController>(new LoginLaunchController());
}

bool LoginLaunchController::isEnabled() const {
    return platform::loginItemService().status() == platform::LoginItemService::Status::enabled;
}

void LoginLaunchController::setEnabled(bool value, std::function<void()> done) {
    if (isThinking_) {
        if (done)
            done();
        return;
    }
    setThinking(true);
    auto& service = platform::loginItemService();
    if (value) {
        finish(service.registerMainApp(), done);
        return;
    }
    service.unregisterMainApp([self = shared_from_this(), done = std::move(done)](
                                  const std::string& failure) { self->finish(failure, done); });
}

void LoginLaunchController::finish(const std::string& failure, const std::function<void()>& done) {
    if (!failure.empty())
        quillbox::printLine(failurePrefix + failure);
    setThinking(false);
    if (done)
        done();
}

void LoginLaunchController::setThinking(bool value) {
    if (isThinking_ == value)
        return;
    isThinking_ = value;
    changed_.emit();
}

}  // namespace tarnwick
