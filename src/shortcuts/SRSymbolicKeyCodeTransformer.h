#pragma once

#include "shortcuts/SRKeyCodeTransformerMember.h"

namespace lirixkro {

namespace detail {
class SRKeyCodeTranslator;
}

// The symbolic form of a key on the current layout, for matching (a function key's private-use
// character, "a", a carriage return).
class SRSymbolicKeyCodeTransformer final
    : public SRKeyCodeTransformerMember<SRSymbolicKeyCodeTransformer, detail::SRKeyCodeTranslator> {
  private:
    friend SRKeyCodeTransformerMember;
    using SRKeyCodeTransformerMember::SRKeyCodeTransformerMember;

    static constexpr Form form = Form::symbolic;
    static constexpr const char* activity = "Key Code -> Symbol";
};

}  // namespace lirixkro
