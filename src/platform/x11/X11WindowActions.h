#pragma once

#include <xcb/xcb.h>

#include "platform/x11/X11Connection.h"

namespace platform::x11 {

// The requests that ask the window manager to act on a client window. They
// go to the root window, so a client that vanished meanwhile costs no error:
// the window manager drops the request.
class X11WindowActions {
  public:
    enum class Change { remove = 0, add = 1, toggle = 2 };

    explicit X11WindowActions(X11Connection& connection);

    // Activates the window (and so its process), lifting it from the icons.
    void activate(xcb_window_t window);
    void iconify(xcb_window_t window);
    void close(xcb_window_t window);
    void changeFullScreen(xcb_window_t window, Change change);

  private:
    X11Connection& connection_;
    xcb_atom_t changeState_;
};

}  // namespace platform::x11
