#include "shortcuts/SRKeyBindingTransformer.h"

#include <string_view>

#include "shortcuts/SRASCIISymbolicKeyCodeTransformer.h"
#include "shortcuts/SRKeyCodeTables.h"
#include "shortcuts/SRKeyEquivalentTransformer.h"
#include "shortcuts/SRShortcut.h"
#include "shortcuts/SRText.h"
#include "support/Log.h"

namespace lirixkro {

using quillbox::Log;

namespace {

constexpr std::u32string_view modifierMarks = U"^~$@#";

SRModifierFlags flagOfMark(char32_t mark) {
    switch (mark) {
        case U'^':
            return SRControlFlag;
        case U'~':
            return SROptionFlag;
        case U'$':
            return SRShiftFlag;
        case U'@':
            return SRCommandFlag;
        default:
            return 0;
    }
}

std::optional<std::string> asciiSymbol(SRKeyCode keyCode, SRModifierFlags implicitFlags) {
    return SRASCIISymbolicKeyCodeTransformer::sharedTransformer()->transformedValue(
        SRNumber(keyCode), implicitFlags, 0, SRLayoutDirection::leftToRight);
}

}  // namespace

std::shared_ptr<const SRKeyBindingTransformer> SRKeyBindingTransformer::sharedTransformer() {
    static const auto shared = std::make_shared<const SRKeyBindingTransformer>();
    return shared;
}

SRShortcutRef SRKeyBindingTransformer::transformedValue(const SRValue& value) const {
    const auto* text = std::get_if<std::string>(&value);
    if (!text || text->empty())
        return nullptr;

    const std::u32string characters = detail::SRCharacters(*text);
    std::size_t prefixLength = 0;
    while (prefixLength < characters.size() &&
           modifierMarks.find(characters[prefixLength]) != std::u32string_view::npos) {
        ++prefixLength;
    }
    if (characters.size() - prefixLength != 1) {
        Log::error("#Error unexpected key symbol");
        return nullptr;
    }

    const std::u32string_view prefix(characters.data(), prefixLength);
    SRModifierFlags flags = 0;
    for (char32_t mark : prefix)
        flags |= flagOfMark(mark);
    const std::string key = detail::SRUTF8(characters.back());
    const std::string lowercasedKey = detail::SRLowercased(key);
    if (lowercasedKey != key)
        flags |= SRShiftFlag;

    auto keyCode = SRASCIISymbolicKeyCodeTransformer::sharedTransformer()->reverseTransformedValue(
        lowercasedKey);
    if (!keyCode) {
        Log::error("#Error unexpected key symbol");
        return nullptr;
    }
    if (prefix.find(U'#') != std::u32string_view::npos) {
        keyCode = detail::SRKeypadKeyCodeFor(*keyCode).value_or(*keyCode);
    }
    return SRShortcut::shortcutWithCode(*keyCode, flags, asciiSymbol(*keyCode, flags),
                                        asciiSymbol(*keyCode, 0));
}

std::optional<std::string> SRKeyBindingTransformer::reverseTransformedValue(
    const SRValue& value) const {
    const auto dictionary = SRShortcutDictionaryIn(value);
    if (!dictionary) {
        Log::error("#Error invalid class of the value");
        return std::nullopt;
    }
    const auto* keyCodeEntry = SREntry(*dictionary, "keyCode");
    const auto keyCodeNumber = keyCodeEntry ? SRNumberIn(*keyCodeEntry) : std::nullopt;
    if (!keyCodeNumber) {
        Log::error("#Error invalid key code");
        return std::nullopt;
    }
    const SRKeyCode keyCode = keyCodeNumber->unsignedShortValue();
    auto keyText =
        SRASCIISymbolicKeyCodeTransformer::sharedTransformer()->transformedValue(SRNumber(keyCode));
    if (!keyText) {
        Log::error("#Error unexpected key code");
        return std::nullopt;
    }
    const auto* flagsEntry = SREntry(*dictionary, "modifierFlags");
    const SRModifierFlags flags =
        (flagsEntry ? SRNumberIn(*flagsEntry) : std::nullopt).value_or(SRNumber(0)).value;

    std::string binding;
    if (flags & SRControlFlag)
        binding += '^';
    if (flags & SROptionFlag)
        binding += '~';
    if (flags & SRShiftFlag)
        binding += '$';
    if (flags & SRCommandFlag)
        binding += '@';
    if (detail::SRIsKeypadKeyCode(keyCode))
        binding += '#';
    return binding + *keyText;
}

}  // namespace lirixkro
