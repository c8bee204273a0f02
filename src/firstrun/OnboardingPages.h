#pragma once

#include <memory>
#include <string>

#include "firstrun/PermissionRequestView.h"
#include "firstrun/StyledText.h"
#include "platform/Image.h"

namespace tarnwick {

// The onboarding window's first page: a welcome above the permission
// request. Top to bottom: the icon, the welcome, the tag line, the prompt to
// begin, then the two steps.
class OnboardWindowPermissionsView {
  public:
    struct Drawing {
        platform::Image icon;
        StyledText welcome;         // large title
        StyledText tagLine;         // caption
        StyledText gettingStarted;  // "Let's get started..."
    };

    OnboardWindowPermissionsView(std::shared_ptr<PermissionRequestViewModel> permissionVM,
                                 PermissionRequestView::Coordinator& permissionCoordinator)
        : permissionRequest_(std::move(permissionVM), permissionCoordinator) {}

    Drawing draw() const;
    PermissionRequestView& permissionRequest() { return permissionRequest_; }

  private:
    PermissionRequestView permissionRequest_;
};

// The page that tells the chord, shown once the permission is there. Top to
// bottom: the icon, the instructions ending in the chord, the note on where
// to change it, and "OK".
class OnboardWindowInstructionsView {
  public:
    // What "OK" ends.
    class Coordinator {
      public:
        virtual ~Coordinator() = default;
        virtual void finish() = 0;
    };

    struct Drawing {
        platform::Image icon;
        StyledText instructions;  // several lines, centred
        StyledText settingsNote;
        std::string okButton;
    };

    OnboardWindowInstructionsView(std::string keyboardShortcut,
                                  std::weak_ptr<Coordinator> coordinator)
        : keyboardShortcut_(std::move(keyboardShortcut)), coordinator_(std::move(coordinator)) {}

    Drawing draw() const;
    // Ends the coordinator one turn of the main loop later, as any other
    // way of closing the window would.
    void ok() const;

    const std::string& keyboardShortcut() const { return keyboardShortcut_; }

  private:
    std::string keyboardShortcut_;
    std::weak_ptr<Coordinator> coordinator_;
};

}  // namespace tarnwick
