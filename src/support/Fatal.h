#pragma once

#include <string_view>

namespace quillbox {

// A deliberate stop with a fixed text: prints the text to standard error and
// aborts. For states the program must never reach.
[[noreturn]] void fatalError(std::string_view message);

}  // namespace quillbox
