#pragma once

#include <functional>
#include <optional>

#include "platform/Event.h"
#include "platform/Subscription.h"

namespace platform {

// Event monitors: global ones see events sent to other applications, local
// ones see events sent to our own windows before they are dispatched.
class EventMonitors {
  public:
    using GlobalHandler = std::function<void(const Event&)>;
    // A local handler returns the event to let it through, or nothing to
    // swallow it.
    using LocalHandler = std::function<std::optional<Event>(const Event&)>;

    virtual ~EventMonitors() = default;

    // An empty token means the platform refused the monitor.
    virtual Token addGlobalMonitor(EventMask mask, GlobalHandler handler) = 0;
    virtual Token addLocalMonitor(EventMask mask, LocalHandler handler) = 0;
    virtual void removeMonitor(Token monitor) = 0;

    // The pointer, in bottom-left screen points.
    virtual CGPoint mouseLocation() const = 0;
    // The modifier keys held now.
    virtual ModifierFlags modifierFlags() const = 0;
};

}  // namespace platform
