#include "firstrun/OnboardingCoordinator.h"

#include "app/StandardWindowTearDown.h"
#include "platform/Platform.h"
#include "settings/SettingsKeys.h"
#include "shortcuts/SRShortcutFormatter.h"
#include "support/DefaultsManager.h"

namespace tarnwick {

std::string instructionsShortcutText() {
    const auto stored = quillbox::DefaultsManager::shared().getValue(activationShortcut);
    lirixkro::SRShortcutFormatter formatter;
    formatter.setUsesASCIICapableKeyboardInputSource(true);
    formatter.setKeyCodeLiteral(true);
    formatter.setLayoutDirection(platform::UserInterfaceLayoutDirection::leftToRight);
    const lirixkro::SRValue value =
        stored ? lirixkro::SRValue(stored->toShortcut()) : lirixkro::SRValue();
    return formatter.stringForObjectValue(value).value_or("??");
}

std::shared_ptr<OnboardingCoordinator> OnboardingCoordinator::make(
    Ref parent, std::shared_ptr<PermissionRequestViewModel> permissionVM,
    PermissionRequestView::Coordinator& permissionsCoordinator,
    ActivationController& activationController, Pages pages) {
    std::shared_ptr<OnboardingCoordinator> coordinator(
        new OnboardingCoordinator(std::move(parent), std::move(permissionVM),
                                  permissionsCoordinator, activationController, std::move(pages)));
    auto window = platform::toolkit().makeWindow(windowStyle);
    window->setTitle("Tarnwick");
    window->setTitlebarAppearsTransparent(true);
    coordinator->setRootController(std::make_shared<platform::WindowController>(window));
    coordinator->setFinishesOnWindowClose(true);
    return coordinator;
}

OnboardingCoordinator::OnboardingCoordinator(
    Ref parent, std::shared_ptr<PermissionRequestViewModel> permissionVM,
    PermissionRequestView::Coordinator& permissionsCoordinator,
    ActivationController& activationController, Pages pages)
    : CoordinatorProtocol(std::move(parent)),
      permissionVM_(std::move(permissionVM)),
      permissionsCoordinator_(permissionsCoordinator),
      activationController_(activationController),
      pages_(std::move(pages)) {}

// The window never changes its page by itself: a permission granted while
// the first page is open only enables the relaunch, and the instructions
// wait for a launch with the permission.
void OnboardingCoordinator::start() {
    auto& defaults = quillbox::DefaultsManager::shared();
    const bool granted = permissionVM_->hasAccessibilityPermissions();
    if (granted && !defaults.getValue(needsShowingInstructions))
        return;
    if (granted)
        showInstructionsPage();
    else
        showPermissionsPage();
    if (const auto& window = rootController().window())
        activationController_.bringToFront(window);
}

void OnboardingCoordinator::showPermissionsPage() {
    permissionsView_ =
        std::make_unique<OnboardWindowPermissionsView>(permissionVM_, permissionsCoordinator_);
    if (pages_.permissions && rootController().window())
        rootController().window()->setContentView(pages_.permissions(*permissionsView_));
}

// Shown once, however the window is then closed.
void OnboardingCoordinator::showInstructionsPage() {
    instructionsView_ =
        std::make_unique<OnboardWindowInstructionsView>(instructionsShortcutText(), weakSelf());
    if (pages_.instructions && rootController().window())
        rootController().window()->setContentView(pages_.instructions(*instructionsView_));
    quillbox::DefaultsManager::shared().setValue(false, needsShowingInstructions);
}

std::weak_ptr<OnboardingCoordinator> OnboardingCoordinator::weakSelf() {
    return std::static_pointer_cast<OnboardingCoordinator>(shared_from_this());
}

void OnboardingCoordinator::willFinish() {
    standardWindowTearDown(*this, activationController_);
}

}  // namespace tarnwick
