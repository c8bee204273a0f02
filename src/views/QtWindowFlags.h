#pragma once

#include <Qt>

#include "platform/Window.h"

namespace platform::qt {

// The Qt window flags that give a window of this style and level. A panel
// is a tool window the window manager passes by, above the others, that
// never takes keyboard focus; an ordinary window at the floating level
// stays on top too.
Qt::WindowFlags windowFlagsFor(bool isPanel, WindowStyleMask styleMask, WindowLevel level);

}  // namespace platform::qt
