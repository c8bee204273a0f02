#include "shortcuts/SRKeyEquivalentModifierMaskTransformer.h"

#include "shortcuts/SRKeyEquivalentTransformer.h"

namespace lirixkro {

std::shared_ptr<const SRKeyEquivalentModifierMaskTransformer>
SRKeyEquivalentModifierMaskTransformer::sharedTransformer() {
    static const auto shared = std::make_shared<const SRKeyEquivalentModifierMaskTransformer>();
    return shared;
}

std::optional<SRModifierFlags> SRKeyEquivalentModifierMaskTransformer::transformedValue(
    const SRValue& value) const {
    const auto dictionary = SRShortcutDictionaryIn(value);
    if (!dictionary)
        return std::nullopt;
    const auto flags = SRNumberEntry(*dictionary, "modifierFlags");
    if (!flags)
        return std::nullopt;
    return flags->unsignedLongValue();
}

}  // namespace lirixkro
