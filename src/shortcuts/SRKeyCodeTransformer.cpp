#include "shortcuts/SRKeyCodeTransformer.h"

#include "shortcuts/LirixkroStrings.h"
#include "shortcuts/SRKeyCodeTables.h"
#include "shortcuts/SRKeyCodeTranslator.h"
#include "shortcuts/SRShortcut.h"
#include "shortcuts/SRSymbolicKeyCodeTransformer.h"
#include "shortcuts/SRText.h"
#include "support/Log.h"

namespace lirixkro {

using quillbox::Log;

SRKeyCodeTransformer::SRKeyCodeTransformer(std::shared_ptr<detail::SRKeyCodeTranslator> translator)
    : translator_(std::move(translator)) {}

std::shared_ptr<const SRKeyCodeTransformer> SRKeyCodeTransformer::sharedTransformer() {
    return SRSymbolicKeyCodeTransformer::sharedTransformer();
}

std::shared_ptr<const SRKeyCodeTransformer> SRKeyCodeTransformer::make() {
    Log::error("#Developer #Error Use SRSymbolicKeyCodeTransformer instead");
    return SRSymbolicKeyCodeTransformer::sharedTransformer();
}

std::shared_ptr<const SRKeyCodeTransformer> SRKeyCodeTransformer::makeWithInputSource(
    std::shared_ptr<platform::InputSource> inputSource) {
    Log::error("#Developer #Error Use SRSymbolicKeyCodeTransformer instead");
    return SRSymbolicKeyCodeTransformer::makeWithInputSource(std::move(inputSource));
}

const std::vector<SRKeyCode>& SRKeyCodeTransformer::knownKeyCodes() {
    return detail::SRKnownKeyCodes();
}

std::shared_ptr<platform::InputSource> SRKeyCodeTransformer::inputSource() const {
    return translator_->inputSource();
}

std::optional<std::string> SRKeyCodeTransformer::literalForKeyCode(
    SRKeyCode keyCode, SRModifierFlags implicitModifierFlags, SRModifierFlags explicitModifierFlags,
    SRLayoutDirection direction) const {
    const bool rightToLeft = direction == SRLayoutDirection::rightToLeft;
    switch (keyCode) {
        case 48: {
            const bool backTab = ((implicitModifierFlags & SRShiftFlag) != 0) != rightToLeft;
            return backTab ? "⇤" : "⇥";
        }
        case 49:
            return SRLoc("Space");
        case 51:
            return rightToLeft ? "⌦" : "⌫";
        case 117:
            return rightToLeft ? "⌫" : "⌦";
        default:
            break;
    }
    if (auto fixed = detail::SRFixedLiteral(keyCode))
        return fixed;
    if (auto number = detail::SRFunctionKeyNumber(keyCode))
        return "F" + std::to_string(*number);

    auto translation =
        translator_->translateKeyCode(keyCode, implicitModifierFlags, explicitModifierFlags, true);
    if (!translation)
        return std::nullopt;
    return detail::SRUppercased(*translation);
}

std::optional<std::string> SRKeyCodeTransformer::symbolForKeyCode(
    SRKeyCode keyCode, SRModifierFlags implicitModifierFlags, SRModifierFlags explicitModifierFlags,
    SRLayoutDirection) const {
    if (auto symbol = detail::SRFixedSymbol(keyCode))
        return detail::SRUTF8(*symbol);
    return translator_->translateKeyCode(keyCode, implicitModifierFlags, explicitModifierFlags,
                                         true);
}

std::optional<std::string> SRKeyCodeTransformer::transformedValue(const SRValue&, SRModifierFlags,
                                                                  SRModifierFlags,
                                                                  SRLayoutDirection) const {
    return std::nullopt;
}

std::optional<std::string> SRKeyCodeTransformer::transformedValue(const SRValue& value) const {
    if (const auto* shortcut = std::get_if<SRShortcutRef>(&value); shortcut && *shortcut) {
        return transformedValue(SRNumber((*shortcut)->keyCode()), 0, (*shortcut)->modifierFlags(),
                                SRLayoutDirection::leftToRight);
    }
    return transformedValue(value, 0, 0, SRLayoutDirection::leftToRight);
}

std::optional<SRKeyCode> SRKeyCodeTransformer::reverseTransformedValue(const SRValue&) const {
    return std::nullopt;
}

std::optional<std::string> SRKeyCodeTransformer::transformKeyCode(
    const char* activity, Form form, const SRValue& value, SRModifierFlags implicitModifierFlags,
    SRModifierFlags explicitModifierFlags, SRLayoutDirection direction) const {
    quillbox::LogActivity scope(activity);
    const auto number = SRNumberIn(value);
    if (!number) {
        Log::error("#Error Invalid key code");
        return std::nullopt;
    }
    const SRKeyCode keyCode = number->unsignedShortValue();
    return form == Form::literal
               ? literalForKeyCode(keyCode, implicitModifierFlags, explicitModifierFlags, direction)
               : symbolForKeyCode(keyCode, implicitModifierFlags, explicitModifierFlags, direction);
}

}  // namespace lirixkro
