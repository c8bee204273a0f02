#include "settings/SettingsCoordinator.h"

#include "app/RootCoordinator.h"
#include "app/StandardWindowTearDown.h"
#include "platform/Platform.h"

namespace tarnwick {

std::shared_ptr<SettingsCoordinator> SettingsCoordinator::make(
    Ref parent, std::weak_ptr<Delegate> delegate, ActivationController& activationController,
    AppsMonitor& appsMonitor, std::shared_ptr<SettingsWindowView::ViewModel> viewModel,
    const ContentViewFactory& contentView) {
    std::shared_ptr<SettingsCoordinator> coordinator(
        new SettingsCoordinator(std::move(parent), std::move(delegate), activationController,
                                appsMonitor, std::move(viewModel)));
    auto window = platform::toolkit().makeWindow(windowStyle);
    if (contentView)
        window->setContentView(contentView(*coordinator->view_));
    window->setTitlebarAppearsTransparent(true);
    window->setTitle(SettingsWindowView::title);
    window->setLevel(platform::windowLevel::floating);
    window->setHidesOnDeactivate(false);
    coordinator->setRootController(std::make_shared<platform::WindowController>(window));
    coordinator->setFinishesOnWindowClose(true);
    return coordinator;
}

std::function<CoordinatorProtocol::Ref(RootCoordinator&)> SettingsCoordinator::childFactory(
    ContentViewFactory contentView) {
    return
        [contentView = std::move(contentView)](RootCoordinator& root) -> CoordinatorProtocol::Ref {
            auto self = std::static_pointer_cast<RootCoordinator>(root.shared_from_this());
            auto viewModel = std::make_shared<SettingsWindowView::ViewModel>(
                root.interactionController(), root.updateController());
            return make(self, std::weak_ptr<Delegate>(self), root.activationController(),
                        root.appsMonitor(), std::move(viewModel), contentView);
        };
}

SettingsCoordinator::SettingsCoordinator(Ref parent, std::weak_ptr<Delegate> delegate,
                                         ActivationController& activationController,
                                         AppsMonitor& appsMonitor,
                                         std::shared_ptr<SettingsWindowView::ViewModel> viewModel)
    : SettingsWindowView::Coordinator(std::move(parent)),
      viewModel_(std::move(viewModel)),
      activationController_(activationController),
      appsMonitor_(appsMonitor),
      delegate_(std::move(delegate)),
      view_(std::make_unique<SettingsWindowView>(viewModel_, *this)) {}

void SettingsCoordinator::willFinish() {
    standardWindowTearDown(*this, activationController_);
}

}  // namespace tarnwick
