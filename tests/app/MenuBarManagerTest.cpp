#include <gtest/gtest.h>

#include "SpineTestSupport.h"
#include "app/MenuBarManager.h"

namespace {

struct RecordingCoordinator : tarnwick::MenuBarManager::Coordinator {
    void showAbout() override { calls.push_back("about"); }
    void checkForUpdates() override { calls.push_back("updates"); }
    void showSettings() override { calls.push_back("settings"); }
    void quit() override { calls.push_back("quit"); }
    std::vector<std::string> calls;
};

class MenuBarManagerTest : public ::testing::Test, protected spine::DesktopFixture {
  protected:
    RecordingCoordinator coordinator;
};

}  // namespace

TEST_F(MenuBarManagerTest, TheMenuHasFiveItemsInOrderAndEachCallsItsCommand) {
    auto item = platform::statusBar().statusItemWithLength(platform::variableStatusItemLength);
    tarnwick::MenuBarManager manager(item, coordinator);
    manager.setUp();

    const auto& items = item->menu()->itemArray();
    ASSERT_EQ(items.size(), 5u);
    EXPECT_EQ(items[0]->title(), "About");
    EXPECT_EQ(items[1]->title(), "Check for Updates...");
    EXPECT_EQ(items[2]->title(), "Settings");
    EXPECT_EQ(items[2]->keyEquivalent(), ",");
    EXPECT_TRUE(items[3]->isSeparatorItem());
    EXPECT_EQ(items[4]->title(), "Quit");
    EXPECT_EQ(items[4]->keyEquivalent(), "q");
    for (const auto& menuItem : items)
        menuItem->performAction();
    EXPECT_EQ(coordinator.calls,
              (std::vector<std::string>{"about", "updates", "settings", "quit"}));
    EXPECT_EQ(desktop.statusBar().items()[0]->simButton()->image(),
              platform::Image::resource("StatusBarIcon"));

    // An item without a button still gets its menu.
    desktop.statusBar().setGivesButtons(false);
    auto bare = platform::statusBar().statusItemWithLength(platform::variableStatusItemLength);
    tarnwick::MenuBarManager bareManager(bare, coordinator);
    bareManager.setUp();
    EXPECT_EQ(bare->menu()->itemArray().size(), 5u);
}
