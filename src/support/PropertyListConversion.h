#pragma once

#include <cmath>
#include <concepts>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "platform/PropertyList.h"

namespace quillbox {

// How a value type sits in the preferences store as a property list:
//   static std::optional<PropertyList> toPropertyList(const T&);  // nothing: no entry
//   static std::optional<T> fromPropertyList(const PropertyList&); // nothing: doesn't convert
// A stored object of another type, or an integer outside the type's range,
// doesn't convert; the caller treats it as absent.
template <typename T>
struct PropertyListConversion;

template <typename T>
concept PropertyListCodable = requires(const T& value, const platform::PropertyList& list) {
    {
        PropertyListConversion<T>::toPropertyList(value)
        } -> std::same_as<std::optional<platform::PropertyList>>;
    { PropertyListConversion<T>::fromPropertyList(list) } -> std::same_as<std::optional<T>>;
};

template <PropertyListCodable T>
std::optional<platform::PropertyList> toPropertyList(const T& value) {
    return PropertyListConversion<T>::toPropertyList(value);
}

template <PropertyListCodable T>
std::optional<T> fromPropertyList(const platform::PropertyList& list) {
    return PropertyListConversion<T>::fromPropertyList(list);
}

namespace detail {

// Values that a property list holds as they are.
template <typename T>
struct DirectPropertyListConversion {
    static std::optional<platform::PropertyList> toPropertyList(const T& value) {
        return platform::PropertyList(value);
    }
    static std::optional<T> fromPropertyList(const platform::PropertyList& list) {
        if (auto value = list.get<T>())
            return *value;
        return std::nullopt;
    }
};

template <typename T>
concept CharacterType = std::same_as<T, char> || std::same_as<T, wchar_t> ||
    std::same_as<T, char8_t> || std::same_as<T, char16_t> || std::same_as<T, char32_t>;

template <typename T>
concept StoredInteger = std::integral<T> && !std::same_as<T, bool> && !CharacterType<T>;

}  // namespace detail

template <>
struct PropertyListConversion<std::string> : detail::DirectPropertyListConversion<std::string> {};

// A vector of bytes is data, not an array of small integers.
template <>
struct PropertyListConversion<platform::PropertyList::Data>
    : detail::DirectPropertyListConversion<platform::PropertyList::Data> {};

template <>
struct PropertyListConversion<bool> : detail::DirectPropertyListConversion<bool> {};

template <>
struct PropertyListConversion<platform::PropertyList::Date>
    : detail::DirectPropertyListConversion<platform::PropertyList::Date> {};

// Every integer width, signed and unsigned. Integers are stored with their
// signedness; reading accepts either as long as the value fits the type.
template <detail::StoredInteger T>
struct PropertyListConversion<T> {
    static std::optional<platform::PropertyList> toPropertyList(const T& value) {
        if constexpr (std::is_signed_v<T>) {
            return platform::PropertyList(static_cast<std::int64_t>(value));
        } else {
            return platform::PropertyList(static_cast<std::uint64_t>(value));
        }
    }
    static std::optional<T> fromPropertyList(const platform::PropertyList& list) {
        if constexpr (std::is_signed_v<T>) {
            auto value = list.signedInteger();
            if (!value || *value < std::numeric_limits<T>::min() ||
                *value > std::numeric_limits<T>::max()) {
                return std::nullopt;
            }
            return static_cast<T>(*value);
        } else {
            auto value = list.unsignedInteger();
            if (!value || *value > std::numeric_limits<T>::max())
                return std::nullopt;
            return static_cast<T>(*value);
        }
    }
};

// Reals read any stored number, as the platform's numbers convert.
template <>
struct PropertyListConversion<double> {
    static std::optional<platform::PropertyList> toPropertyList(const double& value) {
        return platform::PropertyList(value);
    }
    static std::optional<double> fromPropertyList(const platform::PropertyList& list) {
        return list.number();
    }
};

template <>
struct PropertyListConversion<float> {
    static std::optional<platform::PropertyList> toPropertyList(const float& value) {
        return platform::PropertyList(static_cast<double>(value));
    }
    static std::optional<float> fromPropertyList(const platform::PropertyList& list) {
        auto value = list.number();
        if (!value)
            return std::nullopt;
        if (std::isfinite(*value) && std::fabs(*value) > std::numeric_limits<float>::max()) {
            return std::nullopt;
        }
        return static_cast<float>(*value);
    }
};

// An absent optional has no property-list form: writing it leaves no entry,
// and inside an array or dictionary it is left out.
template <PropertyListCodable T>
struct PropertyListConversion<std::optional<T>> {
    static std::optional<platform::PropertyList> toPropertyList(const std::optional<T>& value) {
        if (!value)
            return std::nullopt;
        return PropertyListConversion<T>::toPropertyList(*value);
    }
    static std::optional<std::optional<T>> fromPropertyList(const platform::PropertyList& list) {
        auto value = PropertyListConversion<T>::fromPropertyList(list);
        if (!value)
            return std::nullopt;
        return std::optional<T>(std::move(*value));
    }
};

// Arrays and dictionaries convert only when every element does.
template <PropertyListCodable T>
struct PropertyListConversion<std::vector<T>> {
    static std::optional<platform::PropertyList> toPropertyList(const std::vector<T>& values) {
        platform::PropertyList::Array array;
        array.reserve(values.size());
        for (const auto& value : values) {
            if (auto item = PropertyListConversion<T>::toPropertyList(value)) {
                array.push_back(std::move(*item));
            }
        }
        return platform::PropertyList(std::move(array));
    }
    static std::optional<std::vector<T>> fromPropertyList(const platform::PropertyList& list) {
        auto array = list.array();
        if (!array)
            return std::nullopt;
        std::vector<T> values;
        values.reserve(array->size());
        for (const auto& item : *array) {
            auto value = PropertyListConversion<T>::fromPropertyList(item);
            if (!value)
                return std::nullopt;
            values.push_back(std::move(*value));
        }
        return values;
    }
};

template <PropertyListCodable T>
struct PropertyListConversion<std::map<std::string, T>> {
    static std::optional<platform::PropertyList> toPropertyList(
        const std::map<std::string, T>& values) {
        platform::PropertyList::Dictionary dictionary;
        for (const auto& [key, value] : values) {
            if (auto item = PropertyListConversion<T>::toPropertyList(value)) {
                dictionary.emplace(key, std::move(*item));
            }
        }
        return platform::PropertyList(std::move(dictionary));
    }
    static std::optional<std::map<std::string, T>> fromPropertyList(
        const platform::PropertyList& list) {
        auto dictionary = list.dictionary();
        if (!dictionary)
            return std::nullopt;
        std::map<std::string, T> values;
        for (const auto& [key, item] : *dictionary) {
            auto value = PropertyListConversion<T>::fromPropertyList(item);
            if (!value)
                return std::nullopt;
            values.emplace(key, std::move(*value));
        }
        return values;
    }
};

}  // namespace quillbox
