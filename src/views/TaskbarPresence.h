#pragma once

class QWidget;

namespace platform::qt::x11 {

// Keeps a top-level window out of taskbars and pagers (the EWMH states
// _NET_WM_STATE_SKIP_TASKBAR and _NET_WM_STATE_SKIP_PAGER), or puts it back.
// A window not yet shown gets the states in its own property, which Qt
// keeps when it maps the window; a shown one asks the window manager. Does
// nothing where Qt doesn't run on X11.
void setSkipTaskbarAndPager(QWidget& window, bool skip);

}  // namespace platform::qt::x11
