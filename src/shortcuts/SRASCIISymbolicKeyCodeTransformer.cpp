#include "shortcuts/SRASCIISymbolicKeyCodeTransformer.h"

#include "shortcuts/SRKeyCodeASCIITranslator.h"
#include "shortcuts/SRKeyCodeTables.h"
#include "shortcuts/SRText.h"
#include "support/Log.h"

namespace lirixkro {

using quillbox::Log;

std::shared_ptr<const SRASCIISymbolicKeyCodeTransformer>
SRASCIISymbolicKeyCodeTransformer::sharedTransformer() {
    static const std::shared_ptr<const SRASCIISymbolicKeyCodeTransformer> shared(
        new SRASCIISymbolicKeyCodeTransformer(std::shared_ptr<detail::SRKeyCodeTranslator>(
            std::shared_ptr<void>(), &detail::SRKeyCodeASCIITranslator::shared())));
    return shared;
}

std::shared_ptr<const SRASCIISymbolicKeyCodeTransformer>
SRASCIISymbolicKeyCodeTransformer::makeWithInputSource(
    std::shared_ptr<platform::InputSource> inputSource) {
    return std::shared_ptr<const SRASCIISymbolicKeyCodeTransformer>(
        new SRASCIISymbolicKeyCodeTransformer(
            std::make_shared<detail::SRKeyCodeASCIITranslator>(std::move(inputSource))));
}

detail::SRKeyCodeASCIITranslator& SRASCIISymbolicKeyCodeTransformer::asciiTranslator() const {
    // Every instance of this class is made with an ASCII translator.
    return static_cast<detail::SRKeyCodeASCIITranslator&>(translator());
}

std::optional<std::string> SRASCIISymbolicKeyCodeTransformer::transformedValue(
    const SRValue& value, SRModifierFlags implicitModifierFlags,
    SRModifierFlags explicitModifierFlags, SRLayoutDirection direction) const {
    return transformKeyCode("Key Code -> ASCII Symbol", Form::symbolic, value,
                            implicitModifierFlags, explicitModifierFlags, direction);
}

std::optional<SRKeyCode> SRASCIISymbolicKeyCodeTransformer::reverseTransformedValue(
    const SRValue& value) const {
    quillbox::LogActivity scope("ASCII Symbol -> Key Code");
    const auto* text = std::get_if<std::string>(&value);
    const std::u32string characters = text ? detail::SRCharacters(*text) : std::u32string();
    // The empty text has no character to read, and counts as invalid too.
    if (!text || characters.size() != 1) {
        Log::error("#Error Invalid ASCII symbol");
        return std::nullopt;
    }
    auto keyCode = detail::SRKeyCodeForSymbolCharacter(characters[0]);
    if (!keyCode) {
        keyCode = asciiTranslator().keyCodeForTranslation(
            detail::SRLowercased(detail::SRUTF8(characters[0])));
    }
    if (!keyCode)
        Log::error("#Error Invalid value for reverse transformation");
    return keyCode;
}

}  // namespace lirixkro
