#include "shortcuts/SRSymbolicModifierFlagsTransformer.h"

#include "shortcuts/SRText.h"
#include "support/Log.h"

namespace lirixkro {

namespace {

std::optional<SRModifierFlags> flagForSymbol(char32_t symbol) {
    switch (symbol) {
        case U'⌃':
            return SRControlFlag;
        case U'⌥':
            return SROptionFlag;
        case U'⇧':
            return SRShiftFlag;
        case U'⌘':
            return SRCommandFlag;
        default:
            return std::nullopt;
    }
}

}  // namespace

std::shared_ptr<const SRSymbolicModifierFlagsTransformer>
SRSymbolicModifierFlagsTransformer::sharedTransformer() {
    static const std::shared_ptr<const SRSymbolicModifierFlagsTransformer> shared(
        new SRSymbolicModifierFlagsTransformer());
    return shared;
}

std::optional<std::string> SRSymbolicModifierFlagsTransformer::transformedValue(
    const SRValue& value, SRLayoutDirection direction) const {
    static const FlagTexts symbols = {"⌃", "⌥", "⇧", "⌘"};
    return join(value, direction, symbols, "");
}

std::optional<SRModifierFlags> SRSymbolicModifierFlagsTransformer::reverseTransformedValue(
    const SRValue& value) const {
    const auto* text = std::get_if<std::string>(&value);
    std::optional<SRModifierFlags> flags;
    if (text) {
        flags = 0;
        for (char32_t character : detail::SRCharacters(*text)) {
            const auto flag = flagForSymbol(character);
            if (!flag || (*flags & *flag)) {
                flags.reset();
                break;
            }
            *flags |= *flag;
        }
    }
    if (!flags)
        quillbox::Log::error("#Error Invalid value for reverse transformation");
    return flags;
}

}  // namespace lirixkro
