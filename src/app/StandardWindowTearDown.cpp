#include "app/StandardWindowTearDown.h"

namespace tarnwick {

void standardWindowTearDown(CoordinatorProtocol& coordinator, ActivationController& activation) {
    auto& controller = coordinator.rootController();
    const auto window = controller.window();
    controller.close();
    if (window) {
        activation.removeOpenWindow(window.get());
        activation.updateActivationPolicy();
    }
}

}  // namespace tarnwick
