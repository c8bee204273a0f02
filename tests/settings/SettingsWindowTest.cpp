// The Settings window from the status menu: one at a time, floating, a
// regular application while it is open; its layouts; the hidden
// applications it lists and brings back; the channel picker; the launch at
// login switch.
#include <gtest/gtest.h>

#include "app/RootCoordinator.h"
#include "app/SpineTestSupport.h"
#include "settings/SettingsCoordinator.h"
#include "settings/SettingsKeys.h"

using platform::ActivationPolicy;
using platform::sim::SimWindow;
using tarnwick::RootCoordinator;
using tarnwick::SettingsCoordinator;
using tarnwick::SettingsWindowView;
using Part = SettingsWindowView::Part;

namespace {

class SettingsWindowTest : public ::testing::Test, protected spine::DesktopFixture {
  protected:
    SettingsWindowTest() {
        RootCoordinator::ChildFactories factories;
        factories.settings = [this](RootCoordinator& parent) {
            ++made;
            return SettingsCoordinator::childFactory()(parent);
        };
        root = RootCoordinator::make(std::move(factories));
        desktop.application().setActivationPolicy(ActivationPolicy::accessory);
    }

    SettingsCoordinator& settings() {
        return dynamic_cast<SettingsCoordinator&>(*root->settingsCoordinator());
    }
    SettingsWindowView& view() { return settings().view(); }
    std::shared_ptr<SimWindow> window() {
        return std::static_pointer_cast<SimWindow>(settings().rootController().window());
    }
    quillbox::DefaultsManager& defaults() { return quillbox::DefaultsManager::shared(); }

    std::vector<std::string> rowNames() {
        std::vector<std::string> names;
        for (const auto& row : view().hiddenAppRows())
            names.push_back(row.bundleIdentifier + " " + row.app.appName);
        return names;
    }

    std::shared_ptr<RootCoordinator> root;
    int made = 0;
};

}  // namespace

TEST_F(SettingsWindowTest, OneFloatingWindowThatMakesTheProgramRegularWhileItIsOpen) {
    root->showSettings();
    const auto shown = window();
    EXPECT_EQ(shown->title(), "Settings");
    EXPECT_EQ(shown->styleMask(), 4099u);
    EXPECT_TRUE(shown->titlebarAppearsTransparent());
    EXPECT_EQ(shown->level(), platform::windowLevel::floating);
    EXPECT_FALSE(shown->hidesOnDeactivate());
    EXPECT_TRUE(shown->isKeyWindow());
    EXPECT_EQ(desktop.application().activationPolicy(), ActivationPolicy::regular);

    root->mainWindowController().window()->makeKeyAndOrderFront();
    root->showSettings();
    EXPECT_EQ(made, 1);
    EXPECT_EQ(window(), shown);
    EXPECT_TRUE(shown->isKeyWindow());

    shown->performClose();
    desktop.loop().runUntilIdle();
    EXPECT_FALSE(root->settingsCoordinator());
    EXPECT_EQ(desktop.application().activationPolicy(), ActivationPolicy::accessory);
    root->showSettings();
    EXPECT_EQ(made, 2);
    EXPECT_NE(window(), shown);
}

TEST_F(SettingsWindowTest, TabsFromTheTabbedVersionOnAndOneStackWithoutHiddenAppsBelowIt) {
    root->showSettings();
    EXPECT_TRUE(view().isTabbed());
    const std::vector<SettingsWindowView::Page> tabbed{
        {SettingsWindowView::Tab{"General", "gear"},
         {Part::shortcutRow, Part::launchAtLoginRow, Part::hiddenAppsGroup}},
        {SettingsWindowView::Tab{"Updates", "sparkle"},
         {Part::automaticUpdatesSwitch, Part::releaseChannelPicker, Part::checkNowButton}}};
    EXPECT_EQ(view().pages(), tabbed);

    desktop.application().setOperatingSystemVersion({14, 6, 1});
    const std::vector<SettingsWindowView::Page> stacked{
        {std::nullopt,
         {Part::shortcutRow, Part::launchAtLoginRow, Part::automaticUpdatesSwitch,
          Part::releaseChannelPicker, Part::checkNowButton}}};
    EXPECT_FALSE(view().isTabbed());
    EXPECT_EQ(view().pages(), stacked);
}

