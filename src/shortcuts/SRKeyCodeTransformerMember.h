#pragma once

#include <memory>
#include <optional>
#include <string>

#include "shortcuts/SRKeyCodeTransformer.h"

namespace lirixkro {

// What the four members of the family share: the shared instance on their
// layout's process-wide translator, instances with a translator of their
// own on one fixed layout, and the entry that gives their form. `Self`
// names its form and its activity (`form`, `activity`); `Translator` is
// the translator of its layout. The members are the only instantiations.
template <typename Self, typename Translator>
class SRKeyCodeTransformerMember : public SRKeyCodeTransformer {
  public:
    static std::shared_ptr<const Self> sharedTransformer();
    // A transformer with a translator of its own on one fixed layout.
    static std::shared_ptr<const Self> makeWithInputSource(
        std::shared_ptr<platform::InputSource> inputSource);

    using SRKeyCodeTransformer::transformedValue;
    std::optional<std::string> transformedValue(const SRValue& value,
                                                SRModifierFlags implicitModifierFlags,
                                                SRModifierFlags explicitModifierFlags,
                                                SRLayoutDirection direction) const override;

  protected:
    using SRKeyCodeTransformer::SRKeyCodeTransformer;
    Translator& translator() const;
};

}  // namespace lirixkro
