// The panel on a real desktop: the chord pressed through the X server's test
// extension brings it up centred on the pointer without taking the focus,
// and Escape and the pointer's distance take it away; so too on a display
// that asks for two device pixels a point.
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
#include "support/ScopedEnvironment.h"
#include "update/ReleaseFolder.h"

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

// The shown panel's place, read once it stays put.
std::optional<Geometry> settledPanel(Desktop& desktop, pid_t pid) {
    std::optional<Geometry> panel;
    const bool settled = eventually([&] {
        const auto before = desktop.shownPanel(pid);
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        panel = desktop.shownPanel(pid);
        return before && panel && before->x == panel->x && before->y == panel->y &&
               before->width == panel->width && before->height == panel->height;
    });
    return settled ? panel : std::nullopt;
}

// Gives the input to a command run by the shell; whether it succeeded.
bool inputTo(const std::string& command, const std::string& input) {
    FILE* pipe = ::popen(command.c_str(), "w");
    if (!pipe)
        return false;
    std::fwrite(input.data(), 1, input.size(), pipe);
    return ::pclose(pipe) == 0;
}

// The display's X resources with these lines merged in for a scope (what a
// desktop's settings do for its programs), put back as they were after it.
class ScopedXResources {
  public:
    explicit ScopedXResources(const std::string& lines)
        : saved_(testsupport::outputOf("xrdb -query")) {
        if (!inputTo("xrdb -nocpp -merge", lines))
            ADD_FAILURE() << "xrdb could not merge the resources: " << lines;
    }
    ~ScopedXResources() {
        if (saved_.empty())
            testsupport::outputOf("xrdb -remove");
        else
            inputTo("xrdb -nocpp -load", saved_);
    }
    ScopedXResources(const ScopedXResources&) = delete;
    ScopedXResources& operator=(const ScopedXResources&) = delete;

  private:
    std::string saved_;
};

// The display's two ways of asking programs for two device pixels a point.
enum class DoubledScale { qtScaleFactor, xftDpi };

class PanelAtDoubleScaleTest : public PanelOnDesktopTest,
                               public ::testing::WithParamInterface<DoubledScale> {};

}  // namespace

TEST_F(PanelOnDesktopTest, TheChordBringsThePanelToThePointerAndEscapeAndDistanceTakeItAway) {
    Desktop desktop;
    e2e::RunningProgram tarnwick(e2e::tarnwickExecutable(), {});
    ASSERT_TRUE(tarnwick.waitUntilHandling(SIGTERM, 20)) << tarnwick.standardError();
    const auto active = desktop.activeWindow();

    desktop.movePointer(640, 400);
    desktop.pressChord();
    const auto panel = settledPanel(desktop, tarnwick.pid());
    ASSERT_TRUE(panel) << tarnwick.standardOutput() << tarnwick.standardError();
    // Centred on the pointer, unframed.
    EXPECT_NEAR(panel->x + panel->width / 2.0, 640, 2);
    EXPECT_NEAR(panel->y + panel->height / 2.0, 400, 2);
    EXPECT_EQ(desktop.activeWindow(), active);
    // Whoever reads the panel's icon (a pager, a task switcher) reads a
    // 64-point icon and its smaller sizes, not the large ones.
    const auto client = desktop.panelClient(tarnwick.pid());
    ASSERT_TRUE(client);
    const auto icon = desktop.property(*client, "_NET_WM_ICON", XCB_ATOM_CARDINAL, 1 << 20);
    EXPECT_GT(icon.size(), 0u);
    EXPECT_LE(icon.size(), 3u * 64 * 64) << "icon words";

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

// At two device pixels a point the pointer, told by the server in device
// pixels, and the panel, placed by Qt in points, still meet: the panel opens
// centred on the pointer, within two points, and the pointer's distance
// still fades it at the same number of points.
TEST_P(PanelAtDoubleScaleTest, ThePanelIsCentredOnThePointerAndFadesByPoints) {
    testsupport::ScopedEnvironment environment;
    std::optional<ScopedXResources> resources;
    if (GetParam() == DoubledScale::qtScaleFactor)
        environment.set("QT_SCALE_FACTOR", "2");
    else
        resources.emplace("Xft.dpi: 192\n");
    Desktop desktop;
    e2e::RunningProgram tarnwick(e2e::tarnwickExecutable(), {});
    ASSERT_TRUE(tarnwick.waitUntilHandling(SIGTERM, 20)) << tarnwick.standardError();
    ASSERT_TRUE(eventually([&] { return desktop.shownPanel(tarnwick.pid()).has_value(); }));
    desktop.tap(escapeKey);
    ASSERT_TRUE(eventually([&] { return !desktop.shownPanel(tarnwick.pid()); }));

    // Away from the middle, so that doubled coordinates would miss it by
    // far, and with the panel whole on the screen for its picture.
    constexpr int pointerX = 400, pointerY = 300, pixelsPerPoint = 2;
    desktop.movePointer(pointerX, pointerY);
    desktop.pressChord();
    const auto panel = settledPanel(desktop, tarnwick.pid());
    ASSERT_TRUE(panel) << tarnwick.standardOutput() << tarnwick.standardError();
    EXPECT_NEAR(panel->x + panel->width / 2.0, pointerX, 2 * pixelsPerPoint);
    EXPECT_NEAR(panel->y + panel->height / 2.0, pointerY, 2 * pixelsPerPoint);
    // Drawn at twice the size, not at the size of one pixel a point.
    EXPECT_GT(panel->width, 400);
    const std::string name =
        GetParam() == DoubledScale::qtScaleFactor ? "qt-scale-factor" : "xft-dpi";
    EXPECT_TRUE(
        e2e::saveScreenshot(*panel, TARNWICK_ARTIFACTS_DIR "/panel-scale-2-" + name + ".png"));

    // 100 points (200 pixels) right of its edge it is still shown; 260
    // points away it is gone.
    const int right = panel->x + panel->width;
    desktop.movePointer(right + 100 * pixelsPerPoint, pointerY);
    desktop.movePointer(right + 100 * pixelsPerPoint + 1, pointerY);
    EXPECT_FALSE(eventually([&] { return !desktop.shownPanel(tarnwick.pid()); }, 1));
    desktop.movePointer(std::min(right + 260 * pixelsPerPoint, 1279), pointerY);
    EXPECT_TRUE(eventually([&] { return !desktop.shownPanel(tarnwick.pid()); }));

    tarnwick.sendSignal(SIGTERM);
    EXPECT_EQ(tarnwick.waitForExit(10), (e2e::ExitStatus{true, 0}));
}

INSTANTIATE_TEST_SUITE_P(TwoPixelsAPoint, PanelAtDoubleScaleTest,
                         ::testing::Values(DoubledScale::qtScaleFactor, DoubledScale::xftDpi),
                         [](const ::testing::TestParamInfo<DoubledScale>& scale) {
                             return scale.param == DoubledScale::qtScaleFactor ? "QtScaleFactor"
                                                                               : "XftDpi";
                         });
