#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/Geometry.h"

namespace platform {

// Event types in the platform's numbering.
enum class EventType : std::uint32_t {
    leftMouseDown = 1,
    leftMouseUp = 2,
    rightMouseDown = 3,
    rightMouseUp = 4,
    mouseMoved = 5,
    leftMouseDragged = 6,
    rightMouseDragged = 7,
    mouseEntered = 8,
    mouseExited = 9,
    keyDown = 10,
    keyUp = 11,
    flagsChanged = 12,
};

using EventMask = std::uint64_t;

constexpr EventMask eventMaskFor(EventType type) {
    return EventMask{1} << static_cast<std::uint32_t>(type);
}

using ModifierFlags = std::uint64_t;

// Modifier flags in the platform's numbering. Backends translate their own
// modifier state into these bits.
namespace modifier {
inline constexpr ModifierFlags capsLock = 0x10000;
inline constexpr ModifierFlags shift = 0x20000;
inline constexpr ModifierFlags control = 0x40000;
inline constexpr ModifierFlags option = 0x80000;
inline constexpr ModifierFlags command = 0x100000;
inline constexpr ModifierFlags numericPad = 0x200000;
inline constexpr ModifierFlags help = 0x400000;
inline constexpr ModifierFlags function = 0x800000;
inline constexpr ModifierFlags deviceIndependentMask = 0xFFFF0000;
}  // namespace modifier

using KeyCode = std::uint16_t;

// Virtual key codes in the platform's numbering (US positions).
namespace keycode {
inline constexpr KeyCode a = 0;
inline constexpr KeyCode s = 1;
inline constexpr KeyCode d = 2;
inline constexpr KeyCode f = 3;
inline constexpr KeyCode z = 6;
inline constexpr KeyCode y = 16;
inline constexpr KeyCode returnKey = 36;
inline constexpr KeyCode tab = 48;
inline constexpr KeyCode space = 49;
inline constexpr KeyCode deleteKey = 51;
inline constexpr KeyCode escape = 53;
inline constexpr KeyCode rightCommand = 54;
inline constexpr KeyCode command = 55;
inline constexpr KeyCode shift = 56;
inline constexpr KeyCode capsLock = 57;
inline constexpr KeyCode option = 58;
inline constexpr KeyCode control = 59;
inline constexpr KeyCode rightShift = 60;
inline constexpr KeyCode rightOption = 61;
inline constexpr KeyCode rightControl = 62;
inline constexpr KeyCode function = 63;
inline constexpr KeyCode f5 = 96;
inline constexpr KeyCode none = 65535;
}  // namespace keycode

// One keyboard or mouse event as the event monitors deliver it. Texts are
// UTF-8; they are absent for events that carry no characters.
struct Event {
    EventType type = EventType::keyDown;
    KeyCode keyCode = 0;
    ModifierFlags modifierFlags = 0;
    std::optional<std::string> characters;
    std::optional<std::string> charactersIgnoringModifiers;
    bool isARepeat = false;
    CGPoint locationInScreen;  // mouse events: where the pointer was
    double timestamp = 0;      // seconds
};

}  // namespace platform