TEST_F(SettingsWindowTest, HiddenAppsAreListedSortedWhileInstalledAndUnhideBringsThemBack) {
    root->showSettings();
    EXPECT_TRUE(view().hiddenAppRows().empty());

    int redraws = 0;
    const auto subscriptions = view().observeChanges([&] { ++redraws; });
    root->appsMonitor().setGrouping("com.example.Preview", tarnwick::AppGrouping::hidden);
    root->appsMonitor().setGrouping("com.example.Notes", tarnwick::AppGrouping::hidden);
    // Hidden once, and since uninstalled.
    auto stored = defaults().getValue(tarnwick::hiddenApps);
    stored.insert("org.example.Uninstalled");
    defaults().setValue(stored, tarnwick::hiddenApps);
    desktop.loop().runUntilIdle();
    EXPECT_GT(redraws, 0);
    EXPECT_EQ(rowNames(),
              (std::vector<std::string>{"com.example.Notes Notes", "com.example.Preview Preview"}));
    EXPECT_EQ(view().hiddenAppRows().front().app.icon,
              platform::Image::file("/Applications/Notes.app"));

    redraws = 0;
    view().unhide("com.example.Notes");
    desktop.loop().runUntilIdle();
    EXPECT_GT(redraws, 0);
    EXPECT_EQ(rowNames(), (std::vector<std::string>{"com.example.Preview Preview"}));
    EXPECT_EQ(defaults().getValue(tarnwick::hiddenApps),
              (std::set<std::string>{"com.example.Preview", "org.example.Uninstalled"}));
    const auto& running = root->appsMonitor().runningApps();
    const auto tracked = running.find(tarnwick::AppGrouping::track);
    ASSERT_NE(tracked, running.end());
    EXPECT_TRUE(std::any_of(tracked->second.begin(), tracked->second.end(), [](const auto& app) {
        return app->bundleIdentifier() == "com.example.Notes";
    }));

    // A change of the file from outside is drawn too.
    redraws = 0;
    desktop.preferences().setObject("harrowmere.hiddenApps",
                                    platform::PropertyList(platform::PropertyList::Array{
                                        platform::PropertyList("com.example.TextEdit")}));
    desktop.loop().runUntilIdle();
    EXPECT_GT(redraws, 0);
    EXPECT_EQ(rowNames(), (std::vector<std::string>{"com.example.TextEdit TextEdit"}));
}

TEST_F(SettingsWindowTest, TheChannelPickerSelectsTheStoredWordAndNothingForAnotherWhichStays) {
    root->showSettings();
    EXPECT_EQ(SettingsWindowView::channelOptions().size(), 2u);
    EXPECT_EQ(SettingsWindowView::channelOptions()[0].title, "Official Release");
    EXPECT_EQ(view().selectedChannel(), 0u);

    view().selectChannel(1);
    EXPECT_EQ(defaults().getValue(tarnwick::releaseChannel), "staging");
    EXPECT_EQ(view().selectedChannel(), 1u);

    defaults().setValue(std::string("nightly"), tarnwick::releaseChannel);
    EXPECT_EQ(view().selectedChannel(), std::nullopt);
    EXPECT_EQ(defaults().getValue(tarnwick::releaseChannel), "nightly");
    view().selectChannel(0);
    EXPECT_EQ(defaults().getValue(tarnwick::releaseChannel), "default");
}

TEST_F(SettingsWindowTest, CheckNowAsksTheApplicationsUpdaterWithTheStoredChannel) {
    root->showSettings();
    view().checkNow();
    view().selectChannel(1);
    view().checkNow();
    EXPECT_EQ(desktop.updater().checks(), (std::vector<std::set<std::string>>{{}, {"staging"}}));
}

TEST_F(SettingsWindowTest, TheLaunchSwitchChangesOnALaterTurnAndCantBeChangedWhileThinking) {
    root->showSettings();
    auto& service = desktop.loginItemService();
    EXPECT_FALSE(view().launchesAtLogin());
    EXPECT_TRUE(view().canChangeLaunchAtLogin());

    view().setLaunchesAtLogin(true);
    EXPECT_TRUE(service.calls().empty()) << "the change is a task of its own";
    desktop.loop().runUntilIdle();
    EXPECT_TRUE(view().launchesAtLogin());

    view().setLaunchesAtLogin(false);
    desktop.loop().runOneTurn();
    EXPECT_FALSE(view().canChangeLaunchAtLogin());
    EXPECT_TRUE(view().launchesAtLogin());
    desktop.loop().runUntilIdle();
    EXPECT_TRUE(view().canChangeLaunchAtLogin());
    EXPECT_FALSE(view().launchesAtLogin());
}
