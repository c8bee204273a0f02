#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace quillbox {

// Characters of UTF-8 text, one Unicode scalar each. A byte that belongs to
// no well-formed sequence counts as a character of its own, so any bytes can
// be walked and counted.

// The length in bytes of the character that starts at `at`.
std::size_t characterLength(std::string_view text, std::size_t at);
std::size_t characterCount(std::string_view text);
// The text cut into its characters, in order.
std::vector<std::string_view> charactersOf(std::string_view text);

}  // namespace quillbox
