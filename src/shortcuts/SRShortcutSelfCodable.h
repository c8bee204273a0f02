#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "shortcuts/SRCommon.h"
#include "support/Codable.h"

namespace lirixkro {

class SRShortcut;

// The persisted twin of a shortcut (SRShortcut::SelfCodable): a plain value
// that is stored as a dictionary with "keyCode" and "modifierFlags" as
// unsigned integers and the two texts only when present.
struct SRShortcutSelfCodable {
    SRKeyCode keyCode = 0;
    SRModifierFlags modifierFlags = 0;
    std::optional<std::string> characters;
    std::optional<std::string> charactersIgnoringModifiers;

    static SRShortcutSelfCodable fromShortcut(const SRShortcut& shortcut);
    std::shared_ptr<const SRShortcut> toShortcut() const;

    // All four fields, where an absent text equals only an absent text: an
    // empty text is not the same as none.
    friend bool operator==(const SRShortcutSelfCodable&, const SRShortcutSelfCodable&) = default;

    // Key code, flags, then each text as 1 and the text, or 0 when absent.
    std::size_t hashValue() const;
};

}  // namespace lirixkro

template <>
struct std::hash<lirixkro::SRShortcutSelfCodable> {
    std::size_t operator()(const lirixkro::SRShortcutSelfCodable& value) const noexcept {
        return value.hashValue();
    }
};

template <>
struct quillbox::Coding<lirixkro::SRShortcutSelfCodable> {
    static platform::PropertyList encode(const lirixkro::SRShortcutSelfCodable& value);
    // Requires "keyCode" and "modifierFlags" as unsigned integers; the texts
    // are optional; other keys are ignored. Throws DecodingError.
    static lirixkro::SRShortcutSelfCodable decode(const platform::PropertyList& list);
};
