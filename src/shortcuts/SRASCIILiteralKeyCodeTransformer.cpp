#include "shortcuts/SRASCIILiteralKeyCodeTransformer.h"

#include "shortcuts/LirixkroStrings.h"
#include "shortcuts/SRKeyCodeASCIITranslator.h"
#include "shortcuts/SRKeyCodeTables.h"
#include "shortcuts/SRText.h"
#include "support/Log.h"

namespace lirixkro {

using quillbox::Log;

namespace {

// "f1" to "f9" and "f10" to "f20" name the function keys; "f01" does not.
std::optional<SRKeyCode> functionKeyNamed(const std::u32string& characters) {
    if ((characters.size() != 2 && characters.size() != 3) || characters[0] != U'f') {
        return std::nullopt;
    }
    int number = 0;
    for (std::size_t i = 1; i < characters.size(); ++i) {
        if (characters[i] < U'0' || characters[i] > U'9')
            return std::nullopt;
        number = number * 10 + static_cast<int>(characters[i] - U'0');
    }
    const bool inRange =
        characters.size() == 2 ? (number >= 1 && number <= 9) : (number >= 10 && number <= 20);
    if (!inRange)
        return std::nullopt;
    return detail::SRKeyCodeForFunctionKey(number);
}

std::optional<SRKeyCode> keyCodeNamed(const std::string& lowercased) {
    if (lowercased == detail::SRLowercased(SRLoc("Space")) || lowercased == "space")
        return 49;
    if (lowercased == "esc" || lowercased == "escape")
        return 53;
    if (lowercased == "tab")
        return 48;
    if (lowercased == "help" || lowercased == "?⃝")
        return 114;
    if (lowercased == "enter")
        return 36;
    return std::nullopt;
}

}  // namespace

std::optional<SRKeyCode> SRASCIILiteralKeyCodeTransformer::reverseTransformedValue(
    const SRValue& value) const {
    quillbox::LogActivity scope("ASCII Literal -> Key Code");
    const auto* text = std::get_if<std::string>(&value);
    if (!text || text->empty()) {
        Log::error("#Error Invalid ASCII literal");
        return std::nullopt;
    }
    const std::string lowercased = detail::SRLowercased(*text);
    const std::u32string characters = detail::SRCharacters(lowercased);

    std::optional<SRKeyCode> keyCode;
    if (characters.size() == 1)
        keyCode = detail::SRKeyCodeForLiteralCharacter(characters[0]);
    if (!keyCode)
        keyCode = functionKeyNamed(characters);
    if (!keyCode)
        keyCode = keyCodeNamed(lowercased);
    if (!keyCode)
        keyCode = translator().keyCodeForTranslation(lowercased);
    if (!keyCode)
        Log::error("#Error Invalid value for reverse transformation");
    return keyCode;
}

}  // namespace lirixkro
