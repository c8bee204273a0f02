#pragma once

#include <memory>

#include "shortcuts/SRKeyCodeTransformer.h"

namespace lirixkro {

namespace detail {
class SRKeyCodeASCIITranslator;
}

// The literal form of a key on the ASCII-capable layout, for people ("F5", "A", "↩").
// It reads text back into a key code as well.
class SRASCIILiteralKeyCodeTransformer final : public SRKeyCodeTransformer {
  public:
    static std::shared_ptr<const SRASCIILiteralKeyCodeTransformer> sharedTransformer();
    // A transformer with a translator of its own on one fixed layout.
    static std::shared_ptr<const SRASCIILiteralKeyCodeTransformer> makeWithInputSource(
        std::shared_ptr<platform::InputSource> inputSource);

    using SRKeyCodeTransformer::transformedValue;
    std::optional<std::string> transformedValue(const SRValue& value,
                                                SRModifierFlags implicitModifierFlags,
                                                SRModifierFlags explicitModifierFlags,
                                                SRLayoutDirection direction) const override;

    static constexpr bool allowsReverseTransformation() { return true; }
    std::optional<SRKeyCode> reverseTransformedValue(const SRValue& value) const override;

  private:
    using SRKeyCodeTransformer::SRKeyCodeTransformer;
    detail::SRKeyCodeASCIITranslator& asciiTranslator() const;
};

}  // namespace lirixkro
