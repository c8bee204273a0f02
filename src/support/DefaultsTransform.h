#pragma once

#include <functional>
#include <optional>
#include <utility>

#include "support/Codable.h"

namespace quillbox {

// The conversion pair between what the code works with and what lies in the
// store. Either closure may be empty (absent) and either may throw.
template <typename Value, typename StoredValue>
struct Transform {
    using Get = std::function<std::optional<Value>(const StoredValue&)>;
    using Set = std::function<std::optional<StoredValue>(const Value&)>;

    Transform(Get getter, Set setter) : get(std::move(getter)), set(std::move(setter)) {}

    Get get;
    Set set;
};

// The coders of keys that keep a codable value as data: binary property
// lists, with no further configuration.
struct DefaultsCoders {
    static inline const PropertyListEncoder defaultEncoder{};
    static inline const PropertyListDecoder defaultDecoder{};
};

// Tag of the constructors that store a codable value as property-list data.
struct AutoCodingValueWithKey {
    explicit AutoCodingValueWithKey() = default;
};
inline constexpr AutoCodingValueWithKey autoCodingValueWithKey{};

template <Codable Value>
Transform<Value, platform::PropertyList::Data> autoCodingTransform() {
    return Transform<Value, platform::PropertyList::Data>(
        [](const platform::PropertyList::Data& data) -> std::optional<Value> {
            return DefaultsCoders::defaultDecoder.decode<Value>(data);
        },
        [](const Value& value) -> std::optional<platform::PropertyList::Data> {
            return DefaultsCoders::defaultEncoder.encode(value);
        });
}

}  // namespace quillbox
