#include "listwindow/ListWindowViewModel.h"

#include <algorithm>

#include "platform/Platform.h"
#include "support/Fatal.h"
#include "support/StandardOutput.h"

namespace tarnwick {

namespace {

using corvane::AXError;
using corvane::UIElement;

// Only ordinary windows with a title are listed: sheets, drawers and the
// like report other roles, and untitled windows are helpers.
bool isListable(const corvane::Application::Window& window) {
    try {
        const auto role = window.role();
        if (!role || *role != UIElement::Role::window)
            return false;
    } catch (const AXError&) {
        return false;
    }
    return !window.title().value_or("").empty();
}

platform::RunningApplicationRef runningFileManager() {
    const auto running = platform::workspace().runningApplications();
    auto it = std::find_if(running.begin(), running.end(), [](const auto& application) {
        return application &&
               application->bundleIdentifier() == ListWindowViewModel::finderBundleIdentifier;
    });
    return it == running.end() ? nullptr : *it;
}

}  // namespace

ListWindowViewModel::ListWindowViewModel(
    std::shared_ptr<InteractionController> interactionController,
    std::shared_ptr<AppsMonitor> appsMonitor)
    : state_(
          WindowsState{{}, appsMonitor->runningApps(), platform::workspace().currentApplication()}),
      interactionController_(std::move(interactionController)),
      appsMonitor_(std::move(appsMonitor)) {
    // The file manager's element is made here directly, past the monitor's
    // cache.
    auto finder = runningFileManager();
    auto element = corvane::Application::fromRunningApplication(finder);
    if (!element)
        quillbox::fatalError("Can't find Finder (ironic naming though)");
    app_ = {std::move(finder), std::move(element)};
    refreshWindows();
    startObserving();
    launches_ = platform::workspace().addObserverForName(
        platform::WorkspaceNotification::didLaunchApplication,
        lifetime_.guard([this](const platform::WorkspaceNotificationInfo& info) {
            followRelaunch(info.application);
        }));
}

ListWindowViewModel::~ListWindowViewModel() {
    platform::workspace().removeObserver(launches_,
                                         platform::WorkspaceNotification::didLaunchApplication);
}

void ListWindowViewModel::setState(State state) {
    state_ = std::move(state);
    stateChanged_.emit();
}

std::vector<ListWindowViewModel::WindowRef> ListWindowViewModel::listedWindows(
    const std::vector<WindowRef>& windows) const {
    std::vector<WindowRef> listed;
    std::copy_if(windows.begin(), windows.end(), std::back_inserter(listed),
                 [](const WindowRef& window) { return window && isListable(*window); });
    return listed;
}

void ListWindowViewModel::refreshWindows() {
    stale_ = false;
    refreshGate_.cancel();
    refreshGate_.ran();
    std::vector<WindowRef> windows;
    try {
        windows = interactionController_->windows(*app_.axApp);
    } catch (const InteractionController::Error& error) {
        setState(ErrorState{error});
        return;
    }
    auto listed = listedWindows(windows);
    setState(WindowsState{std::move(listed), appsMonitor_->runningApps(), app_.runningApp});
}

void ListWindowViewModel::startObserving() {
    try {
        observers_.push_back(interactionController_->observe(
            *app_.axApp,
            lifetime_.guard([this](corvane::Observer&, const std::shared_ptr<UIElement>&,
                                   const UIElement::AXNotification&) { windowsChanged(); })));
    } catch (const InteractionController::Error& error) {
        quillbox::printLine("Error observing: " + error.description());
    }
}

void ListWindowViewModel::refreshOnNotificationsOnlyWhile(std::function<bool()> shown) {
    shown_ = std::move(shown);
}

void ListWindowViewModel::catchUp() {
    if (stale_)
        refreshWindows();
}

// The first change after a quiet spell is shown at once; the ones that
// follow it closely are gathered into one refresh.
void ListWindowViewModel::windowsChanged() {
    if (!shown_) {
        refreshWindows();
        return;
    }
    stale_ = true;
    if (shown_() && refreshGate_.admitsNow())
        refreshWindows();
}

void ListWindowViewModel::selectApp(const platform::RunningApplicationRef& application) {
    if (auto element = appsMonitor_->appElement(application))
        select(application, std::move(element));
}

// A file manager that is started again when it ends, or an application
// the user starts again, is a new process: without this the list would
// keep the ended one's error. The element is made directly, as for the
// file manager at start, since the monitor may not know the process yet.
void ListWindowViewModel::followRelaunch(const platform::RunningApplicationRef& launched) {
    const auto& selected = app_.runningApp;
    if (!launched || !selected || !selected->isTerminated() || !launched->bundleIdentifier() ||
        launched->bundleIdentifier() != selected->bundleIdentifier())
        return;
    if (auto element = corvane::Application::fromRunningApplication(launched))
        select(launched, std::move(element));
}

void ListWindowViewModel::select(platform::RunningApplicationRef application,
                                 std::shared_ptr<corvane::Application> element) {
    app_ = {std::move(application), std::move(element)};
    for (const auto& observer : observers_)
        observer->stop();
    observers_.clear();
    refreshWindows();
    startObserving();
}

}  // namespace tarnwick
