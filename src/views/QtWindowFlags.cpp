#include "views/QtWindowFlags.h"

namespace platform::qt {

namespace {

Qt::WindowFlags titleBarFlags(WindowStyleMask styleMask) {
    if (!(styleMask & windowStyle::titled))
        return Qt::FramelessWindowHint;
    Qt::WindowFlags flags = Qt::CustomizeWindowHint | Qt::WindowTitleHint;
    if (styleMask & windowStyle::closable)
        flags |= Qt::WindowCloseButtonHint;
    if (styleMask & windowStyle::miniaturizable)
        flags |= Qt::WindowMinimizeButtonHint;
    // A window that can be resized by its edges still has nothing to
    // maximise to when its size follows its content; only a window that
    // may go full screen gets the button that does so.
    if (styleMask & windowStyle::fullScreen)
        flags |= Qt::WindowMaximizeButtonHint;
    return flags;
}

}  // namespace

Qt::WindowFlags windowFlagsFor(bool isPanel, WindowStyleMask styleMask, WindowLevel level) {
    const bool tool = isPanel || (styleMask & windowStyle::utilityWindow);
    Qt::WindowFlags flags = tool ? Qt::Tool : Qt::Window;
    flags |= titleBarFlags(styleMask);
    if (isPanel || (styleMask & windowStyle::nonactivatingPanel)) {
        flags |= Qt::WindowDoesNotAcceptFocus;
    }
    // The panel needs no frame, no focus and no place in the window
    // manager's lists, and a managed window is framed, listed and stacked
    // anew at each showing, work that grows with the windows on the desktop.
    // Passing the manager by, it is mapped straight above every window, the
    // active full-screen one included, and is on the screen at once.
    if (isPanel)
        flags |= Qt::BypassWindowManagerHint;
    if (isPanel || level >= windowLevel::floating)
        flags |= Qt::WindowStaysOnTopHint;
    return flags;
}

}  // namespace platform::qt
