#pragma once

#include <memory>
#include <string>

#include "platform/Menu.h"
#include "recorder/SRRecorderControlDelegate.h"
#include "shortcuts/SRShortcutValidatorDelegate.h"
#include "shortcuts/SRValidationError.h"

namespace lirixkro {

// Decides whether a shortcut may be recorded: asks the delegate, then the
// system's own shortcuts, then the application's menu, and words a refusal.
// Each check gives true for valid; on a refusal it fills the error where the
// caller passes one. As a recorder control's delegate it shows a refusal.
class SRShortcutValidator : public SRRecorderControlDelegate {
  public:
    SRShortcutValidator() = default;
    explicit SRShortcutValidator(std::weak_ptr<SRShortcutValidatorDelegate> delegate)
        : delegate_(std::move(delegate)) {}

    std::shared_ptr<SRShortcutValidatorDelegate> delegate() const { return delegate_.lock(); }
    void setDelegate(std::weak_ptr<SRShortcutValidatorDelegate> delegate) {
        delegate_ = std::move(delegate);
    }

    bool validateShortcut(const SRShortcut& shortcut, SRValidationError* error);
    bool validateShortcutAgainstDelegate(const SRShortcut& shortcut, SRValidationError* error);
    // When the system's shortcuts can't be read the answer is no, with no
    // error to show.
    bool validateShortcutAgainstSystemShortcuts(const SRShortcut& shortcut,
                                                SRValidationError* error);
    bool validateShortcutAgainstMenu(const SRShortcut& shortcut, const platform::Menu& menu,
                                     SRValidationError* error);

    // Validates, and shows a refusal: as a sheet on the control's window if
    // it has one, else through the application.
    std::optional<bool> recorderControlCanRecordShortcut(SRRecorderControl& control,
                                                         const SRShortcut& shortcut) override;

  private:
    SRValidationError makeError(const SRShortcut& shortcut, const std::string& reasonFormat,
                                const std::string& detail);

    std::weak_ptr<SRShortcutValidatorDelegate> delegate_;
};

}  // namespace lirixkro
