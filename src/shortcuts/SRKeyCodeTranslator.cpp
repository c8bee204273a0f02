#include "shortcuts/SRKeyCodeTranslator.h"

#include "platform/Platform.h"
#include "support/Log.h"

namespace lirixkro::detail {

using quillbox::Log;

namespace {

std::shared_ptr<platform::InputSource> currentKeyboardLayout() {
    auto* layouts = platform::installed().keyboardLayouts;
    return layouts ? layouts->copyCurrentKeyboardLayoutInputSource() : nullptr;
}

}  // namespace

std::uint32_t SRModifierStateForFlags(SRModifierFlags flags) {
    std::uint32_t state = 0;
    if (flags & SRCommandFlag)
        state |= platform::keyModifierState::command;
    if (flags & SRShiftFlag)
        state |= platform::keyModifierState::shift;
    if (flags & SROptionFlag)
        state |= platform::keyModifierState::option;
    if (flags & SRControlFlag)
        state |= platform::keyModifierState::control;
    return state;
}

SRKeyCodeTranslator& SRKeyCodeTranslator::shared() {
    static SRKeyCodeTranslator translator(currentKeyboardLayout);
    return translator;
}

SRKeyCodeTranslator::SRKeyCodeTranslator(InputSourceCreator creator)
    : inputSourceCreator_(std::move(creator)) {}

SRKeyCodeTranslator::SRKeyCodeTranslator(std::shared_ptr<platform::InputSource> inputSource)
    : fixedInputSource_(std::move(inputSource)) {}

std::shared_ptr<platform::InputSource> SRKeyCodeTranslator::inputSource() const {
    return inputSourceCreator_ ? inputSourceCreator_() : fixedInputSource_;
}

std::size_t SRKeyCodeTranslator::cachedTranslationCount() const {
    std::lock_guard guard(lock_);
    return cache_.size();
}

std::optional<std::string> SRKeyCodeTranslator::translateKeyCode(
    SRKeyCode keyCode, SRModifierFlags implicitModifierFlags, SRModifierFlags explicitModifierFlags,
    bool usingCache) {
    if (keyCode == SRKeyCodeNone)
        return std::string();

    auto source = inputSource();
    if (!source) {
        Log::fault("#Critical Failed to create an input source");
        return std::nullopt;
    }

    std::optional<SRKeyCodeTranslatorCacheKey> key;
    if (usingCache) {
        if (auto identifier = source->identifier()) {
            key.emplace(std::move(*identifier), implicitModifierFlags, explicitModifierFlags,
                        keyCode);
        } else {
            Log::error("#Error Input source misses an ID");
        }
    }

    std::lock_guard guard(lock_);
    if (key) {
        if (auto hit = cache_.find(*key); hit != cache_.end()) {
            Log::debug("Translation cache hit");
            return hit->second;
        }
        Log::debug("Translation cache miss");
    }

    auto text = translateWithLayout(*source, keyCode, implicitModifierFlags);
    if (text && key) {
        if (cache_.size() >= cacheLimit)
            cache_.clear();
        cache_.emplace(std::move(*key), *text);
    }
    return text;
}

std::optional<std::string> SRKeyCodeTranslator::translateWithLayout(
    const platform::InputSource& source, SRKeyCode keyCode, SRModifierFlags implicitModifierFlags) {
    const auto translation =
        source.translate(keyCode, SRModifierStateForFlags(implicitModifierFlags));
    if (translation.status != 0) {
        Log::error(quillbox::formatText(
            "#Error Unable to translate keyCode %hu and modifierFlags %lu: %d", keyCode,
            static_cast<unsigned long>(implicitModifierFlags), translation.status));
        return std::nullopt;
    }
    if (translation.text.empty()) {
        Log::debug(quillbox::formatText(
            "#Error No translation exists for keyCode %hu and modifierFlags %lu", keyCode,
            static_cast<unsigned long>(implicitModifierFlags)));
        return std::nullopt;
    }
    return translation.text;
}

}  // namespace lirixkro::detail
