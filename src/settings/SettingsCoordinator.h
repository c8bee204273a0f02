#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "app/ActivationController.h"
#include "platform/Window.h"
#include "settings/SettingsCoordinatorDelegate.h"
#include "settings/SettingsWindowView.h"
#include "settings/SettingsWindowViewModel.h"
#include "tracking/AppsMonitor.h"

namespace tarnwick {

class RootCoordinator;

// The Settings window's coordinator: it owns the window from the Settings
// command until the window closes, so that the next command builds the
// window, its model and its view anew from the stored settings.
class SettingsCoordinator final : public SettingsWindowView::Coordinator {
  public:
    using Delegate = SettingsCoordinatorDelegate;
    // How the toolkit draws the window's content; without one, the window
    // has none.
    using ContentViewFactory =
        std::function<std::shared_ptr<platform::ContentView>(SettingsWindowView&)>;

    // Titled, closable, with the content under the title bar.
    static constexpr platform::WindowStyleMask windowStyle = 4099;

    // Builds the view and its window, floating above ordinary windows, and
    // does not show it. Closing the window ends the coordinator.
    static std::shared_ptr<SettingsCoordinator> make(
        Ref parent, std::weak_ptr<Delegate> delegate, ActivationController& activationController,
        AppsMonitor& appsMonitor, std::shared_ptr<SettingsWindowView::ViewModel> viewModel,
        const ContentViewFactory& contentView = {});

    // How the root coordinator makes it, from its own controllers, with a
    // new model read from the stored settings.
    static std::function<CoordinatorProtocol::Ref(RootCoordinator&)> childFactory(
        ContentViewFactory contentView = {});

    void willFinish() override;

    AppsMonitor& appsMonitor() const override { return appsMonitor_; }
    std::shared_ptr<Delegate> delegate() const override { return delegate_.lock(); }

    SettingsWindowView::ViewModel& viewModel() const { return *viewModel_; }
    SettingsWindowView& view() const { return *view_; }

  private:
    SettingsCoordinator(Ref parent, std::weak_ptr<Delegate> delegate,
                        ActivationController& activationController, AppsMonitor& appsMonitor,
                        std::shared_ptr<SettingsWindowView::ViewModel> viewModel);

    std::shared_ptr<SettingsWindowView::ViewModel> viewModel_;
    ActivationController& activationController_;
    AppsMonitor& appsMonitor_;
    std::weak_ptr<Delegate> delegate_;
    std::unique_ptr<SettingsWindowView> view_;
};

}  // namespace tarnwick
