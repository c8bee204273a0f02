#pragma once

#include <sys/types.h>
#include <xcb/xcb.h>

#include <functional>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "platform/HandlerList.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11WindowState.h"

namespace platform::x11 {

// Told of the changes the mirror sees, after the mirror itself is current.
class X11WindowMirrorListener {
  public:
    virtual ~X11WindowMirrorListener() = default;
    // The window joined or left the managed windows of the process.
    virtual void windowJoined(xcb_window_t window, pid_t pid) = 0;
    virtual void windowLeft(xcb_window_t window, pid_t pid) = 0;
    virtual void windowMoved(xcb_window_t window, pid_t pid) = 0;
    virtual void windowRetitled(xcb_window_t window, pid_t pid) = 0;
    virtual void windowMiniaturized(xcb_window_t window, pid_t pid) = 0;
    // The process's main window is now this one.
    virtual void mainWindowChanged(pid_t pid, xcb_window_t window) = 0;
};

// Says which process stands for the application a window's process belongs
// to, where several processes are one application.
class X11ApplicationProcesses {
  public:
    virtual ~X11ApplicationProcesses() = default;
    // The process standing for the application of the window's owner (its
    // processPid); the owner itself when it stands alone. The state is the
    // window's as just read, perhaps not in the mirror yet.
    virtual pid_t applicationProcessOf(xcb_window_t window, const X11WindowState& state) = 0;
};

// Tells a first listener, then each further one in the order they were
// added, of the mirror's changes. A listener removed while they are told
// hears no more of that change.
class X11WindowMirrorListeners final : public X11WindowMirrorListener {
  public:
    explicit X11WindowMirrorListeners(X11WindowMirrorListener& first) { add(first); }

    Token add(X11WindowMirrorListener& listener) {
        return listeners_.add([&listener](const Tell& tell) { tell(listener); });
    }
    void remove(Token listener) { listeners_.remove(listener); }

    void windowJoined(xcb_window_t window, pid_t pid) override {
        tell([&](auto& listener) { listener.windowJoined(window, pid); });
    }
    void windowLeft(xcb_window_t window, pid_t pid) override {
        tell([&](auto& listener) { listener.windowLeft(window, pid); });
    }
    void windowMoved(xcb_window_t window, pid_t pid) override {
        tell([&](auto& listener) { listener.windowMoved(window, pid); });
    }
    void windowRetitled(xcb_window_t window, pid_t pid) override {
        tell([&](auto& listener) { listener.windowRetitled(window, pid); });
    }
    void windowMiniaturized(xcb_window_t window, pid_t pid) override {
        tell([&](auto& listener) { listener.windowMiniaturized(window, pid); });
    }
    void mainWindowChanged(pid_t pid, xcb_window_t window) override {
        tell([&](auto& listener) { listener.mainWindowChanged(pid, window); });
    }

  private:
    using Tell = std::function<void(X11WindowMirrorListener&)>;

    void tell(const Tell& tell) { listeners_.call(tell); }

    HandlerList<const Tell&> listeners_;
};

// The managed windows as the window manager publishes them, held in memory
// and kept current from X events, so that questions about them need no
// round trip. The round trips happen when an event says something changed.
class X11WindowMirror {
  public:
    X11WindowMirror(X11Connection& connection, X11WindowMirrorListener& listener);
    X11WindowMirror(const X11WindowMirror&) = delete;
    X11WindowMirror& operator=(const X11WindowMirror&) = delete;

    // Asks for the events it needs and loads the current state, telling the
    // listener nothing about what was already there.
    void load();
    // A window's own changes take effect at once; the root's lists, which a
    // window manager rewrites several times for one window's coming, and the
    // main windows take effect at settle.
    void handleEvent(const xcb_generic_event_t& event);
    // Reads each root list that the events since the last call named, once
    // however many named it, then settles the main windows. Called after a
    // batch of events, or later when its owner gathers several batches.
    void settle();
    // Whether the events since the last settle left it anything to do.
    bool unsettled() const;
    // From now on the windows' pid is the process standing for their
    // application, as the grouping says; the windows there are are grouped
    // at once. Null: each process stands for itself.
    void setApplicationProcesses(X11ApplicationProcesses* applications);
    // Asks the grouping again for the windows now standing under the
    // process (every window with nothing), after it changed its mind; the
    // windows that move leave the old process and join the new one.
    void regroup(std::optional<pid_t> applicationPid = std::nullopt);

