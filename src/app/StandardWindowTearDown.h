#pragma once

#include "app/ActivationController.h"
#include "app/CoordinatorProtocol.h"

namespace tarnwick {

// The tear-down of a coordinator that owns an ordinary window: close it, and
// let the application fall back to its stored policy when it was the last
// one open.
void standardWindowTearDown(CoordinatorProtocol& coordinator, ActivationController& activation);

}  // namespace tarnwick
