#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "shortcuts/SRCommon.h"

namespace lirixkro::detail {

// What one cached translation depends on. The layout identifier is the whole
// invalidation: a switch of layout misses, and switching back finds the old
// entries again.
struct SRKeyCodeTranslatorCacheKey {
    std::string identifier;
    SRModifierFlags implicitModifierFlags = 0;  // masked to the four modifiers
    SRModifierFlags explicitModifierFlags = 0;  // masked likewise
    SRKeyCode keyCode = 0;

    SRKeyCodeTranslatorCacheKey(std::string identifier, SRModifierFlags implicitFlags,
                                SRModifierFlags explicitFlags, SRKeyCode keyCode);

    std::uint64_t hash() const;
    friend bool operator==(const SRKeyCodeTranslatorCacheKey&,
                           const SRKeyCodeTranslatorCacheKey&) = default;

    struct Hasher {
        std::size_t operator()(const SRKeyCodeTranslatorCacheKey& key) const {
            return static_cast<std::size_t>(key.hash());
        }
    };
};

}  // namespace lirixkro::detail
