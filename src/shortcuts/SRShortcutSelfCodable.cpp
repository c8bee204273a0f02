#include "shortcuts/SRShortcutSelfCodable.h"

#include <limits>

#include "shortcuts/SRShortcut.h"

namespace lirixkro {

namespace {

// Feeds values into one hash in order, so that the order of the fields
// counts.
class OrderedHasher {
  public:
    template <typename T>
    void combine(const T& value) {
        state_ ^= std::hash<T>{}(value) + 0x9E3779B97F4A7C15ULL + (state_ << 6) + (state_ >> 2);
    }
    void combineOptional(const std::optional<std::string>& text) {
        if (text) {
            combine(1);
            combine(*text);
        } else {
            combine(0);
        }
    }
    std::size_t value() const { return state_; }

  private:
    std::size_t state_ = 0;
};

}  // namespace

SRShortcutSelfCodable SRShortcutSelfCodable::fromShortcut(const SRShortcut& shortcut) {
    return {shortcut.keyCode(), shortcut.modifierFlags(), shortcut.characters(),
            shortcut.charactersIgnoringModifiers()};
}

std::shared_ptr<const SRShortcut> SRShortcutSelfCodable::toShortcut() const {
    return SRShortcut::shortcutWithCode(keyCode, modifierFlags, characters,
                                        charactersIgnoringModifiers);
}

std::size_t SRShortcutSelfCodable::hashValue() const {
    OrderedHasher hasher;
    hasher.combine(keyCode);
    hasher.combine(modifierFlags);
    hasher.combineOptional(characters);
    hasher.combineOptional(charactersIgnoringModifiers);
    return hasher.value();
}

}  // namespace lirixkro

namespace quillbox {

using lirixkro::SRShortcutSelfCodable;
using platform::PropertyList;

namespace {

const PropertyList& requiredEntry(const PropertyList::Dictionary& dictionary,
                                  const std::string& key) {
    auto found = dictionary.find(key);
    if (found == dictionary.end()) {
        throw DecodingError("The stored shortcut has no \"" + key + "\" entry.");
    }
    return found->second;
}

std::uint64_t requiredUnsigned(const PropertyList::Dictionary& dictionary, const std::string& key,
                               std::uint64_t largest) {
    const auto value = requiredEntry(dictionary, key).unsignedInteger();
    if (!value || *value > largest) {
        throw DecodingError("The stored shortcut's \"" + key +
                            "\" entry is not an unsigned integer of its size.");
    }
    return *value;
}

std::optional<std::string> optionalText(const PropertyList::Dictionary& dictionary,
                                        const std::string& key) {
    auto found = dictionary.find(key);
    if (found == dictionary.end())
        return std::nullopt;
    const auto* text = found->second.string();
    if (!text)
        throw DecodingError("The stored shortcut's \"" + key + "\" entry is not a text.");
    return *text;
}

}  // namespace

PropertyList Coding<SRShortcutSelfCodable>::encode(const SRShortcutSelfCodable& value) {
    PropertyList::Dictionary dictionary;
    dictionary["keyCode"] = std::uint64_t{value.keyCode};
    dictionary["modifierFlags"] = std::uint64_t{value.modifierFlags};
    if (value.characters)
        dictionary["characters"] = *value.characters;
    if (value.charactersIgnoringModifiers) {
        dictionary["charactersIgnoringModifiers"] = *value.charactersIgnoringModifiers;
    }
    return dictionary;
}

SRShortcutSelfCodable Coding<SRShortcutSelfCodable>::decode(const PropertyList& list) {
    const auto* dictionary = list.dictionary();
    if (!dictionary)
        throw DecodingError("The stored shortcut is not a dictionary.");
    SRShortcutSelfCodable value;
    value.keyCode = static_cast<lirixkro::SRKeyCode>(
        requiredUnsigned(*dictionary, "keyCode", lirixkro::SRKeyCodeNone));
    value.modifierFlags =
        requiredUnsigned(*dictionary, "modifierFlags", std::numeric_limits<std::uint64_t>::max());
    value.characters = optionalText(*dictionary, "characters");
    value.charactersIgnoringModifiers = optionalText(*dictionary, "charactersIgnoringModifiers");
    return value;
}

}  // namespace quillbox
