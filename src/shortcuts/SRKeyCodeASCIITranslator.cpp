#include "shortcuts/SRKeyCodeASCIITranslator.h"

#include <cassert>

#include "platform/Platform.h"
#include "shortcuts/SRKeyCodeTables.h"
#include "shortcuts/SRText.h"
#include "support/Log.h"

namespace lirixkro::detail {

using quillbox::Log;

namespace {

std::shared_ptr<platform::InputSource> currentASCIICapableKeyboardLayout() {
    auto* layouts = platform::installed().keyboardLayouts;
    return layouts ? layouts->copyCurrentASCIICapableKeyboardLayoutInputSource() : nullptr;
}

}  // namespace

SRKeyCodeASCIITranslator& SRKeyCodeASCIITranslator::shared() {
    static SRKeyCodeASCIITranslator translator(currentASCIICapableKeyboardLayout);
    return translator;
}

std::optional<SRKeyCode> SRKeyCodeASCIITranslator::keyCodeForTranslation(
    const std::string& translation) {
    assert(translation == SRLowercased(translation) && "the translation must be lower-case");

    auto source = inputSource();
    if (!source) {
        Log::fault("#Critical Failed to create an input source");
        return std::nullopt;
    }
    auto identifier = source->identifier();
    if (!identifier) {
        Log::error("#Error Input source misses an ID");
        return std::nullopt;
    }

    std::lock_guard guard(lock());
    if (identifier != mapIdentifier_) {
        Log::debug("Updating translation -> key code mapping");
        rebuildTranslationMap();
        mapIdentifier_ = std::move(identifier);
    }
    auto found = translationToKeyCode_.find(translation);
    if (found == translationToKeyCode_.end())
        return std::nullopt;
    return found->second;
}

void SRKeyCodeASCIITranslator::rebuildTranslationMap() {
    // Later keys overwrite earlier ones with the same text: the keypad's
    // digits win over the number row's, which is why the reverse transformers
    // read digits themselves before they ask here.
    std::map<std::string, SRKeyCode> map;
    for (SRKeyCode keyCode : SRKnownKeyCodes()) {
        auto text = translateKeyCode(keyCode, 0, 0, true);
        if (text && !text->empty())
            map[*text] = keyCode;
    }
    translationToKeyCode_ = std::move(map);
}

}  // namespace lirixkro::detail
