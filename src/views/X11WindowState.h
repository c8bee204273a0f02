#pragma once

#include <QMargins>
#include <optional>

class QWidget;

namespace platform::qt::x11 {

// Keeps a top-level window out of taskbars and pagers (the EWMH states
// _NET_WM_STATE_SKIP_TASKBAR and _NET_WM_STATE_SKIP_PAGER), or puts it back.
// A window not yet shown gets the states in its own property, which Qt
// keeps when it maps the window; a shown one asks the window manager. Does
// nothing where Qt doesn't run on X11.
void setSkipTaskbarAndPager(QWidget& window, bool skip);

// The window manager draws its frame around a window only once it is shown,
// so a window placed before its first showing is placed by its bare size.
// Asked beforehand (_NET_REQUEST_FRAME_EXTENTS), the window manager tells
// the frame it will draw in the window's _NET_FRAME_EXTENTS. Nothing where
// Qt doesn't run on X11 or the window manager hasn't answered.
void requestFrameExtents(QWidget& window);
std::optional<QMargins> frameExtents(QWidget& window);

}  // namespace platform::qt::x11
