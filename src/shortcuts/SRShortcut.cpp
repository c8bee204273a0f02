#include "shortcuts/SRShortcut.h"

#include "platform/HotKeys.h"
#include "shortcuts/SRASCIILiteralKeyCodeTransformer.h"
#include "shortcuts/SRASCIISymbolicKeyCodeTransformer.h"
#include "shortcuts/SRKeyBindingTransformer.h"
#include "shortcuts/SRKeyCodeTables.h"
#include "shortcuts/SRKeyEventType.h"
#include "shortcuts/SRSymbolicModifierFlagsTransformer.h"
#include "shortcuts/SRText.h"
#include "support/Log.h"

namespace lirixkro {

using quillbox::Log;

namespace {

std::optional<std::string> asciiSymbol(SRKeyCode keyCode, SRModifierFlags implicitFlags,
                                       SRModifierFlags explicitFlags) {
    return SRASCIISymbolicKeyCodeTransformer::sharedTransformer()->transformedValue(
        SRNumber(keyCode), implicitFlags, explicitFlags, SRLayoutDirection::leftToRight);
}

struct EventCharacters {
    std::optional<std::string> characters;
    std::optional<std::string> charactersIgnoringModifiers;
};

// Reads the event's texts one after the other. Should reading fail, what was
// read so far is kept and the rest stays absent.
EventCharacters readCharacters(const platform::Event& event) {
    EventCharacters read;
    try {
        read.characters = event.characters;
        read.charactersIgnoringModifiers = event.charactersIgnoringModifiers;
    } catch (const std::exception&) {
        Log::error(
            "#Error #Developer AppKit failed to extract characters because it is used in a "
            "non-main thread, see SRShortcut/shortcutWithEvent:ignoringCharacters:");
    }
    return read;
}

std::optional<std::string> textIn(const SRDictionary& dictionary, const std::string& key) {
    const auto* entry = SREntry(dictionary, key);
    const auto* text = entry ? std::get_if<std::string>(entry) : nullptr;
    return text ? std::optional<std::string>(*text) : std::nullopt;
}

}  // namespace

SRShortcut::SRShortcut(SRKeyCode keyCode, SRModifierFlags modifierFlags,
                       std::optional<std::string> characters,
                       std::optional<std::string> charactersIgnoringModifiers)
    : keyCode_(keyCode),
      modifierFlags_(modifierFlags & SRCocoaModifierFlagsMask),
      characters_(std::move(characters)),
      charactersIgnoringModifiers_(std::move(charactersIgnoringModifiers)) {
    if (keyCode_ == SRKeyCodeNone)
        return;
    if (!characters_)
        characters_ = asciiSymbol(keyCode_, modifierFlags_, 0);
    if (!charactersIgnoringModifiers_) {
        charactersIgnoringModifiers_ = asciiSymbol(keyCode_, 0, modifierFlags_);
    }
}

SRShortcutRef SRShortcut::shortcutWithCode(SRKeyCode keyCode, SRModifierFlags modifierFlags,
                                           std::optional<std::string> characters,
                                           std::optional<std::string> charactersIgnoringModifiers) {
    return std::make_shared<const SRShortcut>(keyCode, modifierFlags, std::move(characters),
                                              std::move(charactersIgnoringModifiers));
}

SRShortcutRef SRShortcut::shortcutWithEvent(const platform::Event& event, bool ignoringCharacters) {
    using platform::EventType;
    if (event.type != EventType::keyDown && event.type != EventType::keyUp &&
        event.type != EventType::flagsChanged) {
        Log::error(quillbox::formatText(
            "#Error aKeyboardEvent must be either NSEventTypeKeyUp, NSEventTypeKeyDown or "
            "NSEventTypeFlagsChanged, but got %lu",
            static_cast<unsigned long>(event.type)));
        return nullptr;
    }

    SRKeyCode keyCode = event.keyCode;
    SRModifierFlags flags = event.modifierFlags;
    EventCharacters texts;
    if (event.type == EventType::flagsChanged) {
        flags |= SRModifierFlagOfKeyCode(keyCode);
        keyCode = SRKeyCodeNone;
        if (ignoringCharacters)
            texts = {std::string(), std::string()};
    } else if (ignoringCharacters) {
        texts = {std::string(), std::string()};
    } else {
        texts = readCharacters(event);
    }
    return shortcutWithCode(keyCode, flags, std::move(texts.characters),
                            std::move(texts.charactersIgnoringModifiers));
}

SRShortcutRef SRShortcut::shortcutWithDictionary(const SRDictionary& dictionary) {
    const auto* keyCodeEntry = SREntry(dictionary, "keyCode");
    const auto keyCodeNumber = keyCodeEntry ? SRNumberIn(*keyCodeEntry) : std::nullopt;
    const SRKeyCode keyCode = keyCodeNumber ? keyCodeNumber->unsignedShortValue() : SRKeyCodeNone;

    const auto* flagsEntry = SREntry(dictionary, "modifierFlags");
    const auto flagsNumber = flagsEntry ? SRNumberIn(*flagsEntry) : std::nullopt;
    const SRModifierFlags flags = flagsNumber ? flagsNumber->unsignedLongValue() : 0;

    return shortcutWithCode(keyCode, flags, textIn(dictionary, "characters"),
                            textIn(dictionary, "charactersIgnoringModifiers"));
}

SRShortcutRef SRShortcut::shortcutWithKeyEquivalent(std::string_view keyEquivalent) {
    const std::u32string characters = detail::SRCharacters(keyEquivalent);
    std::size_t modifierCount = 0;
    while (modifierCount < characters.size() &&
           std::u32string_view(U"⌘⌥⇧⌃").find(characters[modifierCount]) !=
               std::u32string_view::npos) {
        ++modifierCount;
    }
    const std::string modifierPart = detail::SRUTF8(characters.substr(0, modifierCount));
    const std::string keyPart = detail::SRUTF8(characters.substr(modifierCount));
    if (modifierPart.empty() && keyPart.empty())
        return nullptr;

    std::optional<SRModifierFlags> flags = 0;
    if (!modifierPart.empty()) {
        flags = SRSymbolicModifierFlagsTransformer::sharedTransformer()->reverseTransformedValue(
            modifierPart);
    }
    std::optional<SRKeyCode> keyCode = SRKeyCodeNone;
    if (!keyPart.empty()) {
        keyCode =
            SRASCIILiteralKeyCodeTransformer::sharedTransformer()->reverseTransformedValue(keyPart);
    }
    if (!flags || !keyCode)
        return nullptr;
    return shortcutWithCode(*keyCode, *flags);
}

SRShortcutRef SRShortcut::shortcutWithKeyBinding(std::string_view keyBinding) {
    return SRKeyBindingTransformer::sharedTransformer()->transformedValue(std::string(keyBinding));
}

std::uint32_t SRShortcut::carbonKeyCode() const {
    if (keyCode_ == SRKeyCodeNone) {
        Log::fault("#Critical SRKeyCodeNone has no representation in Carbon");
    }
    return keyCode_;
}

std::uint32_t SRShortcut::carbonModifierFlags() const {
    std::uint32_t flags = 0;
    if (modifierFlags_ & SRCommandFlag)
        flags |= platform::carbonModifier::command;
    if (modifierFlags_ & SRShiftFlag)
        flags |= platform::carbonModifier::shift;
    if (modifierFlags_ & SROptionFlag)
        flags |= platform::carbonModifier::option;
    if (modifierFlags_ & SRControlFlag)
        flags |= platform::carbonModifier::control;
    if (detail::SRFunctionKeyNumber(keyCode_))
        flags |= platform::carbonModifier::function;
    return flags;
}

SRDictionary SRShortcut::dictionaryRepresentation() const {
    SRDictionary dictionary;
    dictionary["keyCode"] = SRNumber(keyCode_);
    dictionary["modifierFlags"] = SRNumber(modifierFlags_);
    if (characters_)
        dictionary["characters"] = *characters_;
    if (charactersIgnoringModifiers_) {
        dictionary["charactersIgnoringModifiers"] = *charactersIgnoringModifiers_;
    }
    return dictionary;
}

std::optional<SRDictionaryValue> SRShortcut::operator[](std::string_view key) const {
    if (key == "keyCode")
        return SRNumber(keyCode_);
    if (key == "modifierFlags")
        return SRNumber(modifierFlags_);
    if (key == "characters" && characters_)
        return *characters_;
    if (key == "charactersIgnoringModifiers" && charactersIgnoringModifiers_) {
        return *charactersIgnoringModifiers_;
    }
    return std::nullopt;
}

}  // namespace lirixkro
