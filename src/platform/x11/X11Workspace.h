#pragma once

#include <sys/types.h>
#include <xcb/xcb.h>

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <unordered_map>
#include <vector>

#include "platform/LifetimeGuard.h"
#include "platform/MainLoop.h"
#include "platform/ObservedWorkspace.h"
#include "platform/Workspace.h"
#include "platform/x11/X11Accessibility.h"
#include "platform/x11/X11ActiveWindowTracker.h"
#include "platform/x11/X11InputEventSource.h"
#include "platform/xdg/ProcessIdentities.h"
#include "platform/xdg/ProcessWatcher.h"
#include "platform/xdg/XdgProcessLauncher.h"
#include "platform/xdg/XdgRunningApplication.h"

namespace platform::x11 {

// The running applications of the X desktop. An application is a local
// process: every process that owns a managed window, and, found once at
// start, the processes that run an installed application. This program is
// one of them from the start. Each process has one application object for
// as long as it runs.
//
// One installed application is one application however many processes show
// its windows (two terminals, an editor's second instance): the first
// process stands for it, and the others' windows are its windows. When that
// process ends, the next one takes its place as a new application object.
// A process showing only accessory windows (a panel, a desktop) is an
// accessory, not offered as the application of its entry; its first
// ordinary window makes it a new, regular application object.
//
// A process whose first managed window appears has launched; a process's
// end, seen through its pidfd, terminates it. Both are announced on the
// main loop. The frontmost application is the one owning the window
// manager's active window.
//
// At start, the default file manager is started in its background mode
// when none of its processes runs, so that the Finder's part is played.
class X11Workspace final : public ObservedWorkspace,
                           private X11WindowMirrorListener,
                           private X11ApplicationProcesses {
  public:
    // What the workspace is built on; all of it must outlive the workspace.
    // The tracker must have been made on the input source before the
    // workspace, so it has caught up with the active window when the
    // workspace looks.
    struct Parts {
        MainLoop& loop;
        X11Accessibility& accessibility;
        X11InputEventSource& input;
        const X11ActiveWindowTracker& activeWindow;
        xdg::XdgProcessLauncher& launcher;
        const xdg::ProcessIdentities& identities;
    };

    explicit X11Workspace(Parts parts);
    ~X11Workspace() override;
    X11Workspace(const X11Workspace&) = delete;
    X11Workspace& operator=(const X11Workspace&) = delete;

    std::vector<RunningApplicationRef> runningApplications() const override;
    RunningApplicationRef currentApplication() const override { return own_; }
    RunningApplicationRef runningApplicationWithProcessIdentifier(pid_t pid) const override;

    // An installed application's bundle is its desktop entry; its icon is
    // the entry's, found in the icon themes.
    Image iconForFile(const std::filesystem::path& path) const override;
    std::optional<std::filesystem::path> URLForApplicationWithBundleIdentifier(
        const std::string& bundleIdentifier) const override;

  private:
    using Application = std::shared_ptr<xdg::XdgRunningApplication>;

    void addRunningAtStart();
    // The file manager plays the Finder, which is always there: when none
    // runs at start one is started, and one is started again whenever the
    // one playing it ends (ours or one found running), after a pause that
    // grows while it keeps ending soon.
    void startFileManagerIfNeeded();
    bool playsTheFileManager(const Application& application) const;
    void restartFileManagerSoon();
    // The application of the process, whether it stands for it or belongs
    // to it.
    Application find(pid_t pid) const;
    // The application of the process, made known and announced when it is
    // new; nothing for a process that is gone. The window, when there is
    // one, says which application the process runs; its state is given when
    // the mirror doesn't hold it yet.
    Application applicationOf(pid_t pid, xcb_window_t window,
                              const X11WindowState* state = nullptr);
    // The regular application of this bundle identifier already running.
    Application runningWithBundleIdentifier(const std::optional<std::string>& identifier) const;
    void add(const Application& application);
    void join(pid_t pid, const Application& application);
    // Takes the application out of the running ones and announces its end.
    bool remove(const Application& application);
    void terminated(const Application& application);
    // A process known only by accessory windows showed an ordinary one.
    void reconsider(pid_t pid);
    pid_t applicationProcessOf(xcb_window_t window, const X11WindowState& state) override;

    // What the window says of its application; nothing when it is gone.
    std::optional<xdg::WindowIdentity> windowIdentityOf(xcb_window_t window);
    // A dock, a desktop, or a window kept out of the taskbar.
    bool isAccessoryWindow(const X11WindowState& state);
    // Whether the process's windows, with this one not yet mirrored, are all
    // accessory windows; false for a process without windows.
    bool showsOnlyAccessoryWindows(pid_t pid, const X11WindowState* state);

    // The owner of the active window, as far as it is one of ours; observers
    // hear of a change.
    void updateFrontmost();

    void windowJoined(xcb_window_t window, pid_t pid) override;
    void windowLeft(xcb_window_t window, pid_t pid) override;
    void windowMoved(xcb_window_t, pid_t) override {}
    void windowRetitled(xcb_window_t, pid_t) override {}
    void windowMiniaturized(xcb_window_t, pid_t) override {}
    void mainWindowChanged(pid_t, xcb_window_t) override {}

    X11Accessibility& accessibility_;
    X11InputEventSource& input_;
    const X11ActiveWindowTracker& activeWindow_;
    xdg::XdgProcessLauncher& launcher_;
    const xdg::ProcessIdentities& identities_;
    xdg::ProcessWatcher watcher_;

    // In the order they became known.
    std::vector<Application> running_;
    std::unordered_map<pid_t, Application> byProcess_;
    // The processes that belong to an application another process stands
    // for, with that process.
    std::unordered_map<pid_t, pid_t> members_;
    // The applications known only by accessory windows so far.
    std::set<pid_t> accessories_;
    Application own_;
    // While the applications running at start are gathered nothing is
    // announced: nobody could have listened yet.
    bool starting_ = true;
    xcb_atom_t applicationIdAtom_ = XCB_ATOM_NONE;

    Token inputHandler_;
    Token windowListener_;
    double startedFileManagerAt_ = 0;
    double fileManagerRestartPause_ = 0;
    Token fileManagerRestart_;
    LifetimeGuard lifetime_;
};

}  // namespace platform::x11
