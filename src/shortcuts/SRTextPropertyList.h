#pragma once

#include <optional>
#include <string_view>

#include "platform/PropertyList.h"

namespace lirixkro {

// Reads the old text form of property lists, in which key binding files are
// often written:
//
//   { "^f" = "moveForward:"; "~d" = ("deleteWordForward:", "yank:"); }
//
// Dictionaries, arrays, quoted and bare strings, <hex> data, and both kinds
// of comment. Strings decode the backslash escapes, \U with up to four hex
// digits and octal ones among them. Nothing for text that isn't one whole
// value, or that nests deeper than any real file does.
std::optional<platform::PropertyList> SRReadTextPropertyList(std::string_view text);

// Any of the three forms: binary, XML or text.
std::optional<platform::PropertyList> SRReadPropertyList(std::string_view bytes);

}  // namespace lirixkro
