#include "platform/sim/SimEventTap.h"

namespace platform::sim {

Subscription SimEventTap::tapCreate(EventMask mask, std::function<void(const Event&)> callback) {
    ++createCount_;
    if (refusesTaps_ || !callback)
        return {};
    return taps_.subscribe([mask, callback = std::move(callback)](const Event& event) {
        if (mask & eventMaskFor(event.type))
            callback(event);
    });
}

void SimEventTap::post(const Event& event) {
    taps_.call(event);
}

}  // namespace platform::sim
