#pragma once

#include <concepts>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <variant>

#include "shortcuts/SRCommon.h"

namespace lirixkro {

class SRShortcut;
using SRShortcutRef = std::shared_ptr<const SRShortcut>;

// A boxed number, as the platform's dictionaries and transformers pass
// numbers: any integer goes in, and it is read back at the width asked for.
struct SRNumber {
    std::uint64_t value = 0;

    constexpr SRNumber() = default;
    template <std::integral T>
    constexpr SRNumber(T number) : value(static_cast<std::uint64_t>(number)) {}

    constexpr SRKeyCode unsignedShortValue() const { return static_cast<SRKeyCode>(value); }
    constexpr std::uint64_t unsignedLongValue() const { return value; }
    friend bool operator==(const SRNumber&, const SRNumber&) = default;
};

// The platform's null object, which a dictionary holds where a value is
// deliberately absent.
struct SRNull {
    friend bool operator==(const SRNull&, const SRNull&) = default;
};

// A value of a shortcut dictionary.
using SRDictionaryValue = std::variant<SRNull, SRNumber, std::string>;
using SRDictionary = std::map<std::string, SRDictionaryValue>;

// One value handed to a transformer: nothing, a number, a text, a shortcut or
// a dictionary. Transformers look at what they were given and answer
// nothing (std::nullopt or null) for what they can't use.
using SRValue = std::variant<std::monostate, SRNumber, std::string, SRShortcutRef, SRDictionary>;

// The number in a value or a dictionary entry, if that is what it holds.
inline std::optional<SRNumber> SRNumberIn(const SRValue& value) {
    if (const auto* number = std::get_if<SRNumber>(&value))
        return *number;
    return std::nullopt;
}
inline std::optional<SRNumber> SRNumberIn(const SRDictionaryValue& value) {
    if (const auto* number = std::get_if<SRNumber>(&value))
        return *number;
    return std::nullopt;
}

// The entry of a dictionary; null when the key is missing.
inline const SRDictionaryValue* SREntry(const SRDictionary& dictionary, const std::string& key) {
    auto found = dictionary.find(key);
    return found == dictionary.end() ? nullptr : &found->second;
}

// The number in a dictionary entry; nothing when the key is missing or holds
// something else.
inline std::optional<SRNumber> SRNumberEntry(const SRDictionary& dictionary,
                                             const std::string& key) {
    const auto* entry = SREntry(dictionary, key);
    return entry ? SRNumberIn(*entry) : std::nullopt;
}

}  // namespace lirixkro
