#include "platform/Platform.h"

#include <cstdio>
#include <cstdlib>

namespace platform {

namespace {

Services current;

template <typename T>
T& require(T* service, const char* name) {
    if (!service) {
        std::fprintf(stderr, "No %s on this platform\n", name);
        std::fflush(stderr);
        std::abort();
    }
    return *service;
}

}  // namespace

void install(const Services& services) {
    current = services;
}
const Services& installed() {
    return current;
}

ScopedInstall::ScopedInstall(const Services& services) : previous_(current) {
    current = services;
}
ScopedInstall::~ScopedInstall() {
    current = previous_;
}

MainLoop& mainLoop() {
    return require(current.mainLoop, "main loop");
}
Workspace& workspace() {
    return require(current.workspace, "workspace");
}
EventMonitors& eventMonitors() {
    return require(current.eventMonitors, "event monitors");
}
Application& application() {
    return require(current.application, "application object");
}
Toolkit& toolkit() {
    return require(current.toolkit, "window toolkit");
}
StatusBar& statusBar() {
    return require(current.statusBar, "status bar");
}
Accessibility& accessibility() {
    return require(current.accessibility, "accessibility");
}
KeyboardLayouts& keyboardLayouts() {
    return require(current.keyboardLayouts, "keyboard layouts");
}
HotKeys& hotKeys() {
    return require(current.hotKeys, "hot key service");
}
EventTap& eventTap() {
    return require(current.eventTap, "event tap");
}
LoginItemService& loginItemService() {
    return require(current.loginItemService, "login item service");
}
Updater& updater() {
    return require(current.updater, "updater");
}
ProcessLauncher& processLauncher() {
    return require(current.processLauncher, "process launcher");
}
Bundles& bundles() {
    return require(current.bundles, "bundles");
}
FileManager& fileManager() {
    return require(current.fileManager, "file manager");
}
FileViewer& fileViewer() {
    return require(current.fileViewer, "file viewer");
}
PreferencesStore& preferences() {
    return require(current.preferences, "preferences store");
}
ObjectStore& objectStore() {
    return require(current.objectStore, "object store");
}
PowerManagement& powerManagement() {
    return require(current.powerManagement, "power management");
}

}  // namespace platform
