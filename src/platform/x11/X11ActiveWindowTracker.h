#pragma once

#include <sys/types.h>
#include <xcb/xcb.h>

#include <functional>
#include <memory>
#include <optional>

#include "platform/HandlerList.h"
#include "platform/Subscription.h"
#include "platform/x11/X11InputEventSource.h"

namespace platform::x11 {

// Follows the window manager's active window on the root window and the
// process that owns it. Observers are told on the main loop when the active
// process changes; a change of window within one process tells nobody.
class X11ActiveWindowTracker {
  public:
    using Handler = std::function<void(std::optional<pid_t>)>;

    explicit X11ActiveWindowTracker(X11InputEventSource& source);
    ~X11ActiveWindowTracker();
    X11ActiveWindowTracker(const X11ActiveWindowTracker&) = delete;
    X11ActiveWindowTracker& operator=(const X11ActiveWindowTracker&) = delete;

    xcb_window_t activeWindow() const { return window_; }
    // Nothing when no window is active or its owner is unknown.
    std::optional<pid_t> activeProcess() const { return process_; }

    Subscription observeActiveProcess(Handler handler);

  private:
    void handleEvent(const xcb_generic_event_t& event);
    void refresh();
    std::optional<pid_t> processOf(xcb_window_t window);

    X11InputEventSource& source_;
    xcb_window_t window_ = XCB_NONE;
    std::optional<pid_t> process_;
    Token eventHandler_;
    HandlerList<std::optional<pid_t>> observers_;
};

}  // namespace platform::x11
