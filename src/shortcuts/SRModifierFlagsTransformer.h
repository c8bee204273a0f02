#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "shortcuts/SRCommon.h"
#include "shortcuts/SRValue.h"

namespace lirixkro {

// Turns modifier flags into text, always in the order Control, Option,
// Shift, Command (reversed for right-to-left). The base class has no form of
// its own; the literal and symbolic members do.
class SRModifierFlagsTransformer {
  public:
    virtual ~SRModifierFlagsTransformer() = default;
    SRModifierFlagsTransformer(const SRModifierFlagsTransformer&) = delete;
    SRModifierFlagsTransformer& operator=(const SRModifierFlagsTransformer&) = delete;

    // Both give the shared symbolic transformer.
    static std::shared_ptr<const SRModifierFlagsTransformer> sharedTransformer();
    static std::shared_ptr<const SRModifierFlagsTransformer> make();

    virtual std::optional<std::string> transformedValue(const SRValue& value,
                                                        SRLayoutDirection direction) const;
    std::optional<std::string> transformedValue(const SRValue& value) const {
        return transformedValue(value, SRLayoutDirection::leftToRight);
    }

    virtual std::optional<SRModifierFlags> reverseTransformedValue(const SRValue& value) const;

  protected:
    SRModifierFlagsTransformer() = default;

    // The texts of Control, Option, Shift and Command, in that order.
    using FlagTexts = std::array<std::string, 4>;
    static constexpr std::array<SRModifierFlags, 4> flagOrder = {SRControlFlag, SROptionFlag,
                                                                 SRShiftFlag, SRCommandFlag};

    // The set flags' texts joined with the separator; nothing for a value
    // that isn't a number.
    static std::optional<std::string> join(const SRValue& value, SRLayoutDirection direction,
                                           const FlagTexts& texts, std::string_view separator);
};

}  // namespace lirixkro
