#pragma once

#include "shortcuts/SRKeyCodeTransformerMember.h"

namespace lirixkro {

namespace detail {
class SRKeyCodeTranslator;
}

// The literal form of a key on the current layout, for people ("F5", "A", "↩").
class SRLiteralKeyCodeTransformer final
    : public SRKeyCodeTransformerMember<SRLiteralKeyCodeTransformer, detail::SRKeyCodeTranslator> {
  private:
    friend SRKeyCodeTransformerMember;
    using SRKeyCodeTransformerMember::SRKeyCodeTransformerMember;

    static constexpr Form form = Form::literal;
    static constexpr const char* activity = "Key Code -> Literal";
};

}  // namespace lirixkro
