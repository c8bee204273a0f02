#include "views/QtKeyEvents.h"

#include "platform/Platform.h"

namespace platform::qt {

std::optional<Event> platformEventOf(const QKeyEvent& event) {
    auto* layouts = installed().keyboardLayouts;
    if (!layouts)
        return std::nullopt;
    NativeKeyEvent native;
    native.keyCode = event.nativeScanCode();
    native.modifierState = event.nativeModifiers();
    native.pressed = event.type() == QEvent::KeyPress;
    native.isARepeat = event.isAutoRepeat();
    native.timestamp = static_cast<double>(event.timestamp()) / 1000.0;
    return layouts->eventForNativeKeyEvent(native);
}

}  // namespace platform::qt
