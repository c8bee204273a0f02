#include "shortcuts/SRShortcutFormatter.h"

#include "shortcuts/SRASCIILiteralKeyCodeTransformer.h"
#include "shortcuts/SRASCIISymbolicKeyCodeTransformer.h"
#include "shortcuts/SRLiteralKeyCodeTransformer.h"
#include "shortcuts/SRLiteralModifierFlagsTransformer.h"
#include "shortcuts/SRShortcut.h"
#include "shortcuts/SRSymbolicKeyCodeTransformer.h"
#include "shortcuts/SRSymbolicModifierFlagsTransformer.h"
#include "support/Log.h"

namespace lirixkro {

SRShortcutFormatter::SRShortcutFormatter() : layoutDirection_(SRApplicationLayoutDirection()) {}

std::optional<std::string> SRShortcutFormatter::stringForObjectValue(const SRValue& value) const {
    const auto* shortcut = std::get_if<SRShortcutRef>(&value);
    if (!shortcut || !*shortcut)
        return std::nullopt;
    return stringForShortcut(**shortcut);
}

std::string SRShortcutFormatter::stringForShortcut(const SRShortcut& shortcut) const {
    std::shared_ptr<const SRKeyCodeTransformer> keyTransformer;
    if (isKeyCodeLiteral_ && usesASCII_) {
        keyTransformer = SRASCIILiteralKeyCodeTransformer::sharedTransformer();
    } else if (isKeyCodeLiteral_) {
        keyTransformer = SRLiteralKeyCodeTransformer::sharedTransformer();
    } else if (usesASCII_) {
        keyTransformer = SRASCIISymbolicKeyCodeTransformer::sharedTransformer();
    } else {
        keyTransformer = SRSymbolicKeyCodeTransformer::sharedTransformer();
    }
    std::shared_ptr<const SRModifierFlagsTransformer> flagsTransformer;
    if (areModifierFlagsLiteral_) {
        flagsTransformer = SRLiteralModifierFlagsTransformer::sharedTransformer();
    } else {
        flagsTransformer = SRSymbolicModifierFlagsTransformer::sharedTransformer();
    }

    auto keyText = keyTransformer->transformedValue(SRNumber(shortcut.keyCode()), 0,
                                                    shortcut.modifierFlags(), layoutDirection_);
    if (!keyText)
        keyText = quillbox::formatText("<%hu>", shortcut.keyCode());
    // Modifiers always come first; right to left reverses their order only.
    auto flagsText =
        flagsTransformer->transformedValue(SRNumber(shortcut.modifierFlags()), layoutDirection_);
    return flagsText.value_or(std::string()) + *keyText;
}

bool SRShortcutFormatter::getObjectValue(SRShortcutRef* object, std::string_view string,
                                         std::string*) const {
    const bool readable = isKeyCodeLiteral_ && usesASCII_ && !areModifierFlagsLiteral_ &&
                          layoutDirection_ == SRLayoutDirection::leftToRight;
    if (!readable)
        return false;
    auto shortcut = SRShortcut::shortcutWithKeyEquivalent(string);
    if (!shortcut)
        return false;
    if (object)
        *object = std::move(shortcut);
    return true;
}

}  // namespace lirixkro
