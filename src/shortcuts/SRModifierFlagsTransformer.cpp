#include "shortcuts/SRModifierFlagsTransformer.h"

#include <algorithm>
#include <vector>

#include "shortcuts/SRSymbolicModifierFlagsTransformer.h"
#include "support/Log.h"

namespace lirixkro {

std::shared_ptr<const SRModifierFlagsTransformer> SRModifierFlagsTransformer::sharedTransformer() {
    return SRSymbolicModifierFlagsTransformer::sharedTransformer();
}

std::shared_ptr<const SRModifierFlagsTransformer> SRModifierFlagsTransformer::make() {
    return SRSymbolicModifierFlagsTransformer::sharedTransformer();
}

std::optional<std::string> SRModifierFlagsTransformer::transformedValue(const SRValue&,
                                                                        SRLayoutDirection) const {
    return std::nullopt;
}

std::optional<SRModifierFlags> SRModifierFlagsTransformer::reverseTransformedValue(
    const SRValue&) const {
    return std::nullopt;
}

std::optional<std::string> SRModifierFlagsTransformer::join(const SRValue& value,
                                                            SRLayoutDirection direction,
                                                            const FlagTexts& texts,
                                                            std::string_view separator) {
    const auto number = SRNumberIn(value);
    if (!number) {
        quillbox::Log::error("#Error Invalid value for transformation");
        return std::nullopt;
    }
    std::vector<const std::string*> parts;
    for (std::size_t i = 0; i < flagOrder.size(); ++i) {
        if (number->value & flagOrder[i])
            parts.push_back(&texts[i]);
    }
    if (direction == SRLayoutDirection::rightToLeft)
        std::reverse(parts.begin(), parts.end());

    std::string text;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (i > 0)
            text += separator;
        text += *parts[i];
    }
    return text;
}

}  // namespace lirixkro
