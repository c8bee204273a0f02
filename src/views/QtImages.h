#pragma once

#include <QIcon>

#include "platform/Image.h"

namespace platform::qt {

// The icon for an image as the program names it: one of our resources (the
// status item's glyph is drawn), a system symbol (those we draw ourselves,
// others from the icon theme), or an image file. An image that can't be
// found gives a null icon.
QIcon iconFor(const Image& image);

}  // namespace platform::qt
