// The status item on a desktop whose tray shows only status-notifier items:
// a standalone host with its own watcher on the test's session bus, in a bar
// along the bottom of the screen.
#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>

#include "AccessibilityBus.h"
#include "DesktopDriver.h"
#include "RunningProgram.h"
#include "Screenshot.h"

namespace {

using e2e::AccessibleNode;
using e2e::eventually;

// What the host's watcher says, read with the bus's own command-line tool.
std::string watcherProperty(const char* property) {
    const std::string command =
        std::string(
            "dbus-send --session --print-reply --dest=org.kde.StatusNotifierWatcher "
            "/StatusNotifierWatcher org.freedesktop.DBus.Properties.Get "
            "string:org.kde.StatusNotifierWatcher string:") +
        property + " 2>/dev/null";
    std::string text;
    if (FILE* output = ::popen(command.c_str(), "r")) {
        char buffer[256];
        while (std::fgets(buffer, sizeof buffer, output))
            text += buffer;
        ::pclose(output);
    }
    return text;
}

// The bar is one icon high at the bottom of the 1280 × 800 screen, icons
// from its left end.
constexpr e2e::Geometry bar{0, 770, 240, 30};

}  // namespace

TEST(StatusNotifierTrayOnDesktopTest, TheHostShowsOurIconAndItsClickOpensTheMenuThatQuits) {
    if (!std::getenv("DISPLAY"))
        GTEST_SKIP() << "needs an X display";
    auto& bus = e2e::AccessibilityBus::shared();
    ASSERT_TRUE(bus.isUp());
    const e2e::PrivateFolders folders;
    bus.watchMenus();
    e2e::RunningProgram host("/usr/bin/gtk-sni-tray-standalone", {"--watcher", "--bottom"});
    // The program chooses its tray as it starts: the host must be there.
    ASSERT_TRUE(eventually(
        [] {
            return watcherProperty("IsStatusNotifierHostRegistered").find("true") !=
                   std::string::npos;
        },
        15))
        << host.standardError();

    e2e::RunningProgram tarnwick(e2e::tarnwickExecutable(), {});
    ASSERT_TRUE(tarnwick.waitUntilHandling(SIGTERM, 20)) << tarnwick.standardError();
    EXPECT_TRUE(eventually(
        [] {
            return watcherProperty("RegisteredStatusNotifierItems").find("string \":") !=
                   std::string::npos;
        },
        10));
    EXPECT_EQ(tarnwick.standardOutput().find("no system tray"), std::string::npos);

    e2e::Desktop desktop;
    std::optional<AccessibleNode> menu;
    for (int click = 0; click < 3 && !menu; ++click) {
        desktop.click({bar.x + 15, bar.y + bar.height / 2});
        menu = bus.waitForMenu(2);
    }
    ASSERT_TRUE(menu) << "no menu showed";
    // The icon is drawn by the time it answered the click.
    EXPECT_TRUE(e2e::saveScreenshot(bar, TARNWICK_ARTIFACTS_DIR "/status-notifier-tray.png"));
    std::vector<std::string> names;
    for (const auto* item : menu->flattened()) {
        if (item->role == "menu item")
            names.push_back(item->name);
    }
    EXPECT_EQ(names,
              (std::vector<std::string>{"About", "Check for Updates...", "Settings", "Quit"}));
    const auto* quit = menu->find("menu item", "Quit");
    ASSERT_TRUE(quit);
    desktop.click({quit->x + quit->width / 2, quit->y + quit->height / 2});
    EXPECT_EQ(tarnwick.waitForExit(10), (e2e::ExitStatus{true, 0}));
}
