#pragma once

#include <memory>
#include <string>

#include "firstrun/PermissionRequestViewModel.h"
#include "firstrun/StyledText.h"
#include "platform/Image.h"

namespace tarnwick {

// The two steps that ask for the accessibility permission and then relaunch
// the program, as data: the widgets draw it and call its actions.
class PermissionRequestView {
  public:
    // The coordinator the view is shown for. The view keeps it and asks
    // nothing of it.
    class Coordinator {
      public:
        virtual ~Coordinator() = default;
    };

    enum class SealColor { green, red };

    struct Drawing {
        StyledText firstStep;    // "Step 1", a headline in italics
        StyledText explanation;  // what the permission is for
        platform::Image seal;    // a check mark while granted, a cross while missing
        SealColor sealColor = SealColor::red;
        std::string sealAccessibleName;
        std::string permissionButton;  // "Accessibility Permission"
        StyledText secondStep;         // "Step 2", like the first
        std::string relaunchButton;    // "Relaunch App"
        // Only a process that started without the permission and has it now
        // has a reason to start again.
        bool relaunchEnabled = false;
    };

    PermissionRequestView(std::shared_ptr<PermissionRequestViewModel> viewModel,
                          Coordinator& coordinator)
        : viewModel_(std::move(viewModel)), coordinator_(coordinator) {}

    Drawing draw() const;

    // "Accessibility Permission": asks the platform and starts polling.
    void requestPermission() { viewModel_->requestPermission(); }
    // "Relaunch App".
    void relaunch();

    // Sent when what the view shows may have changed.
    quillbox::Signal<>& changed() { return viewModel_->changed(); }

    PermissionRequestViewModel& viewModel() const { return *viewModel_; }
    Coordinator& coordinator() const { return coordinator_; }

  private:
    std::shared_ptr<PermissionRequestViewModel> viewModel_;
    Coordinator& coordinator_;
};

}  // namespace tarnwick
