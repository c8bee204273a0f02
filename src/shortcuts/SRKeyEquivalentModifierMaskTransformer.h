#pragma once

#include <memory>
#include <optional>

#include "shortcuts/SRValue.h"

namespace lirixkro {

// The modifier mask a menu item takes with its key equivalent.
class SRKeyEquivalentModifierMaskTransformer {
  public:
    static std::shared_ptr<const SRKeyEquivalentModifierMaskTransformer> sharedTransformer();
    static constexpr bool allowsReverseTransformation() { return false; }

    // Nothing unless the flags are a number.
    std::optional<SRModifierFlags> transformedValue(const SRValue& value) const;
};

}  // namespace lirixkro
