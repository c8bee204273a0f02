#include "tracking/AppsMonitor.h"

#include <algorithm>

#include "platform/Platform.h"
#include "settings/SettingsKeys.h"
#include "support/DefaultsManager.h"
#include "tracking/AppEligibility.h"
#include "tracking/AppOrder.h"

namespace tarnwick {

namespace {

using platform::RunningApplicationRef;
using platform::WorkspaceNotification;

quillbox::DefaultsManager& defaults() {
    return quillbox::DefaultsManager::shared();
}

void removeEqual(std::vector<RunningApplicationRef>& applications,
                 const platform::RunningApplication& application) {
    std::erase_if(applications,
                  [&application](const auto& other) { return other->isEqual(application); });
}

void appendInOrder(RunningApps& apps, AppGrouping grouping, RunningApplicationRef application) {
    auto& group = apps[grouping];
    group.push_back(std::move(application));
    sortInAppOrder(group);
}

// The first application of this identifier, looking through the groups in
// the map's order.
RunningApplicationRef findByBundleIdentifier(const RunningApps& apps,
                                             const std::string& bundleIdentifier) {
    for (const auto& [grouping, group] : apps) {
        auto it = std::find_if(group.begin(), group.end(), [&](const auto& application) {
            return application->bundleIdentifier() == bundleIdentifier;
        });
        if (it != group.end())
            return *it;
    }
    return nullptr;
}

void storeGrouping(const std::string& bundleIdentifier, AppGrouping target) {
    auto favorites = defaults().getValue(favoriteApps);
    auto hidden = defaults().getValue(hiddenApps);
    if (target == AppGrouping::favorite)
        favorites.insert(bundleIdentifier);
    else
        favorites.erase(bundleIdentifier);
    if (target == AppGrouping::hidden)
        hidden.insert(bundleIdentifier);
    else
        hidden.erase(bundleIdentifier);
    defaults().setValue(std::optional(favorites), favoriteApps);
    defaults().setValue(std::optional(hidden), hiddenApps);
}

}  // namespace

AppsMonitor::AppsMonitor() {
    refreshRunningApps();
    observeWorkspace(WorkspaceNotification::didLaunchApplication, &AppsMonitor::appDidLaunch);
    observeWorkspace(WorkspaceNotification::didTerminateApplication, &AppsMonitor::appDidTerminate);
}

AppsMonitor::~AppsMonitor() {
    for (const auto& [name, token] : observableCancellables_)
        platform::workspace().removeObserver(token, name);
}

void AppsMonitor::observeWorkspace(WorkspaceNotification name,
                                   void (AppsMonitor::*handler)(const RunningApplicationRef&)) {
    observableCancellables_[name] = platform::workspace().addObserverForName(
        name, lifetime_.guard([this, handler](const platform::WorkspaceNotificationInfo& info) {
            if (info.application)
                (this->*handler)(info.application);
        }));
}

AppGrouping AppsMonitor::grouping(const platform::RunningApplication& application) const {
    return grouping(application, defaults().getValue(favoriteApps),
                    defaults().getValue(hiddenApps));
}

AppGrouping AppsMonitor::grouping(const platform::RunningApplication& application,
                                  const BundleIdentifiers& favorites,
                                  const BundleIdentifiers& hidden) const {
    if (!shouldTrack(application))
        return AppGrouping::noTrack;
    const auto bundleIdentifier = application.bundleIdentifier();
    if (!bundleIdentifier)
        return AppGrouping::noTrack;
    // Favourite is asked first, so it wins should the two sets overlap.
    if (favorites.contains(*bundleIdentifier))
        return AppGrouping::favorite;
    if (hidden.contains(*bundleIdentifier))
        return AppGrouping::hidden;
    return AppGrouping::track;
}

void AppsMonitor::refreshRunningApps() {
    std::vector<RunningApplicationRef> eligible;
    for (auto& application : platform::workspace().runningApplications()) {
        if (application && shouldTrack(*application))
            eligible.push_back(std::move(application));
    }
    assignGroups(eligible);
}

void AppsMonitor::assignGroups(const std::vector<RunningApplicationRef>& applications) {
    const auto favorites = defaults().getValue(favoriteApps);
    const auto hidden = defaults().getValue(hiddenApps);
    RunningApps apps;
    for (const auto& application : applications)
        apps[grouping(*application, favorites, hidden)].push_back(application);
    for (auto& [grouping, group] : apps)
        sortInAppOrder(group);
    assignRunningApps(std::move(apps));
}

void AppsMonitor::appDidLaunch(const RunningApplicationRef& application) {
    // Unlike at start, applications that aren't eligible are kept too, in
    // noTrack, which no menu offers.
    auto apps = runningApps_;
    appendInOrder(apps, grouping(*application), application);
    assignRunningApps(std::move(apps));
}

void AppsMonitor::appDidTerminate(const RunningApplicationRef& application) {
    appElementCache_.erase(application);
    auto apps = runningApps_;
    for (auto& [grouping, group] : apps)
        removeEqual(group, *application);
    assignRunningApps(std::move(apps));
}

void AppsMonitor::setGrouping(const std::string& bundleIdentifier, AppGrouping target) {
    auto apps = runningApps_;
    const auto found = findByBundleIdentifier(apps, bundleIdentifier);
    if (found) {
        for (auto grouping : {AppGrouping::track, AppGrouping::hidden, AppGrouping::favorite}) {
            if (auto it = apps.find(grouping); it != apps.end())
                removeEqual(it->second, *found);
        }
    }
    if (target != AppGrouping::noTrack) {
        storeGrouping(bundleIdentifier, target);
        if (found)
            appendInOrder(apps, target, found);
    }
    assignRunningApps(std::move(apps));
}

std::shared_ptr<corvane::Application> AppsMonitor::appElement(
    const RunningApplicationRef& application) {
    if (auto it = appElementCache_.find(application); it != appElementCache_.end())
        return it->second;
    auto element = corvane::Application::fromRunningApplication(application);
    if (element)
        appElementCache_[application] = element;
    else
        appElementCache_.erase(application);
    return element;
}

void AppsMonitor::assignRunningApps(RunningApps apps) {
    const bool changed = !sameRunningApps(runningApps_, apps);
    runningApps_ = std::move(apps);
    if (changed)
        runningAppsChanged_.emit();
}

}  // namespace tarnwick
