#pragma once

#include <functional>

#include "platform/Event.h"
#include "platform/Subscription.h"

namespace platform {

// A listen-only tap on the desktop's input events, ahead of every
// application.
class EventTap {
  public:
    virtual ~EventTap() = default;
    // An empty subscription when the tap can't be made.
    virtual Subscription tapCreate(EventMask mask, std::function<void(const Event&)> callback) = 0;
};

}  // namespace platform
