#include "settings/DefaultShortcutMigration.h"

#include "settings/SettingsKeys.h"

namespace tarnwick {

void addDefaultShortcutMigration() {
    quillbox::DefaultsManager::addMigration(quillbox::Migration(0, [] {
        auto& defaults = quillbox::DefaultsManager::shared();
        if (defaults.getValue(activationShortcut))
            return;
        // Modifier symbols alone: the key code is "none" and the chord is the
        // three modifiers pressed together.
        auto shortcut = lirixkro::SRShortcut::shortcutWithKeyEquivalent("⌃⌥⇧");
        if (!shortcut)
            return;
        defaults.setValue(lirixkro::SRShortcut::SelfCodable::fromShortcut(*shortcut),
                          activationShortcut);
    }));
}

void runPreferenceMigrations() {
    addDefaultShortcutMigration();
    quillbox::DefaultsManager::runMigrations();
}

}  // namespace tarnwick
