#pragma once

#include <exception>

namespace quillbox {

// Raised to code that works on behalf of something that was cancelled: a
// yield into a stream that has ended, an await in a cancelled task.
class CancellationError : public std::exception {
  public:
    const char* what() const noexcept override { return "CancellationError"; }
};

}  // namespace quillbox
