#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "platform/sessionbus/SessionBusApplication.h"
#include "platform/xdg/RuntimeLock.h"

namespace tarnwick {

// One copy of the program answers the chord in a session. The first start
// holds a lock in the runtime folder and owns the program's name on the
// session bus; a later start hands its request to that copy over the bus,
// waiting a moment for the name if the copy is still starting, and ends.
// Without a session bus the lock alone keeps a second copy from running.
class SingleInstance {
  public:
    enum class Request {
        showSettings,  // a plain start: the way into Settings without a tray
        showPanel,     // --show-panel
    };

    // Either this copy runs (the instance), or it has done what it could for
    // the request and ends with the exit status.
    struct Claim {
        std::unique_ptr<SingleInstance> instance;
        int exitStatus = 0;
    };
    static Claim claim(Request request);

    // Later starts' requests, delivered on the main loop a turn after they
    // arrived; none are lost before the handler is set, since they arrive
    // from the event loop only.
    void setRequestHandler(std::function<void(Request)> handler);

  private:
    SingleInstance() = default;

    std::shared_ptr<std::function<void(Request)>> handler_ =
        std::make_shared<std::function<void(Request)>>();
    // Declared in this order so that the lock goes before the name: a start
    // in between finds the lock free and queues for the name.
    std::unique_ptr<platform::sessionbus::SessionBusApplication> busName_;
    std::optional<platform::xdg::RuntimeLock> lock_;
};

}  // namespace tarnwick
