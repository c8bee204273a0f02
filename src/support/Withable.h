#pragma once

#include <utility>

namespace quillbox {

// Configure-a-copy: value.with([](auto& copy) { copy.field = ...; }) returns
// a changed copy and leaves the value as it was. An exception from the body
// passes on.
template <typename Derived>
class Withable {
  public:
    template <typename Body>
    Derived with(Body&& body) const {
        Derived copy = static_cast<const Derived&>(*this);
        std::forward<Body>(body)(copy);
        return copy;
    }
};

}  // namespace quillbox
