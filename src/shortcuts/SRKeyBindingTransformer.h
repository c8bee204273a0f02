#pragma once

#include <memory>
#include <optional>
#include <string>

#include "shortcuts/SRValue.h"

namespace lirixkro {

// Between shortcuts and the text form of key binding dictionaries: "^$k" is
// Control-Shift-K, "#1" the keypad's 1, a capital means Shift.
class SRKeyBindingTransformer {
  public:
    static std::shared_ptr<const SRKeyBindingTransformer> sharedTransformer();
    static constexpr bool allowsReverseTransformation() { return true; }

    // Text to shortcut; null for anything that isn't a binding.
    SRShortcutRef transformedValue(const SRValue& value) const;
    // A shortcut or shortcut dictionary to text.
    std::optional<std::string> reverseTransformedValue(const SRValue& value) const;
};

}  // namespace lirixkro
