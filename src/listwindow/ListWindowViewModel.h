#pragma once

#include <functional>
#include <memory>
#include <variant>
#include <vector>

#include "accessibility/Application.h"
#include "accessibility/Observer.h"
#include "listwindow/InteractionController.h"
#include "platform/IntervalGate.h"
#include "platform/LifetimeGuard.h"
#include "platform/Platform.h"
#include "platform/Workspace.h"
#include "support/Signal.h"
#include "tracking/AppGrouping.h"
#include "tracking/AppsMonitor.h"

namespace tarnwick {

// What the list window shows, as data: the selected application's titled
// windows with a snapshot of the grouped applications for the menu, or the
// error that prevented listing them. The file manager is selected at start.
//
// The list is refreshed only at construction, at a selection, at a
// notification of the selected application, when a window action or a menu
// command asks, and when the selected application, having ended, is started
// again: the list follows the new process of the same application.
//
// Listing costs in proportion to the application's windows, and a window
// that opens brings several notifications: a list that is shown only at
// times can ask to be refreshed by notifications only while it is shown,
// at most once per `notificationRefreshInterval`. What came while it was
// hidden is read when it is shown next (`catchUp`).
class ListWindowViewModel {
  public:
    using WindowRef = InteractionController::WindowRef;

    struct WindowsState {
        // In the order the application reported them; each had the window
        // role and a non-empty title when it was read.
        std::vector<WindowRef> windows;
        // The monitor's groups as they stood at the refresh.
        RunningApps apps;
        platform::RunningApplicationRef selectedApp;
    };
    struct ErrorState {
        InteractionController::Error error;
    };
    using State = std::variant<WindowsState, ErrorState>;

    // The selected application in both worlds.
    struct SelectedApp {
        platform::RunningApplicationRef runningApp;
        std::shared_ptr<corvane::Application> axApp;
    };

    static constexpr const char* finderBundleIdentifier = "com.apple.finder";

    // Selects the file manager, lists its windows and follows them. A
    // desktop without a file manager is a fatal stop.
    ListWindowViewModel(std::shared_ptr<InteractionController> interactionController,
                        std::shared_ptr<AppsMonitor> appsMonitor);
    ~ListWindowViewModel();
    ListWindowViewModel(const ListWindowViewModel&) = delete;
    ListWindowViewModel& operator=(const ListWindowViewModel&) = delete;

    const State& state() const { return state_; }
    // Sent at every assignment of the state, even of equal content.
    quillbox::Signal<>& stateChanged() { return stateChanged_; }

    // Lists the selected application's windows anew and replaces the state.
    void refreshWindows();
    // Subscribes to the selected application's window notifications; a
    // failure is printed and leaves the list without updates.
    void startObserving();
    // Nothing at all happens for an application without an element (one
    // that has ended).
    void selectApp(const platform::RunningApplicationRef& application);

    static constexpr double notificationRefreshInterval = 1.0 / 60;
    // From now on notifications refresh only while `shown` says so.
    void refreshOnNotificationsOnlyWhile(std::function<bool()> shown);
    // Refreshes now if a notification has come since the last refresh.
    void catchUp();

    const SelectedApp& app() const { return app_; }
    const std::vector<std::shared_ptr<corvane::Observer>>& observers() const { return observers_; }
    AppsMonitor& appsMonitor() const { return *appsMonitor_; }
    InteractionController& interactionController() const { return *interactionController_; }

  private:
    void setState(State state);
    void select(platform::RunningApplicationRef application,
                std::shared_ptr<corvane::Application> element);
    void followRelaunch(const platform::RunningApplicationRef& launched);
    std::vector<WindowRef> listedWindows(const std::vector<WindowRef>& windows) const;
    void windowsChanged();

    State state_;
    quillbox::Signal<> stateChanged_;
    std::vector<std::shared_ptr<corvane::Observer>> observers_;
    SelectedApp app_;
    std::shared_ptr<InteractionController> interactionController_;
    std::shared_ptr<AppsMonitor> appsMonitor_;
    platform::Token launches_;
    std::function<bool()> shown_;
    bool stale_ = false;
    platform::IntervalGate refreshGate_{platform::mainLoop(), notificationRefreshInterval, [this] {
                                            if (shown_())
                                                refreshWindows();
                                        }};
    // Observer callbacks do nothing once the model is gone.
    platform::LifetimeGuard lifetime_;
};

}  // namespace tarnwick
