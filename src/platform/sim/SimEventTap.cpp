#include "platform/sim/SimEventTap.h"

#include <vector>

namespace platform::sim {

Subscription SimEventTap::tapCreate(EventMask mask, std::function<void(const Event&)> callback) {
    ++createCount_;
    if (refusesTaps_ || !callback)
        return {};
    const auto id = ++lastId_;
    taps_.emplace(id, Tap{mask, std::move(callback)});
    return Subscription([this, id] { taps_.erase(id); });
}

void SimEventTap::post(const Event& event) {
    std::vector<std::uint64_t> ids;
    for (const auto& entry : taps_)
        ids.push_back(entry.first);
    for (auto id : ids) {
        auto it = taps_.find(id);
        if (it == taps_.end() || !(it->second.mask & eventMaskFor(event.type)))
            continue;
        auto callback = it->second.callback;
        callback(event);
    }
}

}  // namespace platform::sim
