#pragma once

#include <QMargins>
#include <chrono>
#include <optional>

class QWidget;

namespace platform::qt::x11 {

// The window manager draws its frame around a window only once it is shown,
// so a window placed before its first showing is placed by its bare size.
// Asked beforehand (_NET_REQUEST_FRAME_EXTENTS), the window manager tells
// the frame it will draw in the window's _NET_FRAME_EXTENTS, in device
// pixels; it is returned in Qt's points, like the window's geometry.
// Nothing where Qt doesn't run on X11 or the window manager hasn't answered.
void requestFrameExtents(QWidget& window);
std::optional<QMargins> frameExtents(QWidget& window);
// Asks and waits for the answer, up to the patience given: for a window
// about to be placed and shown for the first time, before the answer to the
// request made when it was styled has come.
std::optional<QMargins> awaitFrameExtents(QWidget& window, std::chrono::milliseconds patience);

}  // namespace platform::qt::x11
