#pragma once

#include "shortcuts/SRKeyCodeTransformerMember.h"

namespace lirixkro {

namespace detail {
class SRKeyCodeASCIITranslator;
}

// The literal form of a key on the ASCII-capable layout, for people ("F5", "A", "↩").
// It reads text back into a key code as well.
class SRASCIILiteralKeyCodeTransformer final
    : public SRKeyCodeTransformerMember<SRASCIILiteralKeyCodeTransformer,
                                        detail::SRKeyCodeASCIITranslator> {
  public:
    static constexpr bool allowsReverseTransformation() { return true; }
    std::optional<SRKeyCode> reverseTransformedValue(const SRValue& value) const override;

  private:
    friend SRKeyCodeTransformerMember;
    using SRKeyCodeTransformerMember::SRKeyCodeTransformerMember;

    static constexpr Form form = Form::literal;
    static constexpr const char* activity = "Key Code -> ASCII Literal";
};

}  // namespace lirixkro
