#pragma once

#include <functional>
#include <memory>

#include "app/ActivationController.h"
#include "app/CoordinatorProtocol.h"
#include "firstrun/OnboardingPages.h"
#include "firstrun/PermissionRequestViewModel.h"
#include "platform/Window.h"

namespace tarnwick {

// Leads a first-run user through the accessibility permission and then
// tells the chord, in one window whose page follows two facts: whether the
// permission is there, and whether the instructions are still to be shown.
//
//   permission missing                  -> the permission page
//   permission there, instructions due  -> the instructions page, once
//   permission there, instructions seen -> nothing
class OnboardingCoordinator final : public CoordinatorProtocol,
                                    public OnboardWindowInstructionsView::Coordinator {
  public:
    // How the toolkit draws each page; without one, the page has no content.
    struct Pages {
        std::function<std::shared_ptr<platform::ContentView>(OnboardWindowPermissionsView&)>
            permissions;
        std::function<std::shared_ptr<platform::ContentView>(OnboardWindowInstructionsView&)>
            instructions;
    };

    static constexpr platform::WindowStyleMask windowStyle = 4101;

    // The coordinator with its window, not yet shown: titled "Tarnwick",
    // with no close button, ended by the window's closing.
    static std::shared_ptr<OnboardingCoordinator> make(
        Ref parent, std::shared_ptr<PermissionRequestViewModel> permissionVM,
        PermissionRequestView::Coordinator& permissionsCoordinator,
        ActivationController& activationController, Pages pages = {});

    // Chooses the page and brings the window to the front, or shows nothing
    // when there is nothing to tell.
    void start();

    void finish() override { CoordinatorProtocol::finish(); }
    void willFinish() override;

    // The page shown, if it is that one.
    OnboardWindowPermissionsView* permissionsView() const { return permissionsView_.get(); }
    OnboardWindowInstructionsView* instructionsView() const { return instructionsView_.get(); }

  private:
    OnboardingCoordinator(Ref parent, std::shared_ptr<PermissionRequestViewModel> permissionVM,
                          PermissionRequestView::Coordinator& permissionsCoordinator,
                          ActivationController& activationController, Pages pages);
    void showPermissionsPage();
    void showInstructionsPage();
    std::weak_ptr<OnboardingCoordinator> weakSelf();

    std::shared_ptr<PermissionRequestViewModel> permissionVM_;
    PermissionRequestView::Coordinator& permissionsCoordinator_;
    ActivationController& activationController_;
    Pages pages_;
    std::unique_ptr<OnboardWindowPermissionsView> permissionsView_;
    std::unique_ptr<OnboardWindowInstructionsView> instructionsView_;
};

// The chord as the instructions tell it: the stored shortcut drawn with its
// key's character on the ASCII layout, left to right; "??" when there is
// none to draw.
std::string instructionsShortcutText();

}  // namespace tarnwick
