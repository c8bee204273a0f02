// "Check for Updates..." in the status menu of the real program, against a
// feed on a loopback server of the test's own: the dialogue a person gets,
// read as a screen reader reads it and saved as a picture.
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>

#include "AccessibilityBus.h"
#include "DesktopDriver.h"
#include "PreferenceFile.h"
#include "ProgramMenus.h"
#include "RunningProgram.h"
#include "update/FeedText.h"
#include "update/LoopbackServer.h"
#include "update/ReleaseFolder.h"

namespace {

namespace fs = std::filesystem;
using e2e::AccessibleNode;
using e2e::contentsOf;
using e2e::eventually;
using platform::PropertyList;

// A release made by the release script from the program given (with the
// restart helper it finds beside it, or the one given), signed with the
// tests' key, into the folder; the script's output.
std::string makeRelease(const std::string& program, const fs::path& out, const std::string& urlBase,
                        const fs::path& restartHelper = {}) {
    std::string command = "'" TARNWICK_SOURCE_DIR
                          "/scripts/make-release.sh' --allow-key-in-repository "
                          "--key '" TARNWICK_SOURCE_DIR
                          "/tests/update/keys/test-release-key.pem' --program '" +
                          program + "' --url-base '" + urlBase + "' --out '" + out.string() +
                          "' --appcast '" + (out / "appcast.xml").string() + "'";
    if (!restartHelper.empty())
        command += " --restart-helper '" + restartHelper.string() + "'";
    return testsupport::outputOf(command + " 2>&1");
}

// The process running that executable, once there is one.
std::optional<pid_t> processRunning(const fs::path& executable, double seconds) {
    std::optional<pid_t> found;
    e2e::eventually(
        [&] {
            std::error_code ignored;
            for (const auto& entry : fs::directory_iterator("/proc", ignored)) {
                std::error_code error;
                if (fs::read_symlink(entry.path() / "exe", error) == executable && !error)
                    found = std::stoi(entry.path().filename().string());
            }
            return found.has_value();
        },
        seconds);
    return found;
}

class UpdateCheckOnDesktopTest : public ::testing::Test {
  protected:
    void SetUp() override {
        // The tray host writes its first configuration there.
        std::filesystem::create_directories(std::getenv("XDG_CONFIG_HOME"));
        // A program that has run before, has shown its instructions and was
        // told where to look for updates, but not to look by itself.
        e2e::writePreferenceFile(folders.preferenceFile(),
                                 {{"SUFeedURL", server.url("/appcast.xml")},
                                  {"SUHasLaunchedBefore", true},
                                  {"SUEnableAutomaticChecks", false},
                                  {"needsShowingInstructions", false}});
        // Such a program brings its panel up at the pointer as it starts:
        // away from the tray, where an earlier test may have left it.
        desktop.movePointer(640, 400);
    }

    // Picks "Check for Updates...", the second item of the status menu.
    void checkFromTheStatusMenu(pid_t program) { e2e::chooseFromStatusMenu(desktop, program, 2); }

    // The program's dialogue that has a node of that role and name, once it
    // shows.
    std::optional<AccessibleNode> dialogueWith(const std::string& role, const std::string& name,
                                               double seconds = 15) {
        std::optional<AccessibleNode> found;
        eventually(
            [&] {
                const auto tree = bus.application("Tarnwick", 1);
                if (!tree)
                    return false;
                for (const auto& window : tree->children) {
                    if (window.find(role, name))
                        found = window;
                }
                return found.has_value();
            },
            seconds);
        return found;
    }

    static e2e::Point centreOf(const AccessibleNode& node) {
        return {node.x + node.width / 2, node.y + node.height / 2};
    }

    testsupport::LoopbackServer server;
    e2e::PrivateFolders folders;
    e2e::AccessibilityBus& bus = e2e::AccessibilityBus::shared();
    e2e::Desktop desktop;
};

}  // namespace

