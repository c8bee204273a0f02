#pragma once

#include <optional>
#include <string>
#include <vector>

#include "shortcuts/SRCommon.h"

namespace lirixkro::detail {

// The keys the reverse translation knows, in the order that decides which
// key wins when two give the same text.
const std::vector<SRKeyCode>& SRKnownKeyCodes();

// 1 to 20 for the function keys F1 to F20; nothing for other keys.
std::optional<int> SRFunctionKeyNumber(SRKeyCode keyCode);
SRKeyCode SRKeyCodeForFunctionKey(int number);  // number is 1 to 20

// The literal text of the keys that don't depend on the layout, apart from
// Tab, Space and the two delete keys, whose text depends on more than the
// key code.
std::optional<std::string> SRFixedLiteral(SRKeyCode keyCode);
// The symbolic character of the keys that don't depend on the layout,
// function keys included.
std::optional<char32_t> SRFixedSymbol(SRKeyCode keyCode);

// The single characters that the ASCII reverse transformations read
// themselves instead of asking the layout.
std::optional<SRKeyCode> SRKeyCodeForLiteralCharacter(char32_t character);
std::optional<SRKeyCode> SRKeyCodeForSymbolCharacter(char32_t character);

// Keys that sit on the numeric keypad, and the keypad twin of a number-row
// or punctuation key that has one.
bool SRIsKeypadKeyCode(SRKeyCode keyCode);
std::optional<SRKeyCode> SRKeypadKeyCodeFor(SRKeyCode keyCode);

}  // namespace lirixkro::detail
