#pragma once

#include <map>
#include <optional>
#include <string>

#include "shortcuts/SRKeyCodeTranslator.h"

namespace lirixkro::detail {

// A translator on the ASCII-capable layout, which can also go back from a
// key's text to its code.
class SRKeyCodeASCIITranslator : public SRKeyCodeTranslator {
  public:
    // The process-wide translator on the current ASCII-capable layout.
    static SRKeyCodeASCIITranslator& shared();

    using SRKeyCodeTranslator::SRKeyCodeTranslator;

    // The key whose plain translation is the text, which must be lower-case.
    // The map behind it is rebuilt only when the layout's identifier changes.
    std::optional<SRKeyCode> keyCodeForTranslation(const std::string& translation);

  private:
    void rebuildTranslationMap();

    std::map<std::string, SRKeyCode> translationToKeyCode_;
    std::optional<std::string> mapIdentifier_;
};

}  // namespace lirixkro::detail
