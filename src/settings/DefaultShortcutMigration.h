#pragma once

namespace tarnwick {

// Registers the one preferences migration, version 0: a first start stores
// the default chord, Control-Option-Shift with no key, unless a shortcut is
// already there.
void addDefaultShortcutMigration();

// The start of the process: register the migrations and run them, before
// anything else reads a preference.
void runPreferenceMigrations();

}  // namespace tarnwick
