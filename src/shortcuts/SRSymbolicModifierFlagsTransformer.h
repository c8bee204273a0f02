#pragma once

#include "shortcuts/SRModifierFlagsTransformer.h"

namespace lirixkro {

// Modifier flags as the symbols menus print: "⌃⌥⇧⌘". Reads them back too.
class SRSymbolicModifierFlagsTransformer final : public SRModifierFlagsTransformer {
  public:
    static std::shared_ptr<const SRSymbolicModifierFlagsTransformer> sharedTransformer();

    using SRModifierFlagsTransformer::transformedValue;
    std::optional<std::string> transformedValue(const SRValue& value,
                                                SRLayoutDirection direction) const override;

    static constexpr bool allowsReverseTransformation() { return true; }
    // Each symbol adds its flag once; any other character, or a symbol seen
    // twice, makes the text invalid. The empty text is no modifiers.
    std::optional<SRModifierFlags> reverseTransformedValue(const SRValue& value) const override;

  private:
    SRSymbolicModifierFlagsTransformer() = default;
};

}  // namespace lirixkro
