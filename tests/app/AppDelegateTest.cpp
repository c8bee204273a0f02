#include <gtest/gtest.h>

#include "SpineTestSupport.h"
#include "app/AppDelegate.h"
#include "app/ApplicationEntry.h"
#include "settings/SettingsKeys.h"
#include "support/StandardOutput.h"

using Paths = std::vector<std::filesystem::path>;

namespace {

class AppDelegateTest : public ::testing::Test, protected spine::DesktopFixture {
  protected:
    tarnwick::ApplicationEntry entry = tarnwick::ApplicationEntry::start();
    tarnwick::AppDelegate& delegate = *entry.delegate;
    quillbox::CapturedOutput output;
};

}  // namespace

TEST_F(AppDelegateTest, WillFinishLaunchingLogsThePolicyItHasJustSet) {
    desktop.application().setActivationPolicy(platform::ActivationPolicy::regular);
    delegate.applicationWillFinishLaunching();
    EXPECT_EQ(output.lines(),
              (std::vector<std::string>{"[Activation] setting policy .regular -> .accessory",
                                        "[Activation] launched with policy .accessory"}));
}

TEST_F(AppDelegateTest, TheFileCommandsSelectTheirFileOrFolderAndAFailedLookUpNothing) {
    delegate.showApplicationPreferences();
    const std::filesystem::path library = "/Users/tarnwick/Library";
    ASSERT_EQ(desktop.fileViewer().selections().size(), 1u);
    EXPECT_EQ(desktop.fileViewer().selections()[0], Paths{library});

    desktop.fileManager().addFile(library / "Preferences/harrowmere.Tarnwick.plist");
    delegate.showApplicationPreferences();
    EXPECT_EQ(desktop.fileViewer().selections()[1],
              Paths{library / "Preferences/harrowmere.Tarnwick.plist"});

    // The support command selects the general folder; a failed look-up opens nothing.
    delegate.openApplicationSupportDirectory();
    EXPECT_EQ(desktop.fileViewer().selections().at(2),
              Paths{"/Users/tarnwick/Library/Application Support"});

    desktop.fileManager().setDirectory(platform::SearchPathDirectory::applicationSupport,
                                       std::nullopt);
    delegate.openApplicationSupportDirectory();
    EXPECT_EQ(desktop.fileViewer().selections().size(), 3u);
}

TEST_F(AppDelegateTest, TheEntryMigratesFirstAndPutsTheTwoCommandsInTheMainMenu) {
    EXPECT_TRUE(quillbox::DefaultsManager::shared().getValue(tarnwick::activationShortcut));
    auto menu = desktop.application().mainMenu();
    ASSERT_TRUE(menu);
    ASSERT_EQ(menu->itemArray().size(), 2u);
    menu->itemArray()[1]->performAction();
    EXPECT_EQ(desktop.fileViewer().selections().size(), 1u);
}
