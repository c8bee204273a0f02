#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Event.h"
#include "platform/PropertyList.h"
#include "shortcuts/SRCommon.h"
#include "shortcuts/SRShortcutSelfCodable.h"
#include "shortcuts/SRValue.h"

namespace lirixkro {

class SRKeyCodeTransformer;

// One keyboard shortcut: a key code, the modifier keys held with it, and the
// characters the combination gives. Immutable: it is shared, never copied,
// and may be passed between threads.
class SRShortcut {
  public:
    // The persisted twin, a plain value.
    using SelfCodable = SRShortcutSelfCodable;

    // The designated construction. Flags are masked to the four modifiers. A
    // text not given is computed from the key code on the ASCII-capable
    // layout, except for SRKeyCodeNone, where it stays absent.
    SRShortcut(SRKeyCode keyCode, SRModifierFlags modifierFlags,
               std::optional<std::string> characters,
               std::optional<std::string> charactersIgnoringModifiers);
    SRShortcut() = delete;
    SRShortcut(const SRShortcut&) = delete;
    SRShortcut& operator=(const SRShortcut&) = delete;

    static SRShortcutRef shortcutWithCode(
        SRKeyCode keyCode, SRModifierFlags modifierFlags,
        std::optional<std::string> characters = std::nullopt,
        std::optional<std::string> charactersIgnoringModifiers = std::nullopt);
    // Null for an event that is neither a key down, a key up nor a flags
    // change. A flags change is a modifier key: the shortcut has no key code
    // and carries that key's own flag.
    static SRShortcutRef shortcutWithEvent(const platform::Event& event,
                                           bool ignoringCharacters = false);
    // A missing or bad key code gives a shortcut of modifiers alone.
    static SRShortcutRef shortcutWithDictionary(const SRDictionary& dictionary);
    // Reads what menus print: modifier symbols, then a key ("⇧⌘K", "⌃⌥⇧").
    static SRShortcutRef shortcutWithKeyEquivalent(std::string_view keyEquivalent);
    // Reads a key binding text such as "^$k".
    static SRShortcutRef shortcutWithKeyBinding(std::string_view keyBinding);

    SRKeyCode keyCode() const { return keyCode_; }
    SRModifierFlags modifierFlags() const { return modifierFlags_; }
    const std::optional<std::string>& characters() const { return characters_; }
    const std::optional<std::string>& charactersIgnoringModifiers() const {
        return charactersIgnoringModifiers_;
    }

    // The key code and flags in the hot key service's numbering.
    std::uint32_t carbonKeyCode() const;
    std::uint32_t carbonModifierFlags() const;

    SRDictionary dictionaryRepresentation() const;
    // "keyCode" and "modifierFlags" as numbers, the two texts as text;
    // nothing for any other key or an absent text.
    std::optional<SRDictionaryValue> operator[](std::string_view key) const;

    // Equal key code and flags; the texts play no part, so one key recorded
    // on two layouts is one shortcut.
    bool isEqualToShortcut(const SRShortcut& other) const;
    bool isEqualToDictionary(const SRDictionary& dictionary) const;
    // Whether a menu item's key equivalent with its modifier mask means this
    // shortcut.
    bool isEqualToKeyEquivalent(std::string_view keyEquivalent,
                                SRModifierFlags modifierFlags) const;
    bool isEqualToKeyEquivalent(std::string_view keyEquivalent, SRModifierFlags modifierFlags,
                                const SRKeyCodeTransformer& transformer) const;
    // The generic equality: false for nothing and for anything but a
    // shortcut.
    bool isEqual(const SRValue& object) const;
    friend bool operator==(const SRShortcut& a, const SRShortcut& b) {
        return a.isEqualToShortcut(b);
    }

    // The masked flags OR-ed with the key code.
    std::uint64_t hash() const { return modifierFlags_ | keyCode_; }

    // "Command-Option-Control-Shift-" as they apply, then the key.
    std::string readableStringRepresentation(bool isASCII) const;
    // The shortcut as the formatter shows it: "⇧⌘K".
    std::string description() const;

    // The archived form: version, keyCode, modifierFlags and the texts.
    platform::PropertyList encode() const;
    // Null when the archive isn't a dictionary or an entry has the wrong type.
    static SRShortcutRef decode(const platform::PropertyList& archive);

  private:
    SRKeyCode keyCode_;
    SRModifierFlags modifierFlags_;
    std::optional<std::string> characters_;
    std::optional<std::string> charactersIgnoringModifiers_;
};

// Equal shortcuts, or both absent.
inline bool SRShortcutsEqual(const SRShortcutRef& a, const SRShortcutRef& b) {
    if (!a || !b)
        return a == b;
    return *a == *b;
}

}  // namespace lirixkro

template <>
struct std::hash<lirixkro::SRShortcut> {
    std::size_t operator()(const lirixkro::SRShortcut& shortcut) const noexcept {
        return static_cast<std::size_t>(shortcut.hash());
    }
};
