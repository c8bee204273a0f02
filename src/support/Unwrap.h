#pragma once

#include <any>
#include <concepts>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>

#include "support/Fatal.h"
#include "support/OptionalError.h"
#include "support/SourceLocation.h"

namespace quillbox {

namespace detail {

template <typename T>
struct IsOptional : std::false_type {};
template <typename T>
struct IsOptional<std::optional<T>> : std::true_type {};

template <typename T>
struct IsSharedPointer : std::false_type {};
template <typename T>
struct IsSharedPointer<std::shared_ptr<T>> : std::true_type {};

template <typename T>
struct IsVariant : std::false_type {};
template <typename... Ts>
struct IsVariant<std::variant<Ts...>> : std::true_type {};

// A dynamic cast in the value's own terms: down a class hierarchy for shared
// pointers, out of a std::any, or to one alternative of a variant. Nothing
// when the value isn't of the target type.
template <typename Target, typename Source>
std::optional<Target> castTo(Source&& value) {
    using S = std::remove_cvref_t<Source>;
    if constexpr (std::is_same_v<S, Target>) {
        return std::forward<Source>(value);
    } else if constexpr (IsSharedPointer<S>::value && IsSharedPointer<Target>::value) {
        auto cast = std::dynamic_pointer_cast<typename Target::element_type>(value);
        return cast ? std::optional<Target>(std::move(cast)) : std::nullopt;
    } else if constexpr (std::is_same_v<S, std::any>) {
        auto cast = std::any_cast<Target>(&value);
        return cast ? std::optional<Target>(*cast) : std::nullopt;
    } else if constexpr (IsVariant<S>::value) {
        auto cast = std::get_if<Target>(&value);
        return cast ? std::optional<Target>(*cast) : std::nullopt;
    } else {
        static_assert(sizeof(Target) == 0, "no dynamic cast between these types");
    }
}

[[noreturn]] void unwrapFailed(std::string_view message, const SourceLocation& location);

}  // namespace detail

template <typename T>
concept OptionalValue = detail::IsOptional<std::remove_cvref_t<T>>::value;

template <OptionalValue Optional>
using Unwrapped = typename std::remove_cvref_t<Optional>::value_type;

// The value, or OptionalError.nilValue naming the wrapped type, the message
// and the caller's position. Never logs.
template <OptionalValue Optional>
Unwrapped<Optional> unwrap(Optional&& value, std::optional<std::string> message = std::nullopt,
                           SourceLocation location = SourceLocation::current()) {
    if (!value)
        throw OptionalError::nilValue<Unwrapped<Optional>>(std::move(message), location);
    return *std::forward<Optional>(value);
}

// The value, or the given error thrown as it is.
template <OptionalValue Optional, typename Error>
Unwrapped<Optional> unwrapOrThrow(Optional&& value, Error&& error) {
    if (!value)
        throw std::forward<Error>(error);
    return *std::forward<Optional>(value);
}

// The same, for an error of a known exception type.
template <OptionalValue Optional, std::derived_from<std::exception> Error>
Unwrapped<Optional> unwrapOrError(Optional&& value, Error error) {
    return unwrapOrThrow(std::forward<Optional>(value), std::move(error));
}

// The value; an empty optional stops the process with
// "<file>:<line> - <message>".
template <OptionalValue Optional>
Unwrapped<Optional> unwrapOrFatalError(Optional&& value, std::string_view message = "",
                                       SourceLocation location = SourceLocation::current()) {
    if (!value)
        detail::unwrapFailed(message, location);
    return *std::forward<Optional>(value);
}

// Unwraps, then casts to Target; a failed cast is OptionalError.nilValue of
// the target type.
template <typename Target, OptionalValue Optional>
Target unwrapCast(Optional&& value, std::optional<std::string> message = std::nullopt,
                  SourceLocation location = SourceLocation::current()) {
    auto cast = detail::castTo<Target>(unwrap(std::forward<Optional>(value), message, location));
    if (!cast)
        throw OptionalError::nilValue<Target>(std::move(message), location);
    return std::move(*cast);
}

template <typename Target, OptionalValue Optional>
Target unwrapCastOrFatalError(Optional&& value, std::string_view message = "",
                              SourceLocation location = SourceLocation::current()) {
    if (!value)
        detail::unwrapFailed(message, location);
    auto cast = detail::castTo<Target>(*std::forward<Optional>(value));
    if (!cast)
        detail::unwrapFailed(message, location);
    return std::move(*cast);
}

}  // namespace quillbox
