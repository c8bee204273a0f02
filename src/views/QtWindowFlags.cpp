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
    if (styleMask & windowStyle::resizable)
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
    if (isPanel || level >= windowLevel::floating)
        flags |= Qt::WindowStaysOnTopHint;
    return flags;
}

}  // namespace platform::qt
