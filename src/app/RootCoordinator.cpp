#include "app/RootCoordinator.h"

#include <algorithm>

#include "geometry/Distance.h"
#include "platform/Platform.h"
#include "settings/SettingsKeys.h"
#include "shortcuts/SRShortcut.h"
#include "support/DefaultsManager.h"
#include "support/Fatal.h"

namespace tarnwick {

namespace {

using platform::eventMaskFor;
using platform::EventType;

constexpr platform::EventMask shortcutMask =
    eventMaskFor(EventType::keyDown) | eventMaskFor(EventType::flagsChanged);        // 5120
constexpr platform::EventMask keyUpMask = eventMaskFor(EventType::keyUp);            // 2048
constexpr platform::EventMask mouseMovedMask = eventMaskFor(EventType::mouseMoved);  // 32

// Escape spares the panel only with all five of Shift, Control, Option,
// Command and Function held.
constexpr platform::ModifierFlags escapeSparingFlags = 0x9e0000;

// The panel fades over this many points from its frame and closes there.
constexpr double fadeDistance = 250;

constexpr platform::WindowStyleMask listPanelStyle(platform::WindowStyleMask defaultMask) {
    using namespace platform::windowStyle;
    return (defaultMask & ~closable & ~fullScreen) | nonactivatingPanel | utilityWindow |
           resizable | miniaturizable;
}

// A local monitor sees the event and hands it back unchanged: the program
// never swallows a key or a move.
platform::EventMonitors::LocalHandler passingThrough(
    std::function<void(const platform::Event&)> handler) {
    return [handler = std::move(handler)](const platform::Event& event) {
        handler(event);
        return std::optional<platform::Event>(event);
    };
}

}  // namespace

std::shared_ptr<RootCoordinator> RootCoordinator::make(ChildFactories factories,
                                                       ContentViewFactory contentView) {
    std::shared_ptr<RootCoordinator> root(
        new RootCoordinator(std::move(factories), std::move(contentView)));
    root->build();
    return root;
}

RootCoordinator::RootCoordinator(ChildFactories factories, ContentViewFactory contentView)
    : factories_(std::move(factories)), contentViewFactory_(std::move(contentView)) {}

// The order matters: the model selects the file manager at its
// construction, and the panel's content is built on the model.
void RootCoordinator::build() {
    activationController_ = std::make_shared<ActivationController>();
    appsMonitor_ = std::make_shared<AppsMonitor>();
    auto panel = platform::toolkit().makePanel();
    auto controller = std::make_shared<platform::WindowController>(panel);
    interactionController_ = std::make_shared<InteractionController>(controller);
    updateController_ = std::make_shared<UpdateController>();
    permissionViewModel_ = PermissionRequestViewModel::make();
    listWindowViewModel_ =
        std::make_shared<ListWindowViewModel>(interactionController_, appsMonitor_);
    // The panel's list needn't follow windows while nobody sees it.
    listWindowViewModel_->refreshOnNotificationsOnlyWhile([this] {
        const auto& window = mainWindowController_ ? mainWindowController_->window() : nullptr;
        return window && window->isVisible();
    });
    windowActions_ = std::make_unique<WindowActions>(*listWindowViewModel_);
    permissionView_ = std::make_unique<PermissionRequestView>(permissionViewModel_, *this);
    listWindowView_ =
        std::make_unique<ListWindowView>(*listWindowViewModel_, *this, permissionView_.get());
    if (contentViewFactory_)
        panel->setContentView(contentViewFactory_(*listWindowView_));
    configureListPanel(*panel);
    mainWindowController_ = std::move(controller);
    menuManager_ = std::make_unique<MenuBarManager>(
        platform::statusBar().statusItemWithLength(platform::variableStatusItemLength), *this);
    installShortcutMonitors();
}

void RootCoordinator::configureListPanel(platform::Window& panel) {
    panel.setTitle("Tarnwick");
    panel.setStyleMask(listPanelStyle(panel.styleMask()));
    panel.setBecomesKeyOnlyIfNeeded(true);
    panel.setLevel(platform::windowLevel::floating);
    panel.setHidesOnDeactivate(false);
}

platform::WindowController& RootCoordinator::mainWindowController() const {
    if (!mainWindowController_)
        quillbox::fatalError("The list window's controller is not set");
    return *mainWindowController_;
}

MenuBarManager& RootCoordinator::menuManager() const {
    if (!menuManager_)
        quillbox::fatalError("The status item's manager is not set");
    return *menuManager_;
}

// With the permission and the instructions seen, the panel comes to the
// pointer at once; otherwise the onboarding window leads the way. The
// status item follows the first window in every case.
void RootCoordinator::start() {
    auto onboarding =
        OnboardingCoordinator::make(shared_from_this(), permissionViewModel_, *this,
                                    *activationController_, factories_.onboardingPages);
    if (permissionViewModel_->hasAccessibilityPermissions() &&
        !quillbox::DefaultsManager::shared().getValue(needsShowingInstructions)) {
        presentListWindow();
    } else {
        childCoordinators().push_back(onboarding);
        onboarding->start();
    }
    menuManager().setUp();
}

void RootCoordinator::installShortcutMonitors() {
    if (!shortcutMonitors_.empty())
        return;
    auto& monitors = platform::eventMonitors();
    auto onShortcut =
        lifetime_.guard([this](const platform::Event& event) { handleShortcutEvent(event); });
    auto onKeyUp =
        lifetime_.guard([this](const platform::Event& event) { handleEscapeKeyUp(event); });
    shortcutMonitors_.push_back(monitors.addGlobalMonitor(shortcutMask, onShortcut));
    shortcutMonitors_.push_back(monitors.addLocalMonitor(shortcutMask, passingThrough(onShortcut)));
    shortcutMonitors_.push_back(monitors.addGlobalMonitor(keyUpMask, onKeyUp));
    shortcutMonitors_.push_back(monitors.addLocalMonitor(keyUpMask, passingThrough(onKeyUp)));
    frontmostObservers_.push_back(platform::workspace().observeFrontmostApplication(
        true, lifetime_.guard([this](const platform::RunningApplicationRef& application) {
            handleFrontmostApplication(application);
        })));
}

void RootCoordinator::installMouseMonitors() {
    if (!mouseMonitors_.empty())
        return;
    auto& monitors = platform::eventMonitors();
    auto onLocal =
        lifetime_.guard([this](const platform::Event& event) { handleMouseMoved(event, "Local"); });
    mouseMonitors_.push_back(monitors.addLocalMonitor(mouseMovedMask, passingThrough(onLocal)));
    mouseMonitors_.push_back(monitors.addGlobalMonitor(
        mouseMovedMask, lifetime_.guard([this](const platform::Event& event) {
            handleMouseMoved(event, "Global");
        })));
}

void RootCoordinator::removeShortcutMonitors() {
    for (const auto& token : shortcutMonitors_)
        platform::eventMonitors().removeMonitor(token);
    shortcutMonitors_.clear();
}

void RootCoordinator::removeMouseMonitors() {
    for (const auto& token : mouseMonitors_)
        platform::eventMonitors().removeMonitor(token);
    mouseMonitors_.clear();
}

void RootCoordinator::handleShortcutEvent(const platform::Event& event) {
    auto shortcut = lirixkro::SRShortcut::shortcutWithEvent(event);
    if (!shortcut)
        return;
    // Read afresh for every event, so that a change in Settings works at once.
    auto stored = quillbox::DefaultsManager::shared().getValue(activationShortcut);
    if (!stored)
        return;
    if (lirixkro::SRShortcut::SelfCodable::fromShortcut(*shortcut) != *stored)
        return;
    presentListWindow();
}

void RootCoordinator::presentListWindow() {
    // The content is brought up to date first: its size places the panel.
    listWindowView_->willPresent();
    placeListWindowAtMouse();
    mainWindowController().window()->setAlphaValue(1.0);
    mainWindowController().showWindow();
    installMouseMonitors();
}

void RootCoordinator::placeListWindowAtMouse() {
    const auto& window = mainWindowController().window();
    if (!window)
        quillbox::fatalError("The list window is missing");
    const auto mouse = platform::eventMonitors().mouseLocation();
    const auto frame = window->frame();
    // Centred on the pointer and deliberately not kept on screen.
    window->setFrameOrigin({mouse.x - frame.size.width * 0.5, mouse.y - frame.size.height * 0.5});
}

void RootCoordinator::handleMouseMoved(const platform::Event&, const char*) {
    const auto& window = mainWindowController().window();
    if (!window)
        return;
    const auto mouse = platform::eventMonitors().mouseLocation();
    const auto frame = window->frame();
    if (frame.contains(mouse))
        return;
    const platform::CGPoint nearest{std::clamp(mouse.x, frame.minX(), frame.maxX()),
                                    std::clamp(mouse.y, frame.minY(), frame.maxY())};
    const double d = plumbline::distance(mouse, nearest);
    const double alpha = std::clamp((fadeDistance - d) / fadeDistance, 0.0, 1.0);
    // Only a change is written, and only to a shown panel: the next
    // presentation sets its own alpha, so a closed panel's moves cost no
    // drawing and no message to the window system.
    if (window->isVisible() && alpha != window->alphaValue())
        window->setAlphaValue(alpha);
    if (alpha <= 0.0) {
        window->close();
        removeMouseMonitors();
    }
}

void RootCoordinator::handleEscapeKeyUp(const platform::Event& event) {
    if (event.keyCode != platform::keycode::escape)
        return;
    if ((event.modifierFlags & escapeSparingFlags) == escapeSparingFlags)
        return;
    mainWindowController().close();
}

void RootCoordinator::handleFrontmostApplication(
    const platform::RunningApplicationRef& application) {
    const auto current = platform::workspace().currentApplication();
    if (!application && !current)
        return;
    if (application && current && application->isEqual(*current))
        return;
    mainWindowController().close();
}

void RootCoordinator::showSettings() {
    showChild(settingsCoordinator_, factories_.settings);
}

void RootCoordinator::showAbout() {
    showChild(aboutCoordinator_, factories_.about);
}

void RootCoordinator::showChild(CoordinatorProtocol::Ref& slot, const ChildFactory& factory) {
    if (slot) {
        if (const auto& window = slot->rootController().window()) {
            activationController_->bringToFront(window);
        }
        return;
    }
    if (!factory)
        return;
    auto child = factory(*this);
    childCoordinators().push_back(child);
    activationController_->bringToFront(child->rootController().window());
    slot = std::move(child);
}

void RootCoordinator::checkForUpdates() {
    updateController_->checkForUpdates();
}

void RootCoordinator::quit() {
    platform::application().terminate();
}

void RootCoordinator::willFinish() {
    mainWindowController().close();
    removeShortcutMonitors();
}

void RootCoordinator::childDidFinish(const CoordinatorProtocol& child) {
    removeChild(childCoordinators(), child);
    if (settingsCoordinator_.get() == &child) {
        settingsCoordinator_.reset();
    } else if (aboutCoordinator_.get() == &child) {
        aboutCoordinator_.reset();
    }
}

}  // namespace tarnwick
