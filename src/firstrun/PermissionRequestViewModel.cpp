#include "firstrun/PermissionRequestViewModel.h"

#include "accessibility/UIElement.h"
#include "platform/Platform.h"

namespace tarnwick {

using corvane::UIElement;

std::shared_ptr<PermissionRequestViewModel> PermissionRequestViewModel::make() {
    return std::shared_ptr<PermissionRequestViewModel>(
        new PermissionRequestViewModel(UIElement::isProcessTrusted(false)));
}

PermissionRequestViewModel::PermissionRequestViewModel(bool trusted)
    : hasAccessibilityPermissions_(trusted), needsRelaunch_(!trusted) {}

void PermissionRequestViewModel::requestPermission() {
    setHasAccessibilityPermissions(UIElement::isProcessTrusted(true));
    if (isPolling_)
        return;
    isPolling_ = true;
    changed_.emit();
    poll();
}

// The next round holds this object, so a chain runs to its end whoever
// else lets go of it. It ends with the permission: after that nothing of
// it stays on the loop, and an idle program is not woken.
void PermissionRequestViewModel::poll() {
    setHasAccessibilityPermissions(UIElement::isProcessTrusted(false));
    if (hasAccessibilityPermissions_)
        return;
    platform::mainLoop().postAfter(pollInterval, [self = shared_from_this()] { self->poll(); });
}

void PermissionRequestViewModel::setHasAccessibilityPermissions(bool value) {
    if (value == hasAccessibilityPermissions_)
        return;
    hasAccessibilityPermissions_ = value;
    changed_.emit();
}

}  // namespace tarnwick
