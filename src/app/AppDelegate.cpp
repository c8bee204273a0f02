#include "app/AppDelegate.h"

#include "platform/Platform.h"
#include "support/Fatal.h"
#include "support/StandardOutput.h"

namespace tarnwick {

AppDelegate::AppDelegate(std::shared_ptr<RootCoordinator> rootCoordinator)
    : rootCoordinator_(std::move(rootCoordinator)) {}

void AppDelegate::applicationWillFinishLaunching() {
    rootCoordinator_->activationController().updateActivationPolicy();
    quillbox::printLine("[Activation] launched with policy " +
                        debugDescription(platform::application().activationPolicy()));
}

void AppDelegate::applicationDidFinishLaunching() {
    rootCoordinator_->start();
}

void AppDelegate::openApplicationSupportDirectory() {
    auto folder = platform::fileManager().urlForDirectory(
        platform::SearchPathDirectory::applicationSupport, platform::SearchPathDomain::user, true);
    // The general folder, not one of the program's own.
    if (folder)
        platform::fileViewer().activateFileViewerSelectingURLs({*folder});
}

void AppDelegate::showApplicationPreferences() {
    auto library = platform::fileManager().urlForDirectory(platform::SearchPathDirectory::library,
                                                           platform::SearchPathDomain::user, true);
    if (!library)
        return;
    auto identifier = platform::bundles().mainBundle()->bundleIdentifier();
    if (!identifier)
        quillbox::fatalError("The program's bundle has no identifier");
    const auto file =
        platform::fileManager().preferencesDirectory(*library) / (*identifier + ".plist");
    const bool reachable = platform::fileManager().checkResourceIsReachable(file);
    platform::fileViewer().activateFileViewerSelectingURLs({reachable ? file : *library});
}

}  // namespace tarnwick
