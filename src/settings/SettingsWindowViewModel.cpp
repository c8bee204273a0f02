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
    std::shared_ptr<InteractionController> interactionController, platform::Updater* updater)
    : interactionController_(std::move(interactionController)), updater_(updater) {
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
    return updater_ && updater_->automaticallyChecksForUpdates();
}

void SettingsWindowView::ViewModel::setAutomaticallyChecksForUpdates(bool value) {
    if (updater_)
        updater_->setAutomaticallyChecksForUpdates(value);
}

void SettingsWindowView::ViewModel::persist() const {
    std::optional<lirixkro::SRShortcut::SelfCodable> stored;
    if (shortcut_)
        stored = lirixkro::SRShortcut::SelfCodable::fromShortcut(*shortcut_);
    quillbox::DefaultsManager::shared()[activationShortcut] = stored;
}

}  // namespace tarnwick
