#pragma once

#include "shortcuts/SRModifierFlagsTransformer.h"

namespace lirixkro {

// Modifier flags as words for people: "Control-Option-Shift-Command".
class SRLiteralModifierFlagsTransformer final : public SRModifierFlagsTransformer {
  public:
    static std::shared_ptr<const SRLiteralModifierFlagsTransformer> sharedTransformer();

    using SRModifierFlagsTransformer::transformedValue;
    std::optional<std::string> transformedValue(const SRValue& value,
                                                SRLayoutDirection direction) const override;

  private:
    SRLiteralModifierFlagsTransformer() = default;
};

}  // namespace lirixkro
