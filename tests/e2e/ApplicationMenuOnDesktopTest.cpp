// The panel's menu of applications on a desktop with the programs a person
// runs: two terminals, an editor with a settings entry of its own, a panel,
// and the file manager. Each application is offered once, by its own name,
// and the panel is not offered at all; the terminal's entry lists the
// windows of both its processes.
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "AccessibilityBus.h"
#include "DesktopDriver.h"
#include "RunningProgram.h"
#include "Screenshot.h"

namespace {

using e2e::AccessibleNode;
using e2e::eventually;

// The entries of the menu, in their order: what the arrow keys go through.
std::vector<std::string> itemNames(const AccessibleNode& menu) {
    std::vector<std::string> names;
    for (const auto& node : menu.children) {
        if (node.role == "menu item" || node.role == "menu")
            names.push_back(node.name);
    }
    return names;
}

}  // namespace

TEST(ApplicationMenuOnDesktopTest, EachApplicationIsOfferedOnceByItsOwnNameAndThePanelNot) {
    e2e::PrivateFolders folders;
    folders.markInstructionsSeen();
    auto& bus = e2e::AccessibilityBus::shared();
    ASSERT_TRUE(bus.isUp());
    bus.watchMenus();
    ASSERT_TRUE(std::filesystem::exists("/usr/bin/mousepad")) << "mousepad is not installed";

    e2e::Desktop desktop;
    e2e::RunningProgram fileManager("/usr/bin/pcmanfm", {"--new-win", "/usr"});
    e2e::RunningProgram firstTerminal("/usr/bin/xterm", {"-T", "First terminal"});
    e2e::RunningProgram secondTerminal("/usr/bin/xterm", {"-T", "Second terminal"});
    e2e::RunningProgram editor("/usr/bin/mousepad", {"--disable-server"});
    e2e::RunningProgram panel("/usr/bin/tint2", {});
    for (const auto* program : {&fileManager, &firstTerminal, &secondTerminal, &editor, &panel}) {
        ASSERT_TRUE(
            eventually([&] { return !desktop.clientWindowsOf(program->pid()).empty(); }, 15))
            << "no window of process " << program->pid();
    }
    e2e::RunningProgram tarnwick(e2e::tarnwickExecutable(), {});
    ASSERT_TRUE(tarnwick.waitUntilHandling(SIGTERM, 20)) << tarnwick.standardError();

    desktop.movePointer(640, 400);
    desktop.pressChord();
    auto tree = bus.applicationHolding("Tarnwick", "push button", "usr", 15);
    ASSERT_TRUE(tree && tree->find("push button", "usr"))
        << "the panel never listed the file manager's window: " << (tree ? tree->outline() : "");
    const auto* menuButton = tree->find("push button", "File Manager PCManFM");
    ASSERT_TRUE(menuButton) << tree->outline();
    desktop.click({menuButton->x + menuButton->width / 2, menuButton->y + menuButton->height / 2});
    const auto menu = bus.waitForMenu(10);
    ASSERT_TRUE(menu) << "no menu of applications showed";
    const auto popups = desktop.popupsOf(tarnwick.pid());
    ASSERT_FALSE(popups.empty());
    EXPECT_TRUE(
        e2e::saveScreenshot(popups.front(), TARNWICK_ARTIFACTS_DIR "/app-menu-one-entry-each.png"));

    const auto names = itemNames(*menu);
    const auto count = [&](const std::string& name) {
        return std::count(names.begin(), names.end(), name);
    };
    EXPECT_EQ(count("XTerm"), 1) << menu->outline();
    EXPECT_EQ(count("Mousepad"), 1) << menu->outline();
    EXPECT_EQ(count("File Manager PCManFM"), 1) << menu->outline();
    for (const char* offered : {"Text Editor Settings", "Tint2", "Panel", "tint2"})
        EXPECT_EQ(count(offered), 0) << offered << "\n" << menu->outline();

    // The terminal's entry lists the windows of both its processes.
    const auto terminal = std::find(names.begin(), names.end(), "XTerm") - names.begin();
    // Keys pressed before the menu holds the keyboard would go elsewhere.
    ASSERT_TRUE(eventually([&] { return desktop.keyboardIsGrabbed(); }));
    for (int step = 0; step <= terminal; ++step)
        desktop.tap(e2e::downKey);
    desktop.tap(e2e::returnKey);
    ASSERT_TRUE(eventually(
        [&] {
            tree = bus.application("Tarnwick", 1);
            return tree && tree->find("push button", "First terminal") &&
                   tree->find("push button", "Second terminal");
        },
        10))
        << (tree ? tree->outline() : "");
    const auto shown = desktop.shownPanel(tarnwick.pid());
    ASSERT_TRUE(shown);
    EXPECT_TRUE(e2e::saveScreenshot(*shown, TARNWICK_ARTIFACTS_DIR "/panel-two-terminals.png"));

    desktop.tap(e2e::escapeKey);
    tarnwick.sendSignal(SIGTERM);
    EXPECT_EQ(tarnwick.waitForExit(10), (e2e::ExitStatus{true, 0}));
}
