#pragma once

#include <cstdint>
#include <optional>

#include "platform/Event.h"

namespace platform::x11 {

// The one translation between the program's virtual key codes and the X
// keycodes of the evdev keymap that Xorg and Xvfb use (Linux input codes
// plus 8). Keys are matched by position, as the virtual key codes name
// positions on a US keyboard: the key left of Return is the quote key
// whatever the layout prints on it.
class KeyCodeTable {
  public:
    using XKeyCode = std::uint8_t;

    // Nothing for a key code that has no key on a PC keyboard.
    static std::optional<XKeyCode> xKeyCodeFor(KeyCode keyCode);
    // Nothing for an X keycode that stands for no key of the table.
    static std::optional<KeyCode> keyCodeFor(XKeyCode xKeyCode);

    // The modifier flag a modifier key holds while it is down (Caps Lock
    // gives its lock flag); 0 for any other key.
    static ModifierFlags modifierFlagOf(KeyCode keyCode);
    // The flags the platform adds to key events of a key because of where
    // it sits: function for the function and navigation keys, numeric pad
    // for the keypad and the arrows.
    static ModifierFlags deviceFlagsOf(KeyCode keyCode);

    // Every key code of the table, in the table's order.
    static const KeyCode* begin();
    static const KeyCode* end();
};

}  // namespace platform::x11
