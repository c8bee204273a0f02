#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>

#include "platform/KeyboardLayout.h"
#include "shortcuts/SRCommon.h"
#include "shortcuts/SRKeyCodeTranslatorCacheKey.h"

namespace lirixkro::detail {

// Translates key codes on a keyboard layout, through a cache. Usable from any
// thread: one recursive lock covers the cache read, the layout's translation
// and the cache write, so a miss is filled once.
class SRKeyCodeTranslator {
  public:
    using InputSourceCreator = std::function<std::shared_ptr<platform::InputSource>()>;

    // The process-wide translator on the layout the user types with now.
    static SRKeyCodeTranslator& shared();

    // A translator that asks the creator for the layout at each use.
    explicit SRKeyCodeTranslator(InputSourceCreator creator);
    // A translator on one fixed layout.
    explicit SRKeyCodeTranslator(std::shared_ptr<platform::InputSource> inputSource);
    virtual ~SRKeyCodeTranslator() = default;
    SRKeyCodeTranslator(const SRKeyCodeTranslator&) = delete;
    SRKeyCodeTranslator& operator=(const SRKeyCodeTranslator&) = delete;

    std::shared_ptr<platform::InputSource> inputSource() const;

    // The text of a key with the implicit flags applied; the explicit flags
    // only separate cache entries. SRKeyCodeNone gives the empty text.
    std::optional<std::string> translateKeyCode(SRKeyCode keyCode,
                                                SRModifierFlags implicitModifierFlags,
                                                SRModifierFlags explicitModifierFlags,
                                                bool usingCache);

    std::size_t cachedTranslationCount() const;

  protected:
    std::recursive_mutex& lock() const { return lock_; }

  private:
    // The platform's cache may drop entries whenever it likes; this one
    // forgets everything once it grows past a bound no real use reaches.
    static constexpr std::size_t cacheLimit = 16384;

    std::optional<std::string> translateWithLayout(const platform::InputSource& source,
                                                   SRKeyCode keyCode,
                                                   SRModifierFlags implicitModifierFlags);

    InputSourceCreator inputSourceCreator_;
    std::shared_ptr<platform::InputSource> fixedInputSource_;
    std::unordered_map<SRKeyCodeTranslatorCacheKey, std::string,
                       SRKeyCodeTranslatorCacheKey::Hasher>
        cache_;
    mutable std::recursive_mutex lock_;
};

// The layout service's modifier state for the implicit flags.
std::uint32_t SRModifierStateForFlags(SRModifierFlags flags);

}  // namespace lirixkro::detail
