#pragma once

#include <memory>
#include <optional>
#include <string>

#include "shortcuts/SRValue.h"

namespace lirixkro {

// The text a menu item takes as its key equivalent, from a shortcut or a
// shortcut dictionary.
class SRKeyEquivalentTransformer {
  public:
    static std::shared_ptr<const SRKeyEquivalentTransformer> sharedTransformer();
    static constexpr bool allowsReverseTransformation() { return false; }

    // Nothing unless the key code is a number.
    std::optional<std::string> transformedValue(const SRValue& value) const;
};

// The dictionary of a shortcut value: the dictionary itself, or a
// shortcut's dictionary form; nothing for other values.
std::optional<SRDictionary> SRShortcutDictionaryIn(const SRValue& value);

}  // namespace lirixkro
