#include <gtest/gtest.h>

#include "platform/Platform.h"
#include "platform/sim/SimMainLoop.h"
#include "platform/sim/SimPreferencesStore.h"
#include "settings/SettingsKeys.h"
#include "support/InstalledPreferences.h"
#include "support/StandardOutput.h"

using platform::PropertyList;
using quillbox::DefaultsManager;

namespace {

class SettingsKeysTest : public ::testing::Test, protected testsupport::InstalledPreferences {
  protected:
    DefaultsManager& defaults = DefaultsManager::shared();
};

}  // namespace

TEST_F(SettingsKeysTest, AnEmptyStoreGivesTheDefaults) {
    EXPECT_TRUE(defaults.getValue(tarnwick::hiddenApps).empty());
    EXPECT_TRUE(defaults.getValue(tarnwick::favoriteApps).empty());
    EXPECT_EQ(defaults.getValue(tarnwick::activationPolicy), platform::ActivationPolicy::accessory);
    EXPECT_TRUE(defaults.getValue(tarnwick::needsShowingInstructions));
    EXPECT_EQ(defaults.getValue(tarnwick::releaseChannel), "default");
}

TEST_F(SettingsKeysTest, AppSetsAreStoredAsArraysAndReadWithoutRepetition) {
    store.setObject("harrowmere.hiddenApps", PropertyList::Array{"org.a", "org.b", "org.a"});
    EXPECT_EQ(defaults.getValue(tarnwick::hiddenApps), (std::set<std::string>{"org.a", "org.b"}));

    defaults[tarnwick::favoriteApps] = std::set<std::string>{"org.c"};
    EXPECT_EQ(store.objectForKey("harrowmere.favoriteApps"),
              PropertyList(PropertyList::Array{"org.c"}));
}

TEST_F(SettingsKeysTest, TheActivationPolicyIsItsRawIntegerAppliedAsItStands) {
    store.setObject("harrowmere.activationPolicy", 0);
    EXPECT_EQ(defaults.getValue(tarnwick::activationPolicy), platform::ActivationPolicy::regular);
    store.setObject("harrowmere.activationPolicy", 2);
    EXPECT_EQ(defaults.getValue(tarnwick::activationPolicy),
              platform::ActivationPolicy::prohibited);
    store.setObject("harrowmere.activationPolicy", 7);
    EXPECT_EQ(static_cast<int>(defaults.getValue(tarnwick::activationPolicy)), 7);
}
