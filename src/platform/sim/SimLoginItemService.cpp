#include "platform/sim/SimLoginItemService.h"

namespace platform::sim {

std::string SimLoginItemService::registerMainApp() {
    return change("register", Status::enabled);
}

std::string SimLoginItemService::unregisterMainApp() {
    return change("unregister", Status::notRegistered);
}

std::string SimLoginItemService::change(const char* call, Status status) {
    calls_.emplace_back(call);
    if (!failure_.empty())
        return failure_;
    status_ = status;
    return {};
}

}  // namespace platform::sim
