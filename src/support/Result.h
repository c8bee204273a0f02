#pragma once

#include <exception>
#include <type_traits>
#include <utility>
#include <variant>

namespace quillbox {

// Raises a failure value as an exception: an exception pointer is rethrown as
// the error it holds, any other value is thrown as it is, so that callers
// catch the failure by its own type.
template <typename Failure>
[[noreturn]] void raise(const Failure& failure) {
    if constexpr (std::is_same_v<Failure, std::exception_ptr>)
        std::rethrow_exception(failure);
    else
        throw failure;
}

// The outcome of an operation: a value of Value (nothing when Value is void)
// or a failure of Failure. Value and Failure may be the same type.
template <typename Value, typename Failure>
class Result {
  public:
    using Stored = std::conditional_t<std::is_void_v<Value>, std::monostate, Value>;

    static Result success(Stored value = Stored()) {
        return Result(std::in_place_index<0>, std::move(value));
    }
    static Result failure(Failure error) {
        return Result(std::in_place_index<1>, std::move(error));
    }

    bool isSuccess() const { return outcome_.index() == 0; }
    const Stored& value() const { return std::get<0>(outcome_); }
    const Failure& error() const { return std::get<1>(outcome_); }

    // The value, or the failure raised (see raise()).
    Value get() && {
        if (!isSuccess())
            raise(std::get<1>(outcome_));
        if constexpr (!std::is_void_v<Value>)
            return std::move(std::get<0>(outcome_));
    }

  private:
    template <std::size_t index, typename Payload>
    Result(std::in_place_index_t<index> tag, Payload&& payload)
        : outcome_(tag, std::forward<Payload>(payload)) {}

    std::variant<Stored, Failure> outcome_;
};

}  // namespace quillbox
