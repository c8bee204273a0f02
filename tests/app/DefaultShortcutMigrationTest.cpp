#include <gtest/gtest.h>

#include "platform/Platform.h"
#include "platform/PropertyListCodec.h"
#include "platform/sim/SimMainLoop.h"
#include "platform/sim/SimPreferencesStore.h"
#include "settings/DefaultShortcutMigration.h"
#include "settings/SettingsKeys.h"
#include "support/InstalledPreferences.h"

using platform::PropertyList;
using quillbox::DefaultsManager;

namespace {

class DefaultShortcutMigrationTest : public ::testing::Test,
                                     protected testsupport::InstalledPreferences {
  protected:
    DefaultShortcutMigrationTest() { DefaultsManager::clearMigrations(); }
    ~DefaultShortcutMigrationTest() override { DefaultsManager::clearMigrations(); }

    // One start of the program against the store as it stands.
    void start() {
        DefaultsManager::clearMigrations();
        tarnwick::runPreferenceMigrations();
    }
};

}  // namespace

TEST_F(DefaultShortcutMigrationTest, AFirstStartStoresTheChordAsABinaryPropertyList) {
    start();

    auto stored = store.objectForKey("activationShortcut");
    ASSERT_TRUE(stored && stored->is<PropertyList::Data>());
    const auto& bytes = *stored->get<PropertyList::Data>();
    ASSERT_GE(bytes.size(), 8u);
    EXPECT_EQ(std::string(bytes.begin(), bytes.begin() + 8), "bplist00");
    EXPECT_EQ(
        platform::PropertyListCodec::decode(bytes),
        PropertyList(PropertyList::Dictionary{{"keyCode", 65535u}, {"modifierFlags", 917504u}}));
    EXPECT_EQ(store.objectForKey("com.quillbox.defaultsVersion"), PropertyList(0));
}

TEST_F(DefaultShortcutMigrationTest, LaterStartsLeaveAChangedOrClearedShortcutAlone) {
    start();
    lirixkro::SRShortcut::SelfCodable commandA{0, 0x100000, "a", "a"};
    DefaultsManager::shared().setValue(commandA, tarnwick::activationShortcut);
    start();
    EXPECT_EQ(DefaultsManager::shared().getValue(tarnwick::activationShortcut), commandA);

    DefaultsManager::shared().removeValue(tarnwick::activationShortcut);
    start();
    EXPECT_FALSE(DefaultsManager::shared().getValue(tarnwick::activationShortcut));
}

TEST_F(DefaultShortcutMigrationTest, AShortcutStoredBeforeTheFirstStartIsKept) {
    lirixkro::SRShortcut::SelfCodable f5{96, 0, std::nullopt, std::nullopt};
    DefaultsManager::shared().setValue(f5, tarnwick::activationShortcut);
    start();
    EXPECT_EQ(DefaultsManager::shared().getValue(tarnwick::activationShortcut), f5);
}
