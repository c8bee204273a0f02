#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "platform/MainLoop.h"
#include "platform/Platform.h"
#include "platform/x11/DefaultFileManager.h"
#include "platform/x11/DesktopEntryDirectories.h"
#include "platform/x11/DesktopEntryIcons.h"
#include "platform/x11/DesktopEntryIndex.h"
#include "platform/x11/PlistFileStore.h"
#include "platform/x11/X11Accessibility.h"
#include "platform/x11/X11ActiveWindowTracker.h"
#include "platform/x11/X11Bundles.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11EventMonitors.h"
#include "platform/x11/X11EventTap.h"
#include "platform/x11/X11FileManager.h"
#include "platform/x11/X11FileViewer.h"
#include "platform/x11/X11HotKeys.h"
#include "platform/x11/X11InputEventSource.h"
#include "platform/x11/X11KeyboardLayouts.h"
#include "platform/x11/X11ProcessLauncher.h"
#include "platform/x11/X11RawInput.h"
#include "platform/x11/X11Workspace.h"
#include "platform/x11/X11WorkspaceIdentities.h"

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
        X11Bundles::MainBundleInfo mainBundle{currentExecutable(), {}, {}, {}, {}};
        DesktopEntryDirectories directories = DesktopEntryDirectories::fromEnvironment();
        // Empty for the preferences file's usual place.
        std::filesystem::path preferencesPath;
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
    X11ProcessLauncher& processLauncher() { return launcher_; }
    X11FileManager& fileManager() { return fileManager_; }
    X11FileViewer& fileViewer() { return fileViewer_; }
    X11Bundles& bundles() { return bundles_; }
    PlistFileStore& preferences() { return *preferences_; }
    const DesktopEntryIndex& desktopEntries() const { return entries_; }
    const std::optional<DefaultFileManager>& defaultFileManager() const {
        return defaultFileManager_;
    }

  private:
    X11Desktop(MainLoop& loop, Options options, std::unique_ptr<X11Connection> inputConnection,
               std::unique_ptr<X11Accessibility> accessibility);

    static X11RunningApplication::Identity ownIdentity(Bundle& mainBundle);

    MainLoop& loop_;
    DesktopEntryIndex entries_;
    DesktopEntryIcons icons_;
    std::optional<DefaultFileManager> defaultFileManager_;
    X11ProcessLauncher launcher_;
    X11Bundles bundles_;
    X11FileManager fileManager_;
    X11FileViewer fileViewer_;
    std::unique_ptr<PlistFileStore> preferences_;

    std::unique_ptr<X11InputEventSource> input_;
    std::unique_ptr<X11KeyboardLayouts> keyboardLayouts_;
    std::unique_ptr<X11RawInput> rawInput_;
    std::unique_ptr<X11ActiveWindowTracker> activeWindow_;
    std::unique_ptr<X11EventMonitors> eventMonitors_;
    std::unique_ptr<X11HotKeys> hotKeys_;
    std::unique_ptr<X11EventTap> eventTap_;
    std::unique_ptr<X11Accessibility> accessibility_;

    X11WorkspaceIdentities identities_;
    std::unique_ptr<X11Workspace> workspace_;
};

}  // namespace platform::x11
