#pragma once

#include "platform/Accessibility.h"
#include "platform/Application.h"
#include "platform/Bundle.h"
#include "platform/EventMonitors.h"
#include "platform/EventTap.h"
#include "platform/FileSystem.h"
#include "platform/HotKeys.h"
#include "platform/KeyboardLayout.h"
#include "platform/LoginItemService.h"
#include "platform/MainLoop.h"
#include "platform/ObjectStore.h"
#include "platform/PowerManagement.h"
#include "platform/PreferencesStore.h"
#include "platform/ProcessLauncher.h"
#include "platform/StatusBar.h"
#include "platform/Updater.h"
#include "platform/Window.h"
#include "platform/Workspace.h"

namespace platform {

// The services of one platform backend. The backend owns them; the program
// reaches them through the accessors below, as it would reach the platform's
// shared objects. A service a backend lacks stays null, and asking for it is
// a programming fault.
struct Services {
    MainLoop* mainLoop = nullptr;
    Workspace* workspace = nullptr;
    EventMonitors* eventMonitors = nullptr;
    Application* application = nullptr;
    Toolkit* toolkit = nullptr;
    StatusBar* statusBar = nullptr;
    Accessibility* accessibility = nullptr;
    KeyboardLayouts* keyboardLayouts = nullptr;
    HotKeys* hotKeys = nullptr;
    EventTap* eventTap = nullptr;
    LoginItemService* loginItemService = nullptr;
    Updater* updater = nullptr;
    ProcessLauncher* processLauncher = nullptr;
    Bundles* bundles = nullptr;
    FileManager* fileManager = nullptr;
    FileViewer* fileViewer = nullptr;
    PreferencesStore* preferences = nullptr;
    ObjectStore* objectStore = nullptr;
    PowerManagement* powerManagement = nullptr;
};

// Makes the services the current platform until another is installed.
void install(const Services& services);
const Services& installed();

// Installs services for a scope and puts the previous ones back after it.
class ScopedInstall {
  public:
    explicit ScopedInstall(const Services& services);
    ~ScopedInstall();
    ScopedInstall(const ScopedInstall&) = delete;
    ScopedInstall& operator=(const ScopedInstall&) = delete;

  private:
    Services previous_;
};

MainLoop& mainLoop();
Workspace& workspace();
EventMonitors& eventMonitors();
Application& application();
Toolkit& toolkit();
StatusBar& statusBar();
Accessibility& accessibility();
KeyboardLayouts& keyboardLayouts();
HotKeys& hotKeys();
EventTap& eventTap();
LoginItemService& loginItemService();
Updater& updater();
ProcessLauncher& processLauncher();
Bundles& bundles();
FileManager& fileManager();
FileViewer& fileViewer();
PreferencesStore& preferences();
ObjectStore& objectStore();
PowerManagement& powerManagement();

}  // namespace platform
