#include <gtest/gtest.h>

#include "settings/DefaultShortcutMigration.h"
#include "settings/SettingsKeys.h"
#include "support/InstalledPreferences.h"

using platform::PropertyList;
using quillbox::DefaultsManager;
using SelfCodable = lirixkro::SRShortcut::SelfCodable;

namespace {

class DefaultShortcutMigrationTest : public ::testing::Test,
                                     protected testsupport::InstalledPreferences {
  protected:
    ~DefaultShortcutMigrationTest() override { DefaultsManager::clearMigrations(); }

    // One start of the program against the store as it stands.
    void start() {
        DefaultsManager::clearMigrations();
        tarnwick::runPreferenceMigrations();
    }
    std::optional<SelfCodable> stored() {
        return DefaultsManager::shared().getValue(tarnwick::activationShortcut);
    }
};

}  // namespace

TEST_F(DefaultShortcutMigrationTest, AFirstStartStoresTheChordAndLaterStartsLeaveChangesAlone) {
    start();
    EXPECT_EQ(stored(), (SelfCodable{65535, 0xE0000, std::nullopt, std::nullopt}));
    EXPECT_TRUE(store.objectForKey("activationShortcut")->is<PropertyList::Data>());
    EXPECT_EQ(store.objectForKey("com.quillbox.defaultsVersion"), PropertyList(0));

    const SelfCodable commandA{0, 0x100000, "a", "a"};
    DefaultsManager::shared().setValue(commandA, tarnwick::activationShortcut);
    start();
    EXPECT_EQ(stored(), commandA);

    DefaultsManager::shared().removeValue(tarnwick::activationShortcut);
    start();
    EXPECT_FALSE(stored());
}

TEST_F(DefaultShortcutMigrationTest, AShortcutStoredBeforeTheFirstStartIsKept) {
    const SelfCodable f5{96, 0, std::nullopt, std::nullopt};
    DefaultsManager::shared().setValue(f5, tarnwick::activationShortcut);
    start();
    EXPECT_EQ(stored(), f5);
}
