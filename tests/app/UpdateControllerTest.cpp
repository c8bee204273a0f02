#include <gtest/gtest.h>

#include "SpineTestSupport.h"
#include "app/RootCoordinator.h"
#include "services/UpdateController.h"
#include "settings/SettingsKeys.h"

namespace {

using Channels = std::set<std::string>;

class UpdateControllerTest : public ::testing::Test, protected spine::DesktopFixture {
  protected:
    void storeChannel(const std::string& channel) {
        quillbox::DefaultsManager::shared().setValue(std::optional<std::string>(channel),
                                                     tarnwick::releaseChannel);
    }
    platform::sim::SimUpdater& updater() { return desktop.updater(); }
};

}  // namespace

TEST_F(UpdateControllerTest, TheStatusMenusCheckAsksForTheStoredChannelAtEveryCheck) {
    auto root = tarnwick::RootCoordinator::make();
    root->start();
    ASSERT_EQ(updater().starts(), 1);
    auto check = [&] {
        auto menu = desktop.statusBar().items()[0]->menu();
        menu->itemArray()[1]->performAction();
        return updater().checks().back();
    };

    // Nothing stored reads as "default": the default channel alone.
    EXPECT_EQ(check(), Channels{});
    storeChannel("staging");
    EXPECT_EQ(check(), Channels{"staging"});
    // A word the picker doesn't offer is passed on as it stands, and the
    // empty word is a channel too, not the default.
    storeChannel("nightly");
    EXPECT_EQ(check(), Channels{"nightly"});
    storeChannel("");
    EXPECT_EQ(check(), Channels{""});
    storeChannel("default");
    EXPECT_EQ(check(), Channels{});
    EXPECT_EQ(updater().checks().size(), 5u);
}

TEST_F(UpdateControllerTest, TheControllerKeepsItsDelegateAliveAndLeavesTheSettingToTheUpdater) {
    {
        tarnwick::UpdateController controller;
        EXPECT_TRUE(updater().hasDelegate());
        EXPECT_EQ(&controller.updater(), &updater());
        controller.updater().setAutomaticallyChecksForUpdates(true);
        EXPECT_TRUE(updater().automaticallyChecksForUpdates());
    }
    // The updater only ever held it weakly.
    EXPECT_FALSE(updater().hasDelegate());
}
