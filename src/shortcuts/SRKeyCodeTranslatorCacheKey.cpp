#include "shortcuts/SRKeyCodeTranslatorCacheKey.h"

#include <functional>
#include <utility>

namespace lirixkro::detail {

SRKeyCodeTranslatorCacheKey::SRKeyCodeTranslatorCacheKey(std::string identifier_,
                                                         SRModifierFlags implicitFlags,
                                                         SRModifierFlags explicitFlags,
                                                         SRKeyCode keyCode_)
    : identifier(std::move(identifier_)),
      implicitModifierFlags(implicitFlags & SRCocoaModifierFlagsMask),
      explicitModifierFlags(explicitFlags & SRCocoaModifierFlagsMask),
      keyCode(keyCode_) {}

std::uint64_t SRKeyCodeTranslatorCacheKey::hash() const {
    const std::uint64_t identifierHash = std::hash<std::string>{}(identifier);
    return (identifierHash << 24) |
           ((implicitModifierFlags >> 1) & std::uint64_t{0x7FFFFFFFFFFF0000}) |
           ((explicitModifierFlags >> 17) << 20) | keyCode;
}

}  // namespace lirixkro::detail
