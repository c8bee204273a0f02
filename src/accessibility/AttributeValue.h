#pragma once

#include <concepts>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "accessibility/AXError.h"
#include "platform/CFValue.h"
#include "platform/Geometry.h"

namespace corvane {

class UIElement;

// The dynamically typed value of an attribute: an element, one of the boxed
// geometry values or an embedded error code unpacked, or any other platform
// object as it came.
using AttributeValue =
    std::variant<std::shared_ptr<UIElement>, platform::CGPoint, platform::CGSize, platform::CGRect,
                 platform::CFRange, AXError, platform::CFValue>;

// The platform's form of a value, as written to an attribute: elements as
// their handle, geometry boxed, an error code boxed, platform objects as
// they are.
platform::CFValue packAXValue(const AttributeValue& value);

// The ordinary textual form of a value, for diagnostics.
std::string describe(const AttributeValue& value);
std::string describe(const platform::CFValue& value);

namespace detail {

template <typename T>
std::optional<T> castInteger(const platform::CFValue& object) {
    const auto* number = object.get<std::int64_t>();
    if (!number || !std::in_range<T>(*number))
        return std::nullopt;
    return static_cast<T>(*number);
}

template <typename T>
std::optional<T> castObject(const platform::CFValue& object) {
    if constexpr (std::is_same_v<T, bool>) {
        if (const auto* flag = object.get<bool>())
            return *flag;
        return std::nullopt;
    } else if constexpr (std::is_integral_v<T>) {
        return castInteger<T>(object);
    } else if constexpr (std::is_floating_point_v<T>) {
        if (const auto* real = object.get<double>())
            return static_cast<T>(*real);
        if (const auto* number = object.get<std::int64_t>())
            return static_cast<T>(*number);
        return std::nullopt;
    } else if constexpr (std::is_same_v<T, std::string>) {
        if (const auto* text = object.get<std::string>())
            return *text;
        return std::nullopt;
    } else if constexpr (std::is_same_v<T, platform::CFValue::Array> ||
                         std::is_same_v<T, platform::CFValue::Dictionary> ||
                         std::is_same_v<T, platform::CFURL> ||
                         std::is_same_v<T, platform::AXUIElementRef>) {
        if (const auto* found = object.get<T>())
            return *found;
        return std::nullopt;
    } else {
        static_assert(!sizeof(T), "no conversion from a platform object to this type");
    }
}

}  // namespace detail

// Converts a value to the type a typed read asks for; nothing when the value
// is of another type. Texts, numbers, Booleans and lists convert from the
// platform object that holds them; a platform object can be asked for as it
// is, and then any value converts, packed as the platform would hold it.
template <typename T>
std::optional<T> attributeCast(const AttributeValue& value) {
    if constexpr (std::is_same_v<T, AttributeValue>) {
        return value;
    } else if constexpr (std::is_same_v<T, platform::CFValue>) {
        return packAXValue(value);
    } else if constexpr (std::is_same_v<T, std::shared_ptr<UIElement>> ||
                         std::is_same_v<T, platform::CGPoint> ||
                         std::is_same_v<T, platform::CGSize> ||
                         std::is_same_v<T, platform::CGRect> ||
                         std::is_same_v<T, platform::CFRange> || std::is_same_v<T, AXError>) {
        if (const auto* found = std::get_if<T>(&value))
            return *found;
        return std::nullopt;
    } else {
        const auto* object = std::get_if<platform::CFValue>(&value);
        if (!object)
            return std::nullopt;
        return detail::castObject<T>(*object);
    }
}

}  // namespace corvane
