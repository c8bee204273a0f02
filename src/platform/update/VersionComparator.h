#pragma once

#include <compare>
#include <string_view>

namespace platform::update {

// Orders release versions as feeds write them. A version splits into parts
// where the kind of character changes: runs of digits compare as numbers,
// runs of other characters as text, and each full stop separates. So
// 1.0 < 1.0.1 < 1.1 and 1.0b1 < 1.0b2 < 1.0b10 < 1.0: text after a number
// marks a version before the release it names.
std::strong_ordering compareVersions(std::string_view a, std::string_view b);

inline bool isNewerVersion(std::string_view candidate, std::string_view current) {
    return compareVersions(candidate, current) == std::strong_ordering::greater;
}

}  // namespace platform::update
