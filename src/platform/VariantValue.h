#pragma once

#include <utility>
#include <variant>

namespace platform {

// The part of a dynamically typed platform value that asks which kind it
// holds and hands that out; the value type itself says which kinds there are
// and how its constructors map onto them.
template <typename Kinds>
class VariantValue {
  public:
    using Value = Kinds;

    const Value& value() const { return value_; }
    template <typename T>
    bool is() const {
        return std::holds_alternative<T>(value_);
    }
    template <typename T>
    const T* get() const {
        return std::get_if<T>(&value_);
    }

  protected:
    template <typename Held>
    explicit VariantValue(Held&& held) : value_(std::forward<Held>(held)) {}

  private:
    Value value_;
};

}  // namespace platform
