#include "shortcuts/SRShortcutValidator.h"

#include <vector>

#include "platform/Platform.h"
#include "recorder/SRRecorderControl.h"
#include "shortcuts/LirixkroStrings.h"
#include "shortcuts/SRMenuItemPath.h"
#include "shortcuts/SRShortcut.h"
#include "support/Log.h"

namespace lirixkro {

using quillbox::Log;
using quillbox::LogActivity;

namespace {

// The four flags from the hot key service's numbering.
SRModifierFlags flagsOfCarbonModifiers(std::uint32_t modifiers) {
    const SRModifierFlags m = modifiers;
    return ((m * 4096) & SRCommandFlag) | ((m * 256) & SROptionFlag) | ((m * 256) & SRShiftFlag) |
           ((m * 64) & SRControlFlag);
}

std::shared_ptr<platform::Menu> applicationMainMenu() {
    auto* application = platform::installed().application;
    return application ? application->mainMenu() : nullptr;
}

}  // namespace

bool SRShortcutValidator::validateShortcut(const SRShortcut& shortcut, SRValidationError* error) {
    LogActivity activity("-[SRShortcutValidator validateShortcut:error:]");
    if (!validateShortcutAgainstDelegate(shortcut, error))
        return false;

    auto delegate = delegate_.lock();
    const bool checkSystem =
        !delegate || delegate->shortcutValidatorShouldCheckSystemShortcuts(*this).value_or(true);
    if (checkSystem && !validateShortcutAgainstSystemShortcuts(shortcut, error))
        return false;

    if (delegate && !delegate->shortcutValidatorShouldCheckMenu(*this).value_or(true))
        return true;
    if (auto menu = applicationMainMenu())
        return validateShortcutAgainstMenu(shortcut, *menu, error);
    return true;
}

bool SRShortcutValidator::validateShortcutAgainstDelegate(const SRShortcut& shortcut,
                                                          SRValidationError* error) {
    LogActivity activity("-[SRShortcutValidator validateShortcutAgainstDelegate:error:]");
    auto delegate = delegate_.lock();
    if (!delegate)
        return true;

    std::string reason;
    bool valid = true;
    if (auto answer = delegate->shortcutValidatorIsShortcutValid(*this, shortcut, reason)) {
        valid = *answer;
    } else if (auto taken = delegate->shortcutValidatorIsKeyCodeAndFlagsTaken(
                   *this, shortcut.keyCode(), shortcut.modifierFlags(), reason)) {
        valid = !*taken;
    }
    if (valid)
        return true;
    if (error) {
        *error = reason.empty()
                     ? makeError(shortcut, SRLoc("The \"%@\" shortcut is already in use."), "")
                     : makeError(shortcut, SRLoc("The \"%@\" shortcut can't be used because %@."),
                                 reason);
    }
    return false;
}

bool SRShortcutValidator::validateShortcutAgainstSystemShortcuts(const SRShortcut& shortcut,
                                                                 SRValidationError* error) {
    LogActivity activity("-[SRShortcutValidator validateShortcutAgainstSystemShortcuts:error:]");
    std::vector<platform::SymbolicHotKey> hotKeys;
    if (const auto status = platform::hotKeys().copySymbolicHotKeys(hotKeys); status != 0) {
        Log::error(quillbox::formatText("#Error Unable to read System Shortcuts: %d", status));
        return false;
    }
    for (const auto& hotKey : hotKeys) {
        if (!hotKey.enabled || hotKey.keyCode != shortcut.keyCode())
            continue;
        if (flagsOfCarbonModifiers(hotKey.modifiers) != shortcut.modifierFlags())
            continue;
        if (error) {
            *error = makeError(
                shortcut,
                SRLoc("The \"%@\" shortcut can't be used because it's already used by a "
                      "system-wide keyboard shortcut. If you really want to use this shortcut, "
                      "most shortcuts can be changed in the Keyboard panel in System "
                      "Preferences."),
                "");
        }
        return false;
    }
    return true;
}

bool SRShortcutValidator::validateShortcutAgainstMenu(const SRShortcut& shortcut,
                                                      const platform::Menu& menu,
                                                      SRValidationError* error) {
    LogActivity activity("-[SRShortcutValidator validateShortcut:againstMenu:error:]");
    for (const auto& item : menu.itemArray()) {
        if (item->submenu() && !validateShortcutAgainstMenu(shortcut, *item->submenu(), error)) {
            return false;
        }
        if (item->keyEquivalent().empty())
            continue;
        if (!shortcut.isEqualToKeyEquivalent(item->keyEquivalent(),
                                             item->keyEquivalentModifierMask())) {
            continue;
        }
        if (error) {
            *error = makeError(
                shortcut,
                SRLoc("The \"%@\" shortcut can't be used because it's already used by the "
                      "\"%@\" menu item."),
                SR_path(*item));
        }
        return false;
    }
    return true;
}

std::optional<bool> SRShortcutValidator::recorderControlCanRecordShortcut(
    SRRecorderControl& control, const SRShortcut& shortcut) {
    SRValidationError error;
    if (validateShortcut(shortcut, &error))
        return true;
    // Unreadable system shortcuts refuse without an error: nothing to show.
    if (error.localizedDescription.empty())
        return false;
    auto* host = control.host();
    if (!host || !host->presentErrorAsSheet(error))
        SRPresentErrorByApplication(error);
    return false;
}

SRValidationError SRShortcutValidator::makeError(const SRShortcut& shortcut,
                                                 const std::string& reasonFormat,
                                                 const std::string& detail) {
    auto delegate = delegate_.lock();
    const bool ascii =
        delegate &&
        delegate->shortcutValidatorShouldUseASCIIStringForKeyCodes(*this).value_or(false);
    const std::string name = shortcut.readableStringRepresentation(ascii);
    SRValidationError error;
    error.localizedDescription =
        SRFormatObjects(SRLoc("The \"%@\" shortcut can't be used!"), {name});
    error.localizedFailureReason = SRFormatObjects(reasonFormat, {name, detail});
    return error;
}

}  // namespace lirixkro
