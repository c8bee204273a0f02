#pragma once

// Drives the test display as a person would (keys and pointer through the
// server's test extension) and reads back what the server shows.
#include <sys/types.h>
#include <xcb/xcb.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Geometry.h"
#include "Screenshot.h"

namespace e2e {

// Key codes of the evdev keymap the test server uses.
constexpr xcb_keycode_t controlKey = 37, altKey = 64, shiftKey = 50, escapeKey = 9;
constexpr xcb_keycode_t returnKey = 36, downKey = 116, rightKey = 114;

// A managed window of some program, as the window manager lists it.
struct ClientWindow {
    xcb_window_t id = XCB_NONE;
    std::string title;
};

class Desktop {
  public:
    Desktop();
    ~Desktop();
    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;

    void key(xcb_keycode_t code, bool down);
    void tap(xcb_keycode_t code);
    void movePointer(int x, int y);
    // Moves the pointer there and clicks the first button.
    void click(Point point);
    // Moves the pointer there and turns the wheel, down for positive steps.
    void turnWheel(Point point, int steps);
    void pressChord();

    // Asks the window manager to activate the window, or the process's first
    // managed window, as a pager would.
    void activate(xcb_window_t window);
    bool activateWindowOf(pid_t pid);

    pid_t activeProcess();
    // Whether a window manager has announced itself on the root window.
    bool windowManagerRuns();
    // Whether another client holds the keyboard, as an open menu does once
    // it takes the keys.
    bool keyboardIsGrabbed();
    xcb_window_t activeWindow();

    // The process's managed windows, in the window manager's client-list
    // order.
    std::vector<ClientWindow> clientWindowsOf(pid_t pid);
    // Whether the window's _NET_WM_STATE holds the state, such as
    // "_NET_WM_STATE_HIDDEN".
    bool hasState(xcb_window_t window, const char* state);

    // The client window of the panel while it is shown.
    std::optional<xcb_window_t> panelClient(pid_t pid);
    // Where the panel is while it is shown, in root coordinates: it is a
    // top-level window of its own, which no window manager frames.
    std::optional<Geometry> shownPanel(pid_t pid);
    // The panel's own content, in root coordinates.
    std::optional<Geometry> panelContent(pid_t pid);
    // The icon of the program of that window class inside the tray host's
    // window (a window of class "tint2" below the root), once it is there.
    std::optional<Geometry> trayIconOf(const std::string& windowClass);
    // The frame (the window just below the root) of the client window.
    xcb_window_t frameOf(xcb_window_t client);
    // The topmost shown window just below the root that covers the point:
    // the frame of what a click there reaches (or an open pop-up menu).
    std::optional<xcb_window_t> topmostFrameAt(Point point);
    // The process's open pop-up menus, the topmost last.
    std::vector<Geometry> popupsOf(pid_t pid);

    // Reports the window's mapping and unmapping from now on.
    void watchMapping(xcb_window_t window);
    // Waits for the window to be mapped (or unmapped); false when the time
    // ran out.
    bool waitForMapping(xcb_window_t window, bool mapped, double seconds);

    Screenshot capture(Geometry region);

    // The property's 32-bit values, up to the length asked for.
    std::vector<uint32_t> property(xcb_window_t window, const char* name, xcb_atom_t type,
                                   uint32_t length = 1);

  private:
    std::optional<xcb_window_t> parentOf(xcb_window_t window);
    bool isOurPanel(xcb_window_t window, pid_t pid);
    bool listsAtom(xcb_window_t window, const char* property, const char* name);
    bool isViewable(xcb_window_t window, bool* overrideRedirect = nullptr);
    pid_t ownerOf(xcb_window_t window);
    std::vector<xcb_window_t> children(xcb_window_t window);
    Geometry geometry(xcb_window_t window);
    std::string title(xcb_window_t window);
    std::string className(xcb_window_t window);
    std::optional<xcb_window_t> windowOfClass(xcb_window_t window, const std::string& name,
                                              bool insideTrayHost);
    xcb_atom_t atom(const char* name);
    void sync();
    void pressAndRelease(std::uint8_t button);

    xcb_connection_t* connection_;
    xcb_window_t root_ = XCB_NONE;
};

// Polls the condition until it holds or the time runs out.
bool eventually(const std::function<bool()>& condition, double seconds = 5);

// The connection's next event, waiting for the server to send one until the
// deadline; null when none came. The caller frees it.
xcb_generic_event_t* nextEvent(xcb_connection_t* connection,
                               std::chrono::steady_clock::time_point deadline);

}  // namespace e2e
