#pragma once

#include <stdexcept>
#include <string>

namespace lirixkro {

// The platform's named exceptions, raised for programming faults: a caller
// passing what an operation can't take, or state that must not occur.
class SRInvalidArgumentException : public std::invalid_argument {
  public:
    using std::invalid_argument::invalid_argument;
};

class SRInternalInconsistencyException : public std::logic_error {
  public:
    using std::logic_error::logic_error;
};

// A broken assertion of the library's own bookkeeping, raised with its text.
inline void SRAssert(bool condition, const std::string& text) {
    if (!condition)
        throw SRInternalInconsistencyException(text);
}

}  // namespace lirixkro
