#include "platform/sim/SimLoginItemService.h"

namespace platform::sim {

std::string SimLoginItemService::registerMainApp() {
    calls_.emplace_back("register");
    return change(registeredStatus_);
}

void SimLoginItemService::unregisterMainApp(Completion completion) {
    calls_.emplace_back("unregister");
    loop_.post(
        [this, completion = std::move(completion)] { completion(change(Status::notRegistered)); });
}

std::string SimLoginItemService::change(Status status) {
    if (!failure_.empty())
        return failure_;
    status_ = status;
    return {};
}

}  // namespace platform::sim
