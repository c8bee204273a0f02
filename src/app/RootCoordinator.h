#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "app/ActivationController.h"
#include "app/CoordinatorProtocol.h"
#include "app/MenuBarManager.h"
#include "firstrun/OnboardingCoordinator.h"
#include "firstrun/PermissionRequestView.h"
#include "firstrun/PermissionRequestViewModel.h"
#include "listwindow/InteractionController.h"
#include "listwindow/ListWindowView.h"
#include "listwindow/ListWindowViewModel.h"
#include "listwindow/WindowActions.h"
#include "platform/Event.h"
#include "platform/LifetimeGuard.h"
#include "platform/Subscription.h"
#include "platform/Workspace.h"
#include "services/UpdateController.h"
#include "settings/SettingsCoordinatorDelegate.h"
#include "tracking/AppsMonitor.h"

namespace tarnwick {

// The spine of the program: it builds the long-lived controllers and the
// floating list panel, and owns the event monitors that bring the panel to
// the pointer on the activation shortcut and take it away again.
class RootCoordinator final : public CoordinatorProtocol,
                              public MenuBarManager::Coordinator,
                              public ListWindowView::ListRow::Coordinator,
                              public PermissionRequestView::Coordinator,
                              public SettingsCoordinatorDelegate {
  public:
    using WindowRef = ListWindowView::WindowRef;
    // The toolkit's drawing of the list window's content.
    using ContentViewFactory =
        std::function<std::shared_ptr<platform::ContentView>(ListWindowView&)>;

    // How to make the child coordinators whose windows belong to features of
    // their own (Settings, About). A missing one leaves its command without
    // effect.
    using ChildFactory = std::function<CoordinatorProtocol::Ref(RootCoordinator&)>;
    struct ChildFactories {
        ChildFactory settings;
        ChildFactory about;
        // How the onboarding window's pages are drawn.
        OnboardingCoordinator::Pages onboardingPages;
    };

    static std::shared_ptr<RootCoordinator> make(ChildFactories factories = {},
                                                 ContentViewFactory contentView = {});

    // The first-window decision, then the status item.
    void start();

    void showAbout() override;
    void checkForUpdates() override;
    void showSettings() override;
    void quit() override;

    // The window actions of the list's rows.
    void raiseWindow(const WindowRef& window) override { windowActions_->raiseWindow(window); }
    void closeWindow(const WindowRef& window) override { windowActions_->closeWindow(window); }
    void toggleMinimized(const WindowRef& window) override {
        windowActions_->toggleMinimized(window);
    }
    void toggleFullScreen(const WindowRef& window) override {
        windowActions_->toggleFullScreen(window);
    }

    void willFinish() override;
    void childDidFinish(const CoordinatorProtocol& child) override;

    ActivationController& activationController() { return *activationController_; }
    platform::WindowController& mainWindowController() const;
    const CoordinatorProtocol::Ref& settingsCoordinator() const { return settingsCoordinator_; }
    const CoordinatorProtocol::Ref& aboutCoordinator() const { return aboutCoordinator_; }
    MenuBarManager& menuManager() const;
    AppsMonitor& appsMonitor() const { return *appsMonitor_; }
    const std::shared_ptr<InteractionController>& interactionController() const {
        return interactionController_;
    }
    ListWindowViewModel& listWindowViewModel() const { return *listWindowViewModel_; }
    ListWindowView& listWindowView() const { return *listWindowView_; }
    // Shared with the Settings window.
    const std::shared_ptr<UpdateController>& updateController() const override {
        return updateController_;
    }
    // The one permission model, shared by the panel and the onboarding window.
    PermissionRequestViewModel& permissionViewModel() const { return *permissionViewModel_; }

    // The panel comes to the pointer at full opacity, without activating the
    // program, and follows the pointer's distance from then on.
    void presentListWindow();

  private:
    RootCoordinator(ChildFactories factories, ContentViewFactory contentView);
    void build();
    void configureListPanel(platform::Window& panel);

    std::shared_ptr<platform::Window> makeListPanel();
    void installShortcutMonitors();
    void installMouseMonitors();
    void removeShortcutMonitors();
    void removeMouseMonitors();

    void handleShortcutEvent(const platform::Event& event);
    void handleMouseMoved(const platform::Event& event, const char* source);
    void handleEscapeKeyUp(const platform::Event& event);
    void handleFrontmostApplication(const platform::RunningApplicationRef& application);
    void placeListWindowAtMouse();
    void showChild(CoordinatorProtocol::Ref& slot, const ChildFactory& factory);

    ChildFactories factories_;
    ContentViewFactory contentViewFactory_;
    std::shared_ptr<ActivationController> activationController_;
    std::shared_ptr<AppsMonitor> appsMonitor_;
    std::shared_ptr<platform::WindowController> mainWindowController_;
    std::shared_ptr<InteractionController> interactionController_;
    std::shared_ptr<UpdateController> updateController_;
    std::shared_ptr<PermissionRequestViewModel> permissionViewModel_;
    std::shared_ptr<ListWindowViewModel> listWindowViewModel_;
    std::unique_ptr<WindowActions> windowActions_;
    std::unique_ptr<PermissionRequestView> permissionView_;
    std::unique_ptr<ListWindowView> listWindowView_;
    CoordinatorProtocol::Ref aboutCoordinator_;
    CoordinatorProtocol::Ref settingsCoordinator_;
    std::unique_ptr<MenuBarManager> menuManager_;

    std::vector<platform::Token> shortcutMonitors_;
    std::vector<platform::Token> mouseMonitors_;
    std::vector<platform::Subscription> frontmostObservers_;
    // Monitor handlers do nothing once the coordinator is gone.
    platform::LifetimeGuard lifetime_;
};

}  // namespace tarnwick