TEST_F(UpdateCheckOnDesktopTest, TheStatusMenusCheckShowsTheNewVersionAndThenThatAllIsCurrent) {
    ASSERT_TRUE(bus.isUp());
    server.serve("/appcast.xml",
                 testsupport::feedWith(testsupport::itemWith(
                     {.version = "999999",
                      .shortVersion = "9.9",
                      .extra = "<description sparkle:format=\"markdown\"><![CDATA[## What's new\n\n"
                               "* The panel opens **faster**\n* Fewer surprises]]></description>",
                      .url = server.url("/tarnwick-9.9.tar.gz")})));
    e2e::RunningProgram tint2("/usr/bin/tint2", {});
    e2e::RunningProgram tarnwick(e2e::tarnwickExecutable(), {});
    ASSERT_TRUE(tarnwick.waitUntilHandling(SIGTERM, 20)) << tarnwick.standardError();

    ASSERT_NO_FATAL_FAILURE(checkFromTheStatusMenu(tarnwick.pid()));
    const auto offer = dialogueWith("push button", "Remind Me Later");
    ASSERT_TRUE(offer) << "no update dialogue showed; the server was asked for "
                       << server.requests().size() << " files; " << tarnwick.standardError()
                       << bus.application("Tarnwick", 1).value_or(AccessibleNode{}).outline();
    EXPECT_TRUE(offer->find("label", "Tarnwick 9.9 is available"));
    // The program of the build tree is no release folder it could replace:
    // the download page stands in for installing.
    EXPECT_TRUE(offer->find("push button", "Open Download Page"));
    EXPECT_TRUE(offer->find("push button", "Skip This Version"));
    EXPECT_TRUE(offer->find("label", "Release Notes:"));
    EXPECT_TRUE(e2e::saveScreenshot({offer->x, offer->y, offer->width, offer->height},
                                    TARNWICK_ARTIFACTS_DIR "/update-found-dialogue.png"));
    desktop.click(centreOf(*offer->find("push button", "Remind Me Later")));
    ASSERT_TRUE(
        eventually([&] { return !dialogueWith("push button", "Remind Me Later", 0.1); }, 5));
    // Nothing was downloaded: only the feed was asked for.
    EXPECT_EQ(server.requests(), (std::vector<std::string>{"/appcast.xml"}));

    // The same check against a feed whose newest release is older.
    server.serve("/appcast.xml", testsupport::feedWith(testsupport::itemWith({.version = "1"})));
    ASSERT_NO_FATAL_FAILURE(checkFromTheStatusMenu(tarnwick.pid()));
    const auto current = dialogueWith("label", "You're up to date!");
    ASSERT_TRUE(current) << "no up-to-date dialogue showed";
    EXPECT_TRUE(e2e::saveScreenshot({current->x, current->y, current->width, current->height},
                                    TARNWICK_ARTIFACTS_DIR "/update-up-to-date-dialogue.png"));

    tarnwick.sendSignal(SIGTERM);
    EXPECT_EQ(tarnwick.waitForExit(10), (e2e::ExitStatus{true, 0}));
}

