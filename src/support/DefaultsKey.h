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

// What every preference key has: its name in the store, its value and stored
// types, and the conversion between them when they differ.
template <typename Derived, typename Value, typename StoredValue>
class KeyBase : public Withable<Derived> {
    static_assert(PropertyListCodable<StoredValue>, "a stored value must be a property-list type");

  public:
    using ValueType = Value;
    using StoredValueType = StoredValue;
    using TransformType = Transform<Value, StoredValue>;

    // The key name in the store.
    const std::string& key() const { return rawValue; }

    Derived withTransform(TransformType newTransform) const {
        return this->with([&](Derived& copy) { copy.transform = std::move(newTransform); });
    }
    Derived withTransform(typename TransformType::Get get, typename TransformType::Set set) const {
        return withTransform(TransformType(std::move(get), std::move(set)));
    }

    std::string rawValue;
    std::optional<TransformType> transform;

  protected:
    explicit KeyBase(std::string name, std::optional<TransformType> conversion = std::nullopt)
        : rawValue(std::move(name)), transform(std::move(conversion)) {}

    // The key's textual description, as error lines name it:
    // Kind<value type, stored type>(rawValue: "name"), with the types as the
    // compiler spells them.
    std::string describe(const std::string& kind) const {
        return kind + "<" + typeName<Value>() + ", " + typeName<StoredValue>() + ">(rawValue: \"" +
               rawValue + "\")";
    }
};

// The name of a preference with its value type and stored type.
template <typename Value, typename StoredValue = Value>
class Key : public KeyBase<Key<Value, StoredValue>, Value, StoredValue> {
    using Base = KeyBase<Key, Value, StoredValue>;

  public:
    explicit Key(std::string name) : Base(std::move(name)) {}
    // The type argument only fixes StoredValue.
    Key(std::string name, std::type_identity<StoredValue>) : Base(std::move(name)) {}
    // A codable value kept as binary property-list data.
    Key(AutoCodingValueWithKey, std::string name) requires Codable<Value> &&
        std::same_as<StoredValue, platform::PropertyList::Data>
        : Base(std::move(name), autoCodingTransform<Value>()) {}

    std::string description() const { return this->describe("Key"); }
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
class KeyWithDefault : public KeyBase<KeyWithDefault<Value, StoredValue>, Value, StoredValue> {
    using Base = KeyBase<KeyWithDefault, Value, StoredValue>;

  public:
    KeyWithDefault(std::string name, Value fallback)
        : Base(std::move(name)), defaultValue(std::move(fallback)) {}
    KeyWithDefault(std::string name, Value fallback, std::type_identity<StoredValue>)
        : KeyWithDefault(std::move(name), std::move(fallback)) {}
    KeyWithDefault(AutoCodingValueWithKey, std::string name, Value fallback) requires
        Codable<Value> && std::same_as<StoredValue, platform::PropertyList::Data>
        : Base(std::move(name), autoCodingTransform<Value>()), defaultValue(std::move(fallback)) {}

    // A bare name has no default, so this never makes a key. It exists to
    // mirror Key's construction from a raw value.
    static std::optional<KeyWithDefault> fromRawValue(const std::string&) { return std::nullopt; }

    DefaultsReset<Value, StoredValue> reset() const { return {defaultValue, *this}; }

    // The same name and transform without the default: the key that writes
    // go through, so that writing nothing removes the entry.
    Key<Value, StoredValue> withoutDefault() const {
        Key<Value, StoredValue> plain(this->rawValue);
        plain.transform = this->transform;
        return plain;
    }

    std::string description() const { return this->describe("KeyWithDefault"); }

    Value defaultValue;
};

}  // namespace quillbox
