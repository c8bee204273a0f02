// The packages as a user gets them: the Debian package unpacked into a
// scratch root and the release archive unpacked anywhere, each running from
// where it lies, finding its resources and its helper there.
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "AccessibilityBus.h"
#include "DesktopDriver.h"
#include "RunningProgram.h"
#include "Screenshot.h"
#include "support/ScopedEnvironment.h"
#include "x11/InputTestDisplay.h"

namespace {

namespace fs = std::filesystem;
using e2e::Desktop;
using e2e::eventually;
using e2e::ExitStatus;

// The roles and names of the tree, one node a line.
std::string describe(const std::optional<e2e::AccessibleNode>& tree) {
    std::string text;
    for (const auto* node : tree ? tree->flattened() : std::vector<const e2e::AccessibleNode*>{})
        text += "[" + node->role + "] " + node->name + (node->enabled ? "\n" : " (disabled)\n");
    return text;
}

e2e::Point centreOf(const e2e::AccessibleNode& node) {
    return {node.x + node.width / 2, node.y + node.height / 2};
}

bool run(const std::string& command) {
    return std::system(command.c_str()) == 0;
}

// A folder removed with everything in it at the end of the test.
class ScratchRoot {
  public:
    ScratchRoot() {
        auto pattern = (fs::temp_directory_path() / "tarnwick-installed-XXXXXX").string();
        path_ = ::mkdtemp(pattern.data());
    }
    ~ScratchRoot() { fs::remove_all(path_); }
    ScratchRoot(const ScratchRoot&) = delete;
    ScratchRoot& operator=(const ScratchRoot&) = delete;
    const fs::path& path() const { return path_; }

  private:
    fs::path path_;
};

class InstalledPackageTest : public ::testing::Test {
  protected:
    InstalledPackageTest() { folders.markInstructionsSeen(); }

    // The chord brings the installed program's panel, drawn with its
    // resources, to the pointer.
    void expectPanelOnChord(const fs::path& program, const std::string& screenshotName) {
        Desktop desktop;
        e2e::RunningProgram tarnwick(program.string(), {});
        ASSERT_TRUE(tarnwick.waitUntilHandling(SIGTERM, 20)) << tarnwick.standardError();
        desktop.movePointer(640, 400);
        desktop.pressChord();
        std::optional<e2e::Geometry> panel;
        ASSERT_TRUE(eventually(
            [&] { return (panel = desktop.shownPanel(tarnwick.pid())).has_value(); }, 20))
            << tarnwick.standardOutput() << tarnwick.standardError();
        EXPECT_NEAR(panel->x + panel->width / 2.0, 640, 2);
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        EXPECT_TRUE(e2e::saveScreenshot(
            *panel, std::string(TARNWICK_ARTIFACTS_DIR) + "/" + screenshotName));
        tarnwick.sendSignal(SIGTERM);
        EXPECT_EQ(tarnwick.waitForExit(10), (ExitStatus{true, 0}));
    }

    // A first start on a desktop without a window manager asks for the
    // permission; once one runs, "Relaunch App" ends the program and its
    // installed helper, found beside it or in libexec/tarnwick, starts it
    // again.
    void expectRelaunchFromThePermissionPage(const fs::path& program) {
        x11test::InputTestDisplay display;
        ASSERT_TRUE(display.started()) << "Xvfb did not start";
        testsupport::ScopedEnvironment environment;
        environment.set("DISPLAY", display.name());
        e2e::PrivateFolders firstRun;
        auto& bus = e2e::AccessibilityBus::shared();
        ASSERT_TRUE(bus.isUp()) << "no session bus";
        e2e::Desktop desktop;
        e2e::RunningProgram first(program.string(), {});
        ASSERT_TRUE(first.waitUntilHandling(SIGTERM, 20)) << first.standardError();
        std::optional<e2e::AccessibleNode> ask;
        ASSERT_TRUE(eventually(
            [&] {
                return (ask = onboardingButton(bus, first.pid(), "Accessibility Permission"))
                    .has_value();
            },
            20))
            << describe(bus.application("Tarnwick", 1, first.pid()));
        desktop.click(centreOf(*ask));
        e2e::RunningProgram windowManager("/usr/bin/openbox", {"--sm-disable"});
        ASSERT_TRUE(eventually([&] { return desktop.windowManagerRuns(); }, 10));

        std::optional<e2e::AccessibleNode> relaunch;
        ASSERT_TRUE(eventually(
            [&] {
                return (relaunch = onboardingButton(bus, first.pid(), "Relaunch App")).has_value();
            },
            20))
            << describe(bus.application("Tarnwick", 1, first.pid())) << first.standardOutput()
            << first.standardError();
        desktop.click(centreOf(*relaunch));
        ASSERT_EQ(first.waitForExit(10), (ExitStatus{true, 0})) << first.standardOutput();
        std::vector<pid_t> again;
        ASSERT_TRUE(eventually(
            [&] {
                again = firstRun.processesRunning(program.string());
                return again.size() == 1;
            },
            20))
            << first.standardOutput() << first.standardError();
        EXPECT_NE(again.front(), first.pid());
        ::kill(again.front(), SIGTERM);
        EXPECT_TRUE(
            eventually([&] { return firstRun.processesRunning(program.string()).empty(); }, 10));
    }

