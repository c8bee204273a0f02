#include "shortcuts/SRKeyEquivalentTransformer.h"

#include "shortcuts/SRASCIISymbolicKeyCodeTransformer.h"
#include "shortcuts/SRShortcut.h"

namespace lirixkro {

std::optional<SRDictionary> SRShortcutDictionaryIn(const SRValue& value) {
    if (const auto* dictionary = std::get_if<SRDictionary>(&value))
        return *dictionary;
    if (const auto* shortcut = std::get_if<SRShortcutRef>(&value); shortcut && *shortcut) {
        return (*shortcut)->dictionaryRepresentation();
    }
    return std::nullopt;
}

std::shared_ptr<const SRKeyEquivalentTransformer> SRKeyEquivalentTransformer::sharedTransformer() {
    static const auto shared = std::make_shared<const SRKeyEquivalentTransformer>();
    return shared;
}

std::optional<std::string> SRKeyEquivalentTransformer::transformedValue(
    const SRValue& value) const {
    const auto dictionary = SRShortcutDictionaryIn(value);
    if (!dictionary)
        return std::nullopt;
    const auto keyCode = SRNumberEntry(*dictionary, "keyCode");
    if (!keyCode)
        return std::nullopt;
    const auto flags = SRNumberEntry(*dictionary, "modifierFlags").value_or(SRNumber(0));
    return SRASCIISymbolicKeyCodeTransformer::sharedTransformer()->transformedValue(
        *keyCode, 0, flags.unsignedLongValue(), SRLayoutDirection::leftToRight);
}

}  // namespace lirixkro
