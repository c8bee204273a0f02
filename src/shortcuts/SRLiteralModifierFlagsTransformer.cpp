#include "shortcuts/SRLiteralModifierFlagsTransformer.h"

#include "shortcuts/LirixkroStrings.h"

namespace lirixkro {

std::shared_ptr<const SRLiteralModifierFlagsTransformer>
SRLiteralModifierFlagsTransformer::sharedTransformer() {
    static const std::shared_ptr<const SRLiteralModifierFlagsTransformer> shared(
        new SRLiteralModifierFlagsTransformer());
    return shared;
}

std::optional<std::string> SRLiteralModifierFlagsTransformer::transformedValue(
    const SRValue& value, SRLayoutDirection direction) const {
    const FlagTexts words = {SRLoc("Control"), SRLoc("Option"), SRLoc("Shift"), SRLoc("Command")};
    return join(value, direction, words, SRLoc("-"));
}

}  // namespace lirixkro
