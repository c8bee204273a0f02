#include "firstrun/PermissionRequestView.h"

#include "services/Restarter.h"

namespace tarnwick {

PermissionRequestView::Drawing PermissionRequestView::draw() const {
    const bool granted = viewModel_->hasAccessibilityPermissions();
    Drawing drawing;
    drawing.firstStep = {"Step 1", TextStyle::headline, true};
    drawing.explanation = {"Tarnwick needs accessibility permissions to properly function."};
    drawing.seal =
        platform::Image::systemSymbol(granted ? "checkmark.seal.fill" : "xmark.seal.fill");
    drawing.sealColor = granted ? SealColor::green : SealColor::red;
    drawing.sealAccessibleName = granted ? "Permission granted" : "Permission missing";
    drawing.permissionButton = "Accessibility Permission";
    drawing.secondStep = {"Step 2", TextStyle::headline, true};
    drawing.relaunchButton = "Relaunch App";
    drawing.relaunchEnabled = viewModel_->needsRelaunch() && granted;
    return drawing;
}

void PermissionRequestView::relaunch() {
    Restarter::relaunch();
}

}  // namespace tarnwick
