#include "platform/x11/X11EventTap.h"

namespace platform::x11 {

Subscription X11EventTap::tapCreate(EventMask mask, std::function<void(const Event&)> callback) {
    if (!input_ || !callback)
        return Subscription();
    const Token token = input_->addListener(mask, std::move(callback));
    return Subscription(lifetime_.guard([input = input_, token] { input->removeListener(token); }));
}

}  // namespace platform::x11
