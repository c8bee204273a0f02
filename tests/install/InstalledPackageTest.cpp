// The packages as a user gets them: the Debian package unpacked into a
// scratch root and the release archive unpacked anywhere, each running from
// where it lies, finding its resources and its helper there.
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>

#include "DesktopDriver.h"
#include "RunningProgram.h"
#include "Screenshot.h"

namespace {

namespace fs = std::filesystem;
using e2e::Desktop;
using e2e::eventually;
using e2e::ExitStatus;

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

    // The installed helper starts the installed program again once the
    // running one has ended.
    void expectRelaunchThroughHelper(const fs::path& program, const fs::path& helper) {
        e2e::RunningProgram first(program.string(), {});
        ASSERT_TRUE(first.waitUntilHandling(SIGTERM, 20)) << first.standardError();
        e2e::RunningProgram restarter(helper.string(), {"--watch-pid", std::to_string(first.pid()),
                                                        "--app", program.string()});
        first.sendSignal(SIGTERM);
        ASSERT_EQ(first.waitForExit(10), (ExitStatus{true, 0}));
        std::vector<pid_t> again;
        ASSERT_TRUE(eventually(
            [&] {
                again = folders.processesRunning(program.string());
                return again.size() == 1;
            },
            20))
            << restarter.standardError();
        ::kill(again.front(), SIGTERM);
        EXPECT_TRUE(eventually([&] { return folders.processesRunning(program.string()).empty(); }));
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
    if (!std::getenv("DISPLAY"))
        GTEST_SKIP() << "needs an X display";
    expectPanelOnChord(usr / "bin/tarnwick", "installed-package-panel.png");
    expectRelaunchThroughHelper(usr / "bin/tarnwick", usr / "libexec/tarnwick/AppRestartHelper");
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
    expectRelaunchThroughHelper(current / "bin/tarnwick",
                                current / "libexec/tarnwick/AppRestartHelper");
}

}  // namespace