    const X11WindowState* window(xcb_window_t window) const;
    // The managed windows, in the window manager's order.
    const std::vector<xcb_window_t>& clientList() const { return clientList_; }
    std::vector<xcb_window_t> windowsOf(pid_t pid) const;
    bool hasWindowsOf(pid_t pid) const;
    xcb_window_t activeWindow() const { return active_; }
    // The process's most recently active window that is not minimised.
    std::optional<xcb_window_t> mainWindowOf(pid_t pid) const;
    // The topmost managed window whose frame holds the point (top-left
    // root coordinates).
    std::optional<xcb_window_t> windowAt(double x, double y) const;
    // The window by which the window manager shows it lives; none without one.
    xcb_window_t windowManagerCheck() const { return windowManagerCheck_; }
    double screenHeight() const { return screenHeight_; }

  private:
    void handlePropertyChange(const xcb_property_notify_event_t& event);
    void handleRootProperty(xcb_atom_t atom);
    void handleConfigure(const xcb_configure_notify_event_t& event, bool sent);
    void handleDestroy(xcb_window_t window);
    // Sets the state's pid: the owner, or the process of its application.
    void settlePid(xcb_window_t window, X11WindowState& state);

    using RootWindows = std::optional<std::vector<xcb_window_t>>;
    xcb_get_property_cookie_t askRootWindows(xcb_atom_t atom);
    RootWindows receiveRootWindows(xcb_get_property_cookie_t cookie);
    RootWindows readRootWindows(xcb_atom_t atom);
    void syncClientList(bool announce);
    // The windows to fetch among those listed anew, once each, in their order.
    std::vector<xcb_window_t> newlyListed(const std::vector<xcb_window_t>& listed) const;
    // Fetches the windows' state; those that are still there are held.
    std::vector<xcb_window_t> fetch(const std::vector<xcb_window_t>& windows);
    void syncStacking(RootWindows stacking);
    void syncActiveWindow(const RootWindows& active);
    void syncWindowManagerCheck();
    void forget(xcb_window_t window, bool announce);
    // Forgets the windows all together: each is gone before the first is told.
    void forgetAll(const std::vector<xcb_window_t>& windows, bool announce);
    void unsubscribe(xcb_window_t window);
    void mayBecomeMain(xcb_window_t window);
    void mayLoseMain(xcb_window_t window, pid_t pid);
    std::optional<xcb_window_t> mainWindowAmong(pid_t pid) const;
    // Counts the main windows of the processes that may have lost theirs
    // afresh and lets each candidate beat its process's main window.
    void settleMainWindows(bool announce);

    X11Connection& connection_;
    X11WindowMirrorListener& listener_;
    X11ApplicationProcesses* applications_ = nullptr;
    bool askOwners_ = false;
    std::unordered_map<xcb_window_t, X11WindowState> windows_;
    std::vector<xcb_window_t> clientList_;
    std::unordered_map<pid_t, xcb_window_t> mainWindows_;
    // What the events since the last settle said changed.
    struct Pending {
        bool clientList = false;
        bool stacking = false;
        bool activeWindow = false;
    } pending_;
    // The windows that may have become their process's main window, and
    // the processes whose main window may have gone, since the last settle.
    std::vector<xcb_window_t> mainCandidates_;
    std::unordered_set<pid_t> mainsToRecount_;
    // The stacking list as last read, and the windows held since then that
    // it may place before the first change it shows; with too many of
    // those, the whole list is read into the windows again.
    std::vector<xcb_window_t> stacking_;
    std::vector<xcb_window_t> unstacked_;
    bool restackAll_ = true;
    xcb_window_t active_ = XCB_NONE;
    xcb_window_t windowManagerCheck_ = XCB_NONE;
    std::uint64_t lastActivation_ = 0;
    double screenHeight_ = 0;
};

}  // namespace platform::x11
