#pragma once

#include <QIcon>

#include "platform/Image.h"

namespace platform::qt {

// The icon for an image as the program names it: one of our resources (the
// status item's glyph is drawn), a system symbol (those we draw ourselves,
// others from the icon theme), or an image file. An image that can't be
// found gives a null icon.
QIcon iconFor(const Image& image);

// Gives every window of the program the application's icon in the sizes a
// window manager draws a window's icon at, in title bars, task bars and
// switchers. The larger sizes are left out: a window carries its icon's
// pixels to the server, and the window manager reads all of them each time
// it takes the window, at every showing of the panel.
void useApplicationIconForWindows();

}  // namespace platform::qt
