// How a shortcut compares with other shortcuts, dictionaries and menu key
// equivalents.
#include <array>

#include "shortcuts/SRASCIISymbolicKeyCodeTransformer.h"
#include "shortcuts/SRShortcut.h"
#include "shortcuts/SRSymbolicKeyCodeTransformer.h"
#include "shortcuts/SRText.h"

namespace lirixkro {

namespace {

// The flag combinations a key equivalent's character may hide, in the order
// they are tried. Shift, Control and Option together (0xE0000) stay out.
constexpr std::array<SRModifierFlags, 15> hiddenFlagCombinations = {
    0x0,      0x40000,  0x100000, 0x20000,  0x80000,  0x140000, 0x60000, 0xC0000,
    0x120000, 0x180000, 0xA0000,  0x160000, 0x1C0000, 0x1A0000, 0x1E0000};

bool isSubset(SRModifierFlags part, SRModifierFlags whole) {
    return (part & whole) == part;
}

}  // namespace

bool SRShortcut::isEqualToShortcut(const SRShortcut& other) const {
    return this == &other || (keyCode_ == other.keyCode_ && modifierFlags_ == other.modifierFlags_);
}

bool SRShortcut::isEqual(const SRValue& object) const {
    const auto* shortcut = std::get_if<SRShortcutRef>(&object);
    return shortcut && *shortcut && isEqualToShortcut(**shortcut);
}

bool SRShortcut::isEqualToDictionary(const SRDictionary& dictionary) const {
    const auto* flagsEntry = SREntry(dictionary, "modifierFlags");
    const auto flagsNumber = flagsEntry ? SRNumberIn(*flagsEntry) : std::nullopt;
    const SRModifierFlags flags =
        (flagsNumber ? flagsNumber->unsignedLongValue() : 0) & SRCocoaModifierFlagsMask;

    const auto* keyCodeEntry = SREntry(dictionary, "keyCode");
    if (!keyCodeEntry)
        return keyCode_ == SRKeyCodeNone && flags == modifierFlags_;
    const auto keyCodeNumber = SRNumberIn(*keyCodeEntry);
    if (!keyCodeNumber)
        return false;
    return keyCodeNumber->unsignedShortValue() == keyCode_ && flags == modifierFlags_;
}

bool SRShortcut::isEqualToKeyEquivalent(std::string_view keyEquivalent,
                                        SRModifierFlags modifierFlags) const {
    if (keyEquivalent.empty() || keyCode_ == SRKeyCodeNone)
        return false;
    return isEqualToKeyEquivalent(keyEquivalent, modifierFlags,
                                  *SRASCIISymbolicKeyCodeTransformer::sharedTransformer()) ||
           isEqualToKeyEquivalent(keyEquivalent, modifierFlags,
                                  *SRSymbolicKeyCodeTransformer::sharedTransformer());
}

bool SRShortcut::isEqualToKeyEquivalent(std::string_view keyEquivalent,
                                        SRModifierFlags modifierFlags,
                                        const SRKeyCodeTransformer& transformer) const {
    if (keyEquivalent.empty() || keyCode_ == SRKeyCodeNone)
        return false;
    const SRModifierFlags givenFlags = modifierFlags & SRCocoaModifierFlagsMask;

    // Tab with Shift reads as back-tab in key equivalents.
    if (keyCode_ == 48 && givenFlags == modifierFlags_) {
        const std::u32string characters = detail::SRCharacters(keyEquivalent);
        if (characters.size() == 1 && (characters[0] == 0x09 || characters[0] == 0x19)) {
            return true;
        }
    }

    const SRLayoutDirection direction = SRApplicationLayoutDirection();
    const auto plain =
        transformer.transformedValue(SRNumber(keyCode_), 0, modifierFlags_, direction);
    if (plain == keyEquivalent && givenFlags == modifierFlags_)
        return true;
    if (!isSubset(givenFlags, modifierFlags_))
        return false;

    // The equivalent may carry some of the shortcut's flags in its character,
    // as a capital carries Shift.
    const SRModifierFlags flagsOutsideGiven = modifierFlags_ & ~givenFlags;
    for (SRModifierFlags combination : hiddenFlagCombinations) {
        if (!isSubset(combination, givenFlags))
            continue;
        const auto text = transformer.transformedValue(
            SRNumber(keyCode_), combination | flagsOutsideGiven, givenFlags, direction);
        if (text != plain && text == keyEquivalent)
            return true;
    }
    return false;
}

}  // namespace lirixkro