TEST_F(UpdateCheckOnDesktopTest, AReleaseFolderIsUpdatedAndTheNewVersionStarted) {
    ASSERT_TRUE(bus.isUp());
    // This build's program, installed from a release archive as a user
    // would, and a later release made by the release script.
    const testsupport::TemporaryFolder place;
    const auto installed = place.path() / "installed";
    const auto releases = place.path() / "releases";
    const auto base = server.url("/releases");
    const auto made = makeRelease(e2e::tarnwickExecutable(), place.path() / "this", base);
    fs::create_directories(installed);
    const auto archives =
        testsupport::outputOf("ls '" + (place.path() / "this").string() + "'/*.tar.gz");
    testsupport::outputOf("tar -xzf " + archives.substr(0, archives.find('\n')) + " -C '" +
                          installed.string() + "'");
    const auto program = installed / "tarnwick" / "current" / "bin" / "tarnwick";
    ASSERT_TRUE(fs::exists(program)) << made;
    const auto helper =
        installed / "tarnwick" / "current" / "libexec" / "tarnwick" / "AppRestartHelper";
    if (!fs::exists(helper))
        GTEST_SKIP() << "this build has no restart helper to start the new version with";

    const auto next = makeRelease(TARNWICK_NEXT_EXECUTABLE, releases, base, helper);
    ASSERT_TRUE(fs::exists(releases / "appcast.xml")) << next;
    for (const auto& entry : fs::directory_iterator(releases)) {
        if (entry.path().extension() == ".gz")
            server.serve("/releases/" + entry.path().filename().string(), contentsOf(entry.path()));
    }
    server.serve("/appcast.xml", contentsOf(releases / "appcast.xml"));

    e2e::RunningProgram tint2("/usr/bin/tint2", {});
    e2e::RunningProgram tarnwick(program.string(), {});
    ASSERT_TRUE(tarnwick.waitUntilHandling(SIGTERM, 20)) << tarnwick.standardError();
    ASSERT_NO_FATAL_FAILURE(checkFromTheStatusMenu(tarnwick.pid()));
    const auto offer = dialogueWith("push button", "Install Update");
    ASSERT_TRUE(offer) << bus.application("Tarnwick", 1).value_or(AccessibleNode{}).outline();
    EXPECT_TRUE(offer->find("label", "Tarnwick 99.0.0 is available"));
    desktop.click(centreOf(*offer->find("push button", "Install Update")));

    // Downloaded, checked, unpacked and switched; the old process ends and
    // the helper starts the new version through the switched link.
    EXPECT_EQ(tarnwick.waitForExit(60), (e2e::ExitStatus{true, 0}))
        << tarnwick.standardOutput() << tarnwick.standardError()
        << bus.application("Tarnwick", 1).value_or(AccessibleNode{}).outline();
    const auto newFolder = fs::canonical(installed / "tarnwick") / "tarnwick-99.0.0";
    EXPECT_EQ(fs::read_symlink(installed / "tarnwick" / "current"), "tarnwick-99.0.0");
    const auto started = processRunning(newFolder / "bin" / "tarnwick", 20);
    ASSERT_TRUE(started) << "the new version never started";
    EXPECT_EQ(testsupport::outputOf("/proc/" + std::to_string(*started) + "/exe --version"),
              "Tarnwick 99.0.0 (build 999999)\n");
    ::kill(*started, SIGTERM);
}

TEST_F(UpdateCheckOnDesktopTest, ADueDailyCheckRunsQuietlyAtStartAndIsRecorded) {
    // Checking by itself, last done more than a day ago.
    const auto dayAndHourAgo = std::chrono::system_clock::now() - std::chrono::hours(25);
    e2e::writePreferenceFile(folders.preferenceFile(), {{"SUFeedURL", server.url("/appcast.xml")},
                                                        {"SUHasLaunchedBefore", true},
                                                        {"SUEnableAutomaticChecks", true},
                                                        {"SULastCheckTime", dayAndHourAgo},
                                                        {"needsShowingInstructions", false}});
    server.serve("/appcast.xml", testsupport::feedWith(testsupport::itemWith({.version = "1"})));
    e2e::RunningProgram tarnwick(e2e::tarnwickExecutable(), {});
    ASSERT_TRUE(tarnwick.waitUntilHandling(SIGTERM, 20)) << tarnwick.standardError();

    // The check that was due runs at once and records its time.
    ASSERT_TRUE(eventually([&] { return server.requests().size() == 1; }, 20));
    ASSERT_TRUE(eventually(
        [&] {
            const auto stored = e2e::readPreferenceFile(folders.preferenceFile());
            const auto found = stored.find("SULastCheckTime");
            const auto* time =
                found == stored.end() ? nullptr : found->second.get<PropertyList::Date>();
            return time && *time > dayAndHourAgo + std::chrono::hours(24);
        },
        10));

    // The next one is a day away (the idle program's wake-ups are measured
    // in the footprint benchmark).
    EXPECT_EQ(server.requests().size(), 1u);
    // Finding nothing new, it showed nothing.
    EXPECT_FALSE(dialogueWith("push button", "OK", 1));

    tarnwick.sendSignal(SIGTERM);
    EXPECT_EQ(tarnwick.waitForExit(10), (e2e::ExitStatus{true, 0}));
}
