#pragma once

#include <exception>
#include <string>

namespace quillbox {

// The text of a caught error: what() for a standard exception, a fixed text
// for anything else thrown.
std::string errorText(const std::exception_ptr& error);

}  // namespace quillbox
