#pragma once

#if defined(__linux__)
#include <xcb/xcb.h>

class QWidget;

namespace platform::qt::x11 {

// The X connection Qt draws a top-level window through; none off X11 (the
// offscreen platform, say, has the interface with no connection behind it).
xcb_connection_t* connectionFor(const QWidget& window);
// Qt's one X connection, which lives as long as the program; none off X11.
xcb_connection_t* qtConnection();
// The root window of the connection's first screen.
xcb_window_t rootOf(xcb_connection_t* connection);

}  // namespace platform::qt::x11
#endif
