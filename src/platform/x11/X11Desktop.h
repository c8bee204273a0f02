#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "platform/MainLoop.h"
#include "platform/Platform.h"
#include "platform/x11/X11Accessibility.h"
#include "platform/x11/X11ActiveWindowTracker.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11EventMonitors.h"
#include "platform/x11/X11EventTap.h"
#include "platform/x11/X11HotKeys.h"
#include "platform/x11/X11InputEventSource.h"
#include "platform/x11/X11KeyboardLayouts.h"
#include "platform/x11/X11RawInput.h"
#include "platform/x11/X11Workspace.h"
#include "platform/xdg/DefaultFileManager.h"
#include "platform/xdg/DesktopEntryDirectories.h"
#include "platform/xdg/DesktopEntryIcons.h"
#include "platform/xdg/DesktopEntryIndex.h"
#include "platform/xdg/PlistFileStore.h"
#include "platform/xdg/ProcessIdentities.h"
#include "platform/xdg/XdgBundles.h"
#include "platform/xdg/XdgFileManager.h"
#include "platform/xdg/XdgFileViewer.h"
#include "platform/xdg/XdgLoginItemService.h"
#include "platform/xdg/XdgProcessLauncher.h"

// The seam's services (platform/Platform.h) and where this backend takes
// each from:
//   mainLoop          the loop the caller passes in (Qt's in the program)
//   workspace         here: X11Workspace, processes with managed windows
//   eventMonitors     here: X11EventMonitors, XInput2 raw events
//   application       not here: the views' Qt application object
//   toolkit           not here: the views' Qt widgets
//   statusBar         not here: the views' Qt tray icon
//   accessibility     here: X11Accessibility, EWMH window state
//   keyboardLayouts   here: X11KeyboardLayouts, xkbcommon over the server's keymap
//   hotKeys           here: X11HotKeys, key grabs on the root window
//   eventTap          here: X11EventTap, listen-only raw events
//   loginItemService  here, from platform/xdg: XdgLoginItemService, an autostart entry
//   updater           not yet: none on Linux
//   processLauncher   here, from platform/xdg: XdgProcessLauncher
//   bundles           here, from platform/xdg: XdgBundles, desktop entries
//   fileManager       here, from platform/xdg: XdgFileManager
//   fileViewer        here, from platform/xdg: XdgFileViewer, the default file manager
//   preferences       here, from platform/xdg: PlistFileStore, a property-list file

namespace platform::x11 {

// The whole Linux desktop backend in one object: it opens what the backend
// needs (two connections to the X server: one for the window state the
// accessibility reads answer from, one for input and the active window;
// the installed applications; the preferences file) and owns every service
// for as long as it lives. The toolkit, the status bar and the application
// object come from the views and are set by the caller.
class X11Desktop {
  public:
    struct Options {
        // The X display; empty for $DISPLAY.
        std::string displayName;
        xdg::XdgBundles::MainBundleInfo mainBundle{xdg::currentExecutable(), {}, {}, {}, {}};
        xdg::DesktopEntryDirectories directories = xdg::DesktopEntryDirectories::fromEnvironment();
        // Empty for the preferences file's usual place.
        std::filesystem::path preferencesPath;
        // The toolkit's device pixels per point; empty for one.
        X11EventMonitors::PixelsPerPoint pixelsPerPoint;
    };

    // Nothing when the display can't be opened. The input side uses the
    // connection given, else one of its own.
    static std::unique_ptr<X11Desktop> open(MainLoop& loop, Options options,
                                            std::unique_ptr<X11Connection> inputConnection = {});
    ~X11Desktop();
    X11Desktop(const X11Desktop&) = delete;
    X11Desktop& operator=(const X11Desktop&) = delete;

    Services services();

    X11Workspace& workspace() { return *workspace_; }
    X11Accessibility& accessibility() { return *accessibility_; }
    const X11ActiveWindowTracker& activeWindowTracker() const { return *activeWindow_; }
    xdg::XdgProcessLauncher& processLauncher() { return launcher_; }
    xdg::XdgFileManager& fileManager() { return fileManager_; }
    xdg::XdgFileViewer& fileViewer() { return fileViewer_; }
    xdg::XdgLoginItemService& loginItemService() { return loginItems_; }
    xdg::XdgBundles& bundles() { return bundles_; }
    xdg::PlistFileStore& preferences() { return *preferences_; }
    const xdg::DesktopEntryIndex& desktopEntries() const { return entries_; }
    const std::optional<xdg::DefaultFileManager>& defaultFileManager() const {
        return defaultFileManager_;
    }

  private:
    X11Desktop(MainLoop& loop, Options options, std::unique_ptr<X11Connection> inputConnection,
               std::unique_ptr<X11Accessibility> accessibility);

    static xdg::XdgRunningApplication::Identity ownIdentity(Bundle& mainBundle);

    MainLoop& loop_;
    xdg::DesktopEntryIndex entries_;
    xdg::DesktopEntryIcons icons_;
    std::optional<xdg::DefaultFileManager> defaultFileManager_;
    xdg::XdgProcessLauncher launcher_;
    xdg::XdgBundles bundles_;
    xdg::XdgFileManager fileManager_;
    xdg::XdgFileViewer fileViewer_;
    xdg::XdgLoginItemService loginItems_;
    std::unique_ptr<xdg::PlistFileStore> preferences_;

    std::unique_ptr<X11InputEventSource> input_;
    std::unique_ptr<X11KeyboardLayouts> keyboardLayouts_;
    std::unique_ptr<X11RawInput> rawInput_;
    std::unique_ptr<X11ActiveWindowTracker> activeWindow_;
    std::unique_ptr<X11EventMonitors> eventMonitors_;
    std::unique_ptr<X11HotKeys> hotKeys_;
    std::unique_ptr<X11EventTap> eventTap_;
    std::unique_ptr<X11Accessibility> accessibility_;

    xdg::ProcessIdentities identities_;
    std::unique_ptr<X11Workspace> workspace_;
};

}  // namespace platform::x11
