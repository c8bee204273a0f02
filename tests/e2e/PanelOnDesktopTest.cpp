// The panel on a real desktop: the chord pressed through the X server's test
// extension brings it up centred on the pointer without taking the focus,
// and Escape and the pointer's distance take it away.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>
#include <xcb/xcb.h>
#include <xcb/xtest.h>

#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "DesktopDriver.h"
#include "RunningProgram.h"

namespace {

using e2e::Desktop;
using e2e::escapeKey;
using e2e::eventually;
using e2e::Geometry;

// Each test is a start after the first run, with fresh preferences.
class PanelOnDesktopTest : public ::testing::Test {
  protected:
    PanelOnDesktopTest() { folders.markInstructionsSeen(); }

    // Without a window manager the program lacks its permission and starts
    // with the onboarding window, which none of these tests expects.
    void SetUp() override {
        ASSERT_TRUE(eventually([] { return Desktop().windowManagerRuns(); }, 10))
            << "no window manager on the display";
    }

    e2e::PrivateFolders folders;
};

}  // namespace

TEST_F(PanelOnDesktopTest, TheChordBringsThePanelToThePointerAndEscapeAndDistanceTakeItAway) {
    Desktop desktop;
    e2e::RunningProgram tarnwick(e2e::tarnwickExecutable(), {});
    ASSERT_TRUE(tarnwick.waitUntilHandling(SIGTERM, 20)) << tarnwick.standardError();
    const auto active = desktop.activeWindow();

    desktop.movePointer(640, 400);
    desktop.pressChord();
    // Read once the window manager has framed it and it stays put.
    std::optional<Geometry> panel;
    ASSERT_TRUE(eventually([&] {
        const auto before = desktop.shownPanel(tarnwick.pid());
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        panel = desktop.shownPanel(tarnwick.pid());
        return before && panel && before->y == panel->y && before->height == panel->height;
    })) << tarnwick.standardOutput()
        << tarnwick.standardError();
    // Centred on the pointer, the window manager's frame included.
    EXPECT_NEAR(panel->x + panel->width / 2.0, 640, 2);
    EXPECT_NEAR(panel->y + panel->height / 2.0, 400, 2);
    EXPECT_EQ(desktop.activeWindow(), active);

    desktop.key(escapeKey, true);
    desktop.key(escapeKey, false);
    EXPECT_TRUE(eventually([&] { return !desktop.shownPanel(tarnwick.pid()); }));

    desktop.pressChord();
    ASSERT_TRUE(eventually([&] { return desktop.shownPanel(tarnwick.pid()).has_value(); }));
    desktop.movePointer(640 + 200, 400);
    desktop.movePointer(1270, 790);
    EXPECT_TRUE(eventually([&] { return !desktop.shownPanel(tarnwick.pid()); }));

    tarnwick.sendSignal(SIGTERM);
    EXPECT_EQ(tarnwick.waitForExit(10), (e2e::ExitStatus{true, 0}));
}

TEST_F(PanelOnDesktopTest, AnotherApplicationComingForwardTakesThePanelAway) {
    Desktop desktop;
    e2e::RunningProgram tarnwick(e2e::tarnwickExecutable(), {});
    ASSERT_TRUE(tarnwick.waitUntilHandling(SIGTERM, 20)) << tarnwick.standardError();
    // The panel the start brings up goes when the terminals come forward.
    ASSERT_TRUE(eventually([&] { return desktop.shownPanel(tarnwick.pid()).has_value(); }));
    e2e::RunningProgram first("/usr/bin/xterm", {"-T", "First application"});
    // Another terminal application: two processes of one are one application.
    e2e::RunningProgram second("/usr/bin/uxterm", {"-T", "Second application"});
    ASSERT_TRUE(eventually([&] { return !desktop.shownPanel(tarnwick.pid()); }, 10));
    ASSERT_TRUE(eventually([&] { return desktop.activateWindowOf(second.pid()); }, 10));
    ASSERT_TRUE(eventually([&] { return desktop.activateWindowOf(first.pid()); }, 10));
    ASSERT_TRUE(eventually([&] { return desktop.activeProcess() == first.pid(); }));

    // The program reads the active window and the keys on one connection,
    // in the order the server sends them: by the chord it knows the first
    // terminal is in front, and the panel stays until the second comes.
    desktop.movePointer(300, 300);
    desktop.pressChord();
    ASSERT_TRUE(eventually([&] { return desktop.shownPanel(tarnwick.pid()).has_value(); }));
    const auto panel = desktop.panelClient(tarnwick.pid());
    ASSERT_TRUE(panel);
    desktop.watchMapping(*panel);
    ASSERT_TRUE(desktop.shownPanel(tarnwick.pid()));
    ASSERT_TRUE(desktop.activateWindowOf(second.pid()));
    EXPECT_TRUE(desktop.waitForMapping(*panel, false, 5));
    EXPECT_FALSE(desktop.shownPanel(tarnwick.pid()));

    tarnwick.sendSignal(SIGTERM);
    EXPECT_EQ(tarnwick.waitForExit(10), (e2e::ExitStatus{true, 0}));
}