    // The enabled button of that name in the program's onboarding window
    // (the hidden panel holds a copy of the steps too).
    static std::optional<e2e::AccessibleNode> onboardingButton(e2e::AccessibilityBus& bus,
                                                               pid_t pid, const std::string& name) {
        const auto tree = bus.application("Tarnwick", 1, pid);
        for (const auto& window : tree ? tree->children : std::vector<e2e::AccessibleNode>{}) {
            const bool onboarding =
                window.name == "Tarnwick" && window.find("label", "Welcome to Tarnwick!");
            const auto* button = onboarding ? window.find("push button", name) : nullptr;
            if (button && button->enabled)
                return *button;
        }
        return std::nullopt;
    }

    e2e::PrivateFolders folders;
};

TEST_F(InstalledPackageTest, TheDebianPackageRunsFromAScratchRootAndRelaunchesThroughItsHelper) {
    ScratchRoot root;
    ASSERT_TRUE(run("dpkg -x '" TARNWICK_DEBIAN_PACKAGE "' '" + root.path().string() + "'"));
    const auto usr = root.path() / "usr";
    for (const auto* file :
         {"bin/tarnwick", "libexec/tarnwick/AppRestartHelper",
          "share/applications/harrowmere.Tarnwick.desktop",
          "share/metainfo/harrowmere.Tarnwick.metainfo.xml",
          "share/icons/hicolor/scalable/apps/tarnwick.svg",
          "share/icons/hicolor/48x48/apps/tarnwick.png", "share/man/man1/tarnwick.1.gz",
          "share/doc/tarnwick/copyright", "share/tarnwick/lirixkro/sr-yosemite-info.json"}) {
        EXPECT_TRUE(fs::exists(usr / file)) << file;
    }
    // The updater loads the network library only when it fetches, so the
    // package names it itself.
    EXPECT_TRUE(run("dpkg-deb -f '" TARNWICK_DEBIAN_PACKAGE "' Depends | grep -q 'libcurl4 '"));
    if (!std::getenv("DISPLAY"))
        GTEST_SKIP() << "needs an X display";
    expectPanelOnChord(usr / "bin/tarnwick", "installed-package-panel.png");
    expectRelaunchFromThePermissionPage(usr / "bin/tarnwick");
}

// The release archive unpacks as the updater's release folder:
// tarnwick/current -> tarnwick-VERSION, with the program inside.
TEST_F(InstalledPackageTest, TheReleaseArchiveRunsFromWhereverItIsUnpacked) {
    ScratchRoot root;
    ASSERT_TRUE(run("tar -xzf '" TARNWICK_RELEASE_ARCHIVE "' -C '" + root.path().string() + "'"));
    const auto release = root.path() / "tarnwick";
    EXPECT_EQ(fs::read_symlink(release / "current"), fs::path("tarnwick-" TARNWICK_VERSION));
    const auto current = release / "current";
    EXPECT_TRUE(fs::exists(current / "libexec/tarnwick/AppRestartHelper"));
    EXPECT_TRUE(fs::exists(current / "share/tarnwick/lirixkro/sr-mojave-info.json"));
    if (!std::getenv("DISPLAY"))
        GTEST_SKIP() << "needs an X display";
    expectPanelOnChord(current / "bin/tarnwick", "release-archive-panel.png");
    expectRelaunchFromThePermissionPage(current / "bin/tarnwick");
}

}  // namespace
