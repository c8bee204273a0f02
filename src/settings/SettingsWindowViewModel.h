#pragma once

#include <memory>

#include "listwindow/InteractionController.h"
#include "services/UpdateController.h"
#include "settings/SettingsWindowView.h"
#include "shortcuts/SRShortcut.h"
#include "support/Signal.h"

namespace tarnwick {

// The model behind the Settings window: the shortcut in the recorder, kept
// in step with the stored activation shortcut. Nothing is pushed to the rest
// of the program: the stored key is read again at every key event, so a
// recorded shortcut works as soon as it is stored and a cleared one switches
// activation off.
class SettingsWindowView::ViewModel {
  public:
    // Reads the stored shortcut and writes it back through the setter: a
    // value that can't be read is removed so.
    ViewModel(std::shared_ptr<InteractionController> interactionController,
              std::shared_ptr<UpdateController> updateController);
    ViewModel(const ViewModel&) = delete;
    ViewModel& operator=(const ViewModel&) = delete;

    const lirixkro::SRShortcutRef& shortcut() const { return shortcut_; }
    // Stores and persists every value; only a different one is announced.
    void setShortcut(lirixkro::SRShortcutRef shortcut);

    // The updater's own setting, read and written through, so that the
    // updater keeps it; the program keeps no copy.
    bool automaticallyChecksForUpdates() const;
    void setAutomaticallyChecksForUpdates(bool value);

    // Sent once for each announced change, after it.
    quillbox::Signal<>& changed() { return changed_; }

  private:
    void persist() const;

    lirixkro::SRShortcutRef shortcut_;
    std::shared_ptr<UpdateController> updateController_;
    // Kept with the model; no setting uses it.
    std::shared_ptr<InteractionController> interactionController_;
    quillbox::Signal<> changed_;
};

}  // namespace tarnwick
