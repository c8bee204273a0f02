// The readable texts of a shortcut.
#include "shortcuts/LirixkroStrings.h"
#include "shortcuts/SRASCIILiteralKeyCodeTransformer.h"
#include "shortcuts/SRLiteralKeyCodeTransformer.h"
#include "shortcuts/SRShortcut.h"
#include "shortcuts/SRShortcutFormatter.h"
#include "support/Log.h"

namespace lirixkro {

std::string SRShortcut::readableStringRepresentation(bool isASCII) const {
    const SRKeyCodeTransformer& transformer =
        isASCII ? static_cast<const SRKeyCodeTransformer&>(
                      *SRASCIILiteralKeyCodeTransformer::sharedTransformer())
                : *SRLiteralKeyCodeTransformer::sharedTransformer();
    auto keyText = transformer.transformedValue(SRNumber(keyCode_));
    if (!keyText)
        keyText = quillbox::formatText("<%hu>", keyCode_);

    std::string text;
    if (modifierFlags_ & SRCommandFlag)
        text += SRLoc("Command-");
    if (modifierFlags_ & SROptionFlag)
        text += SRLoc("Option-");
    if (modifierFlags_ & SRControlFlag)
        text += SRLoc("Control-");
    if (modifierFlags_ & SRShiftFlag)
        text += SRLoc("Shift-");
    return text + *keyText;
}

std::string SRShortcut::description() const {
    static const SRShortcutFormatter formatter = [] {
        SRShortcutFormatter shared;
        shared.setUsesASCIICapableKeyboardInputSource(true);
        shared.setKeyCodeLiteral(true);
        shared.setLayoutDirection(SRLayoutDirection::leftToRight);
        return shared;
    }();
    return formatter.stringForShortcut(*this);
}

}  // namespace lirixkro
