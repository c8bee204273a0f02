#pragma once

#include <string>
#include <string_view>

namespace tarnwick {

// The canonical composition (NFC) of UTF-8 text. Bytes that aren't UTF-8
// become U+FFFD rather than failing.
std::string canonicallyComposed(std::string_view text);

}  // namespace tarnwick
