#include <gtest/gtest.h>

#include "settings/SettingsKeys.h"
#include "support/InstalledPreferences.h"

using platform::PropertyList;
using quillbox::DefaultsManager;

namespace {

class SettingsKeysTest : public ::testing::Test, protected testsupport::InstalledPreferences {};

}  // namespace

TEST_F(SettingsKeysTest, AppSetsAreArraysReadWithoutRepetitionAndThePolicyItsRawInteger) {
    auto& defaults = DefaultsManager::shared();
    store.setObject("harrowmere.hiddenApps", PropertyList::Array{"org.a", "org.b", "org.a"});
    EXPECT_EQ(defaults.getValue(tarnwick::hiddenApps), (std::set<std::string>{"org.a", "org.b"}));
    defaults[tarnwick::favoriteApps] = std::set<std::string>{"org.c"};
    EXPECT_EQ(store.objectForKey("harrowmere.favoriteApps"),
              PropertyList(PropertyList::Array{"org.c"}));

    store.setObject("harrowmere.activationPolicy", 2);
    EXPECT_EQ(defaults.getValue(tarnwick::activationPolicy),
              platform::ActivationPolicy::prohibited);
}
