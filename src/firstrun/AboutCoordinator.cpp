#include "firstrun/AboutCoordinator.h"

#include "app/StandardWindowTearDown.h"
#include "platform/Platform.h"
#include "support/Fatal.h"

namespace tarnwick {

namespace {

std::string requiredBundleValue(const platform::PropertyList::Dictionary& information,
                                const std::string& key) {
    const auto it = information.find(key);
    const std::string* value = it == information.end() ? nullptr : it->second.get<std::string>();
    if (!value)
        quillbox::fatalError("The main bundle has no " + key);
    return *value;
}

AboutWindowView readAboutWindowView() {
    const auto* information = platform::bundles().mainBundle()->infoDictionary();
    if (!information)
        quillbox::fatalError("The main bundle has no information dictionary");
    AboutWindowView view;
    view.appIcon = platform::application().applicationIconImage();
    view.appName = requiredBundleValue(*information, "CFBundleName");
    view.version = requiredBundleValue(*information, "CFBundleShortVersionString");
    view.build = requiredBundleValue(*information, "CFBundleVersion");
    view.developerName = AboutCoordinator::developerName;
    view.developerNameLink = AboutCoordinator::developerNameLink();
    view.copyright = requiredBundleValue(*information, "NSHumanReadableCopyright");
    return view;
}

}  // namespace

std::shared_ptr<AboutCoordinator> AboutCoordinator::make(Ref parent,
                                                         ActivationController& activationController,
                                                         ContentViewFactory contentView) {
    std::shared_ptr<AboutCoordinator> coordinator(
        new AboutCoordinator(std::move(parent), activationController, readAboutWindowView()));
    auto window = platform::toolkit().makeWindow(windowStyle);
    if (contentView)
        window->setContentView(contentView(coordinator->view_));
    window->setTitlebarAppearsTransparent(true);
    window->setTitle("About " + coordinator->view_.appName);
    coordinator->setRootController(std::make_shared<platform::WindowController>(window));
    coordinator->setFinishesOnWindowClose(true);
    return coordinator;
}

AboutCoordinator::AboutCoordinator(Ref parent, ActivationController& activationController,
                                   AboutWindowView view)
    : CoordinatorProtocol(std::move(parent)),
      activationController_(activationController),
      view_(std::move(view)) {}

void AboutCoordinator::willFinish() {
    standardWindowTearDown(*this, activationController_);
}

}  // namespace tarnwick
