#pragma once

#include <optional>
#include <string>

#include "shortcuts/SRCommon.h"

namespace lirixkro {

class SRShortcut;
class SRShortcutValidator;

// What a validator may ask its delegate. Every operation is optional: the
// default answers std::nullopt, which means "not offered", and the validator
// then goes on as if the delegate didn't have it. A delegate overrides the
// operations it offers and answers with a value.
class SRShortcutValidatorDelegate {
  public:
    virtual ~SRShortcutValidatorDelegate() = default;

    // Whether the shortcut may be used; the delegate may write a reason.
    virtual std::optional<bool> shortcutValidatorIsShortcutValid(SRShortcutValidator&,
                                                                 const SRShortcut&,
                                                                 std::string& /*reason*/) {
        return std::nullopt;
    }
    // The older form, asked only when the first isn't offered: true when the
    // key and flags are taken.
    virtual std::optional<bool> shortcutValidatorIsKeyCodeAndFlagsTaken(SRShortcutValidator&,
                                                                        SRKeyCode, SRModifierFlags,
                                                                        std::string& /*reason*/) {
        return std::nullopt;
    }
    virtual std::optional<bool> shortcutValidatorShouldCheckSystemShortcuts(SRShortcutValidator&) {
        return std::nullopt;
    }
    virtual std::optional<bool> shortcutValidatorShouldCheckMenu(SRShortcutValidator&) {
        return std::nullopt;
    }
    virtual std::optional<bool> shortcutValidatorShouldUseASCIIStringForKeyCodes(
        SRShortcutValidator&) {
        return std::nullopt;
    }
};

}  // namespace lirixkro
