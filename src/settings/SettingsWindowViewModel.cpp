#include "settings/SettingsWindowViewModel.h"

#include "settings/SettingsKeys.h"

namespace tarnwick {

namespace {

bool isSameShortcut(const lirixkro::SRShortcutRef& a, const lirixkro::SRShortcutRef& b) {
    if (!a || !b)
        return !a && !b;
    return *a == *b;
}

}  // namespace

SettingsWindowView::ViewModel::ViewModel(
    std::shared_ptr<InteractionController> interactionController,
    std::shared_ptr<UpdateController> updateController)
    : updateController_(std::move(updateController)),
      interactionController_(std::move(interactionController)) {
    const auto stored = quillbox::DefaultsManager::shared().getValue(activationShortcut);
    setShortcut(stored ? stored->toShortcut() : nullptr);
}

void SettingsWindowView::ViewModel::setShortcut(lirixkro::SRShortcutRef shortcut) {
    const bool changes = !isSameShortcut(shortcut, shortcut_);
    shortcut_ = std::move(shortcut);
    persist();
    if (changes)
        changed_.emit();
}

bool SettingsWindowView::ViewModel::automaticallyChecksForUpdates() const {
    return updateController_->updater().automaticallyChecksForUpdates();
}

void SettingsWindowView::ViewModel::setAutomaticallyChecksForUpdates(bool value) {
    updateController_->updater().setAutomaticallyChecksForUpdates(value);
}

void SettingsWindowView::ViewModel::persist() const {
    std::optional<lirixkro::SRShortcut::SelfCodable> stored;
    if (shortcut_)
        stored = lirixkro::SRShortcut::SelfCodable::fromShortcut(*shortcut_);
    quillbox::DefaultsManager::shared()[activationShortcut] = stored;
}

}  // namespace tarnwick
