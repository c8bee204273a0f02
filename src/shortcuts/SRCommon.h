#pragma once

#include <cstdint>

#include "platform/Application.h"
#include "platform/Event.h"

namespace lirixkro {

// A hardware key code; SRKeyCodeNone stands for a shortcut of modifier keys
// alone.
using SRKeyCode = platform::KeyCode;
inline constexpr SRKeyCode SRKeyCodeNone = 0xFFFF;

using SRModifierFlags = platform::ModifierFlags;
// The four modifiers a shortcut keeps: Shift, Control, Option and Command.
inline constexpr SRModifierFlags SRCocoaModifierFlagsMask = 0x1E0000;
inline constexpr SRModifierFlags SRShiftFlag = platform::modifier::shift;
inline constexpr SRModifierFlags SRControlFlag = platform::modifier::control;
inline constexpr SRModifierFlags SROptionFlag = platform::modifier::option;
inline constexpr SRModifierFlags SRCommandFlag = platform::modifier::command;

// Left to right is 0, right to left is 1, as the platform numbers them.
using SRLayoutDirection = platform::UserInterfaceLayoutDirection;

// The application's layout direction; left to right where there is no
// application object.
SRLayoutDirection SRApplicationLayoutDirection();

}  // namespace lirixkro
