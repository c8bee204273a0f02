#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/Platform.h"
#include "platform/sim/SimAccessibility.h"
#include "platform/sim/SimApplication.h"
#include "platform/sim/SimBundles.h"
#include "platform/sim/SimEventMonitors.h"
#include "platform/sim/SimEventTap.h"
#include "platform/sim/SimFileManager.h"
#include "platform/sim/SimFileViewer.h"
#include "platform/sim/SimHotKeys.h"
#include "platform/sim/SimKeyboardLayouts.h"
#include "platform/sim/SimLoginItemService.h"
#include "platform/sim/SimMainLoop.h"
#include "platform/sim/SimPowerManagement.h"
#include "platform/sim/SimPreferencesStore.h"
#include "platform/sim/SimProcessLauncher.h"
#include "platform/sim/SimStatusBar.h"
#include "platform/sim/SimToolkit.h"
#include "platform/sim/SimUpdater.h"
#include "platform/sim/SimWorkspace.h"

namespace platform::sim {

// The whole simulated desktop: one object a test builds, scripts and
// installs as the platform. It runs on its own virtual-clock loop, or on a
// loop it is given (the real event loop of --simulate).
//
// Our own program is one of the running applications from the start (see
// ownProcessIdentifier); no other application runs until a test adds one or
// calls populateSampleApplications().
class SimDesktop {
  public:
    static constexpr pid_t ownProcessIdentifier = 4242;
    static constexpr pid_t fileManagerProcessIdentifier = 300;

    SimDesktop();
    explicit SimDesktop(MainLoop& externalLoop);
    ~SimDesktop();
    SimDesktop(const SimDesktop&) = delete;
    SimDesktop& operator=(const SimDesktop&) = delete;

    // The virtual-clock loop; only for a desktop that runs on its own loop.
    SimMainLoop& loop();
    MainLoop& mainLoop() { return mainLoop_; }
    SimWorkspace& workspace() { return workspace_; }
    SimEventMonitors& eventMonitors() { return eventMonitors_; }
    SimApplication& application() { return application_; }
    SimToolkit& toolkit() { return toolkit_; }
    SimStatusBar& statusBar() { return statusBar_; }
    SimBundles& bundles() { return bundles_; }
    SimFileManager& fileManager() { return fileManager_; }
    SimFileViewer& fileViewer() { return fileViewer_; }
    SimProcessLauncher& processLauncher() { return processLauncher_; }
    SimLoginItemService& loginItemService() { return loginItemService_; }
    SimUpdater& updater() { return updater_; }
    SimEventTap& eventTap() { return eventTap_; }
    SimAccessibility& accessibility() { return accessibility_; }
    SimKeyboardLayouts& keyboardLayouts() { return keyboardLayouts_; }
    SimHotKeys& hotKeys() { return hotKeys_; }
    SimPreferencesStore& preferences() { return preferences_; }
    SimPowerManagement& powerManagement() { return powerManagement_; }

    // Our own entry among the running applications.
    const std::shared_ptr<SimRunningApplication>& ownApplication() const { return own_; }

    // Adds, as running before the program started, the file manager
    // ("com.apple.finder", process 300) and three ordinary applications in
    // /Applications, each with a few windows, and makes the first of those
    // frontmost. Returns them in that order.
    std::vector<std::shared_ptr<SimRunningApplication>> populateSampleApplications();

    // The services of this desktop, for platform::install or ScopedInstall.
    Services services();

  private:
    SimDesktop(std::unique_ptr<SimMainLoop> ownLoop, MainLoop* externalLoop);

    std::unique_ptr<SimMainLoop> ownLoop_;
    MainLoop& mainLoop_;
    SimWorkspace workspace_;
    // Follows the workspace's applications, so it is destroyed before it.
    SimAccessibility accessibility_;
    SimApplication application_;
    SimEventMonitors eventMonitors_;
    SimToolkit toolkit_;
    SimStatusBar statusBar_;
    SimBundles bundles_;
    SimFileManager fileManager_;
    SimFileViewer fileViewer_;
    SimProcessLauncher processLauncher_;
    SimLoginItemService loginItemService_;
    SimUpdater updater_;
    SimEventTap eventTap_;
    SimKeyboardLayouts keyboardLayouts_;
    SimHotKeys hotKeys_;
    SimPreferencesStore preferences_;
    SimPowerManagement powerManagement_;
    std::shared_ptr<SimRunningApplication> own_;
};

}  // namespace platform::sim
