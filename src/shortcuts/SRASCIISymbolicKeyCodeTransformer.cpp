#include "shortcuts/SRASCIISymbolicKeyCodeTransformer.h"

#include "shortcuts/SRKeyCodeASCIITranslator.h"
#include "shortcuts/SRKeyCodeTables.h"
#include "shortcuts/SRText.h"
#include "support/Log.h"

namespace lirixkro {

using quillbox::Log;

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
        keyCode =
            translator().keyCodeForTranslation(detail::SRLowercased(detail::SRUTF8(characters[0])));
    }
    if (!keyCode)
        Log::error("#Error Invalid value for reverse transformation");
    return keyCode;
}

}  // namespace lirixkro
