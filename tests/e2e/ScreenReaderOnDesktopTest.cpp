// What a person with a screen reader meets on a real desktop: the status
// item's icon in a tray host, whose menu names its commands, and the panel,
// whose menu, rows and round buttons have names and roles.
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "AccessibilityBus.h"
#include "DesktopDriver.h"
#include "RunningProgram.h"

namespace {

using e2e::AccessibleNode;
using e2e::eventually;

std::vector<std::string> rolesAndNames(const AccessibleNode& menu) {
    std::vector<std::string> items;
    for (const auto& item : menu.children)
        items.push_back(item.role + " " + item.name);
    return items;
}

class ScreenReaderOnDesktopTest : public ::testing::Test {
  protected:
    void SetUp() override {
        // The tray host writes its first configuration there.
        std::filesystem::create_directories(std::getenv("XDG_CONFIG_HOME"));
    }

    e2e::PrivateFolders folders;
    e2e::AccessibilityBus& bus = e2e::AccessibilityBus::shared();
};

}  // namespace

TEST_F(ScreenReaderOnDesktopTest, TheTrayShowsOurIconWhoseMenuOffersTheFiveItemsAndQuits) {
    ASSERT_TRUE(bus.isUp());
    // Programs learn who listens as they start.
    bus.watchMenus();
    e2e::RunningProgram tint2("/usr/bin/tint2", {});
    e2e::RunningProgram tarnwick(e2e::tarnwickExecutable(), {});
    ASSERT_TRUE(tarnwick.waitUntilHandling(SIGTERM, 20)) << tarnwick.standardError();

    e2e::Desktop desktop;
    std::optional<e2e::Geometry> icon;
    ASSERT_TRUE(eventually([&] { return (icon = desktop.trayIconOf("tarnwick")).has_value(); }, 10))
        << "no icon of ours in the tray";
    EXPECT_GT(icon->width, 8);
    EXPECT_GT(icon->height, 8);

    // An icon only just taken in may not answer the first click yet.
    std::optional<AccessibleNode> menu;
    for (int click = 0; click < 3 && !menu; ++click) {
        desktop.click(icon->centre());
        menu = bus.waitForMenu(2);
    }
    ASSERT_TRUE(menu) << "no menu showed";
    EXPECT_EQ(rolesAndNames(*menu),
              (std::vector<std::string>{"menu item About", "menu item Check for Updates...",
                                        "menu item Settings", "separator ", "menu item Quit"}));

    const auto* quit = menu->find("menu item", "Quit");
    ASSERT_TRUE(quit);
    desktop.click({quit->x + quit->width / 2, quit->y + quit->height / 2});
    EXPECT_EQ(tarnwick.waitForExit(10), (e2e::ExitStatus{true, 0}));
}

TEST_F(ScreenReaderOnDesktopTest, ThePanelsMenuRowsAndButtonsHaveTheirNames) {
    ASSERT_TRUE(bus.isUp());
    e2e::Desktop desktop;
    // The file manager is running by the time the program starts: one that
    // starts with it may not be known yet, and the program starts its own.
    e2e::RunningProgram fileManager("/usr/bin/pcmanfm", {"--new-win", "/usr"});
    ASSERT_TRUE(
        eventually([&] { return !desktop.clientWindowsOf(fileManager.pid()).empty(); }, 15));
    e2e::RunningProgram tarnwick(e2e::tarnwickExecutable(), {});
    ASSERT_TRUE(tarnwick.waitUntilHandling(SIGTERM, 20)) << tarnwick.standardError();

    desktop.movePointer(640, 400);
    desktop.pressChord();
    const auto tree = bus.applicationHolding("Tarnwick", "push button", "usr", 15);
    ASSERT_TRUE(tree && tree->find("push button", "usr"))
        << "the panel never listed the file manager's window: " << (tree ? tree->outline() : "")
        << tarnwick.standardOutput() << tarnwick.standardError();

    const auto* row = tree->find("push button", "usr");
    std::vector<std::string> buttons;
    for (const auto& child : row->children) {
        if (child.role == "push button")
            buttons.push_back(child.name);
    }
    EXPECT_EQ(buttons, (std::vector<std::string>{"Close", "Minimize", "Full Screen"}));
    // The menu of applications names the one shown.
    EXPECT_TRUE(tree->find("push button", "File Manager PCManFM"));

    tarnwick.sendSignal(SIGTERM);
    EXPECT_EQ(tarnwick.waitForExit(10), (e2e::ExitStatus{true, 0}));
}
