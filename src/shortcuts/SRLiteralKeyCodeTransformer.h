#pragma once

#include <memory>

#include "shortcuts/SRKeyCodeTransformer.h"

namespace lirixkro {

// The literal form of a key on the current layout, for people ("F5", "A", "↩").
class SRLiteralKeyCodeTransformer final : public SRKeyCodeTransformer {
  public:
    static std::shared_ptr<const SRLiteralKeyCodeTransformer> sharedTransformer();
    // A transformer with a translator of its own on one fixed layout.
    static std::shared_ptr<const SRLiteralKeyCodeTransformer> makeWithInputSource(
        std::shared_ptr<platform::InputSource> inputSource);

    using SRKeyCodeTransformer::transformedValue;
    std::optional<std::string> transformedValue(const SRValue& value,
                                                SRModifierFlags implicitModifierFlags,
                                                SRModifierFlags explicitModifierFlags,
                                                SRLayoutDirection direction) const override;

  private:
    using SRKeyCodeTransformer::SRKeyCodeTransformer;
};

}  // namespace lirixkro
