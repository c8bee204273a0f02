#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "accessibility/Application.h"
#include "platform/LifetimeGuard.h"
#include "platform/Subscription.h"
#include "platform/Workspace.h"
#include "support/Signal.h"
#include "tracking/AppGrouping.h"

namespace tarnwick {

// The one owner of the applications the user can pick from and of the group
// of each. It reads the running applications once, at construction, and
// from then on follows launches and terminations. Favourites and hidden
// applications are kept in the preferences by bundle identifier.
//
// It also caches each application's accessibility element, since one is
// needed at every selection of the application in the menu.
class AppsMonitor {
  public:
    using BundleIdentifiers = std::set<std::string>;
    // Keyed by the object, not by its equality: a new object for the same
    // process is a new entry. The key keeps the object alive, so its address
    // can't be taken by another one while the entry lasts.
    using AppElementCache =
        std::map<platform::RunningApplicationRef, std::shared_ptr<corvane::Application>>;

    AppsMonitor();
    ~AppsMonitor();
    AppsMonitor(const AppsMonitor&) = delete;
    AppsMonitor& operator=(const AppsMonitor&) = delete;

    const RunningApps& runningApps() const { return runningApps_; }
    // Sent only when runningApps really changed.
    quillbox::Signal<>& runningAppsChanged() { return runningAppsChanged_; }

    // The group of an application by the stored favourites and hidden sets,
    // or by the sets given (read once for many applications).
    AppGrouping grouping(const platform::RunningApplication& application) const;
    AppGrouping grouping(const platform::RunningApplication& application,
                         const BundleIdentifiers& favorites, const BundleIdentifiers& hidden) const;

    // Moves the application of this bundle identifier to a group and stores
    // the choice. The stored sets change even when no such application runs;
    // noTrack stores nothing and only drops the application from the lists
    // until the next start.
    void setGrouping(const std::string& bundleIdentifier, AppGrouping target);

    // The application's accessibility element, cached; nothing for an
    // application that has ended or has no process.
    std::shared_ptr<corvane::Application> appElement(
        const platform::RunningApplicationRef& application);
    const AppElementCache& appElementCache() const { return appElementCache_; }

  private:
    void refreshRunningApps();
    void assignGroups(const std::vector<platform::RunningApplicationRef>& applications);
    void appDidLaunch(const platform::RunningApplicationRef& application);
    void appDidTerminate(const platform::RunningApplicationRef& application);
    // Stores the map and tells the observers, unless nothing changed.
    void assignRunningApps(RunningApps apps);
    void observeWorkspace(platform::WorkspaceNotification name,
                          void (AppsMonitor::*handler)(const platform::RunningApplicationRef&));

    std::map<platform::WorkspaceNotification, platform::Token> observableCancellables_;
    RunningApps runningApps_;
    AppElementCache appElementCache_;
    quillbox::Signal<> runningAppsChanged_;
    // A notification already under way when the monitor goes is ignored.
    platform::LifetimeGuard lifetime_;
};

}  // namespace tarnwick
