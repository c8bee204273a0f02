#pragma once

#include "shortcuts/SRKeyCodeTransformerMember.h"

namespace lirixkro {

namespace detail {
class SRKeyCodeASCIITranslator;
}

// The symbolic form of a key on the ASCII-capable layout, for matching and for menu key
// equivalents. It reads text back into a key code as well.
class SRASCIISymbolicKeyCodeTransformer final
    : public SRKeyCodeTransformerMember<SRASCIISymbolicKeyCodeTransformer,
                                        detail::SRKeyCodeASCIITranslator> {
  public:
    static constexpr bool allowsReverseTransformation() { return true; }
    std::optional<SRKeyCode> reverseTransformedValue(const SRValue& value) const override;

  private:
    friend SRKeyCodeTransformerMember;
    using SRKeyCodeTransformerMember::SRKeyCodeTransformerMember;

    static constexpr Form form = Form::symbolic;
    static constexpr const char* activity = "Key Code -> ASCII Symbol";
};

}  // namespace lirixkro
