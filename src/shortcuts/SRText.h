#pragma once

#include <string>
#include <string_view>

namespace lirixkro::detail {

// Texts are UTF-8 throughout; a character here is one Unicode code point.
// Bytes that aren't UTF-8 read as U+FFFD, so no input can stop a walk.
std::u32string SRCharacters(std::string_view text);
std::string SRUTF8(std::u32string_view characters);
std::string SRUTF8(char32_t character);

std::string SRLowercased(std::string_view text);
std::string SRUppercased(std::string_view text);

}  // namespace lirixkro::detail
