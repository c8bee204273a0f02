#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "shortcuts/SRCommon.h"
#include "shortcuts/SRValue.h"

namespace lirixkro {

// Renders a shortcut as text, modifiers first ("⇧⌘K"), and reads the default
// form back.
class SRShortcutFormatter {
  public:
    // Literal key code on the ASCII-capable layout, symbolic modifiers, the
    // application's layout direction.
    SRShortcutFormatter();

    bool isKeyCodeLiteral() const { return isKeyCodeLiteral_; }
    void setKeyCodeLiteral(bool literal) { isKeyCodeLiteral_ = literal; }
    bool areModifierFlagsLiteral() const { return areModifierFlagsLiteral_; }
    void setModifierFlagsLiteral(bool literal) { areModifierFlagsLiteral_ = literal; }
    bool usesASCIICapableKeyboardInputSource() const { return usesASCII_; }
    void setUsesASCIICapableKeyboardInputSource(bool ascii) { usesASCII_ = ascii; }
    SRLayoutDirection layoutDirection() const { return layoutDirection_; }
    void setLayoutDirection(SRLayoutDirection direction) { layoutDirection_ = direction; }

    // Nothing for anything but a shortcut.
    std::optional<std::string> stringForObjectValue(const SRValue& value) const;
    std::string stringForShortcut(const SRShortcut& shortcut) const;

    // Reads the text back, which only the default form (literal ASCII key
    // code, symbolic modifiers, left to right) allows. True when a shortcut
    // came out; it is written to the out-parameter where there is one.
    bool getObjectValue(SRShortcutRef* object, std::string_view string,
                        std::string* errorDescription) const;

  private:
    bool isKeyCodeLiteral_ = true;
    bool areModifierFlagsLiteral_ = false;
    bool usesASCII_ = true;
    SRLayoutDirection layoutDirection_;
};

}  // namespace lirixkro
