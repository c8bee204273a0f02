#pragma once

#include <optional>
#include <string>
#include <type_traits>
#include <utility>

#include "support/DefaultsTransform.h"
#include "support/PropertyListConversion.h"
#include "support/TypeName.h"
#include "support/Withable.h"

namespace quillbox {

// The name of a preference with its value type and stored type, and the
// conversion between them when they differ.
template <typename Value, typename StoredValue = Value>
class Key : public Withable<Key<Value, StoredValue>> {
    static_assert(PropertyListCodable<StoredValue>, "a stored value must be a property-list type");

  public:
    using ValueType = Value;
    using StoredValueType = StoredValue;
    using TransformType = Transform<Value, StoredValue>;

    explicit Key(std::string name) : rawValue(std::move(name)) {}
    // The type argument only fixes StoredValue.
    Key(std::string name, std::type_identity<StoredValue>) : rawValue(std::move(name)) {}
    // A codable value kept as binary property-list data.
    Key(AutoCodingValueWithKey, std::string name) requires Codable<Value> &&
        std::same_as<StoredValue, platform::PropertyList::Data>
        : rawValue(std::move(name)), transform(autoCodingTransform<Value>()) {}

    // The key name in the store.
    const std::string& key() const { return rawValue; }

    Key withTransform(TransformType newTransform) const {
        Key copy = *this;
        copy.transform = std::move(newTransform);
        return copy;
    }
    Key withTransform(typename TransformType::Get get, typename TransformType::Set set) const {
        return withTransform(TransformType(std::move(get), std::move(set)));
    }

    // The key's textual description, as error lines name it:
    // Key<value type, stored type>(rawValue: "name"), with the types as the
    // compiler spells them.
    std::string description() const {
        return "Key<" + typeName<Value>() + ", " + typeName<StoredValue>() + ">(rawValue: \"" +
               rawValue + "\")";
    }

    std::string rawValue;
    std::optional<TransformType> transform;
};

template <typename Value, typename StoredValue>
class KeyWithDefault;

// What reset(key:) writes: a copy of the key's default, and the key.
template <typename Value, typename StoredValue>
struct DefaultsReset {
    Value resetValue;
    KeyWithDefault<Value, StoredValue> key;
};

// A preference that reads as its default when the store has nothing usable.
template <typename Value, typename StoredValue = Value>
class KeyWithDefault : public Withable<KeyWithDefault<Value, StoredValue>> {
    static_assert(PropertyListCodable<StoredValue>, "a stored value must be a property-list type");

  public:
    using ValueType = Value;
    using StoredValueType = StoredValue;
    using TransformType = Transform<Value, StoredValue>;

    KeyWithDefault(std::string name, Value fallback)
        : rawValue(std::move(name)), defaultValue(std::move(fallback)) {}
    KeyWithDefault(std::string name, Value fallback, std::type_identity<StoredValue>)
        : KeyWithDefault(std::move(name), std::move(fallback)) {}
    KeyWithDefault(AutoCodingValueWithKey, std::string name, Value fallback) requires
        Codable<Value> && std::same_as<StoredValue, platform::PropertyList::Data>
        : rawValue(std::move(name)),
          defaultValue(std::move(fallback)),
          transform(autoCodingTransform<Value>()) {}

    // A bare name has no default, so this never makes a key. It exists to
    // mirror Key's construction from a raw value.
    static std::optional<KeyWithDefault> fromRawValue(const std::string&) { return std::nullopt; }

    const std::string& key() const { return rawValue; }

    KeyWithDefault withTransform(TransformType newTransform) const {
        KeyWithDefault copy = *this;
        copy.transform = std::move(newTransform);
        return copy;
    }
    KeyWithDefault withTransform(typename TransformType::Get get,
                                 typename TransformType::Set set) const {
        return withTransform(TransformType(std::move(get), std::move(set)));
    }

    DefaultsReset<Value, StoredValue> reset() const { return {defaultValue, *this}; }

    // The same name and transform without the default: the key that writes
    // go through, so that writing nothing removes the entry.
    Key<Value, StoredValue> withoutDefault() const {
        Key<Value, StoredValue> plain(rawValue);
        plain.transform = transform;
        return plain;
    }

    // KeyWithDefault<value type, stored type>(rawValue: "name")
    std::string description() const {
        return "KeyWithDefault<" + typeName<Value>() + ", " + typeName<StoredValue>() +
               ">(rawValue: \"" + rawValue + "\")";
    }

    std::string rawValue;
    Value defaultValue;
    std::optional<TransformType> transform;
};

}  // namespace quillbox
