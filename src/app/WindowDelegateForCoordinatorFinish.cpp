#include "app/WindowDelegateForCoordinatorFinish.h"

#include "app/CoordinatorProtocol.h"
#include "platform/Platform.h"
#include "support/StandardOutput.h"

namespace tarnwick {

void WindowDelegateForCoordinatorFinish::windowWillClose(platform::Window* window) {
    quillbox::printLine("[Activation] windowWillClose: " + (window ? window->title() : "<nil>"));
    // The task keeps the delegate alive; the coordinator may be gone by the
    // time it runs.
    platform::mainLoop().post([self = shared_from_this()] {
        if (auto parent = self->parent())
            parent->finish();
    });
}

}  // namespace tarnwick
