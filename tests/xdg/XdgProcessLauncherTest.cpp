#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <sstream>

#include "platform/sim/SimMainLoop.h"
#include "platform/xdg/XdgProcessLauncher.h"
#include "xdg/DesktopEntryTestTree.h"

namespace platform::xdg {
namespace {

using fixtures::DesktopEntryTestTree;

class X11ProcessLauncherTest : public ::testing::Test {
  protected:
    // Runs a shell command line through the launcher and waits for its end.
    std::optional<int> run(const std::string& script, bool quiet = false) {
        std::optional<int> status;
        const auto started =
            launcher.spawn({"/bin/sh", "-c", script}, {[&](int ended) { status = ended; }, quiet});
        EXPECT_TRUE(started) << started.error;
        loop.runUntil([&] { return status.has_value(); });
        return status;
    }

    sim::SimMainLoop loop;
    XdgProcessLauncher launcher{loop};
    DesktopEntryTestTree tree;
};

TEST_F(X11ProcessLauncherTest, ReportsHowTheProgramEndedAndLeavesNoZombie) {
    EXPECT_EQ(run("exit 0"), 0);
    EXPECT_EQ(run("exit 3"), 3);
    EXPECT_EQ(run("kill -TERM $$"), 128 + SIGTERM);

    const auto started = launcher.spawn({"true"});  // found in PATH
    ASSERT_TRUE(started);
    ASSERT_TRUE(loop.runUntil([&] { return ::waitpid(started.pid, nullptr, WNOHANG) < 0; }));
    EXPECT_EQ(errno, ECHILD) << "collected by the launcher";
}

TEST_F(X11ProcessLauncherTest, StartsInASessionOfItsOwnWithoutOurInput) {
    const auto out = tree.root() / "out";
    EXPECT_EQ(run("ps -o sid= -p $$ | tr -d ' ' > " + out.string() + "; echo $$ >> " +
                  out.string() + "; read line; echo \"[$line]\" >> " + out.string()),
              0);
    std::istringstream lines(tree.read(out));
    std::string session, pid, input;
    std::getline(lines, session);
    std::getline(lines, pid);
    std::getline(lines, input);
    EXPECT_EQ(session, pid) << "the leader of a new session";
    EXPECT_EQ(input, "[]") << "standard input is /dev/null";
    EXPECT_NE(std::stoi(session), ::getsid(0));
}

TEST_F(X11ProcessLauncherTest, QuietProgramsWriteNowhere) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    EXPECT_EQ(run("echo out; echo err >&2", true), 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(X11ProcessLauncherTest, AProgramThatCannotStartGivesTheReason) {
    const auto missing = tree.root() / "no-such-program";
    EXPECT_EQ(launcher.launch(missing, {}), missing.string() + ": No such file or directory");
    EXPECT_FALSE(launcher.spawn({"tarnwick-no-such-program-in-path"}));
    EXPECT_FALSE(launcher.spawn({}));
    EXPECT_EQ(launcher.launch("/bin/true", {"--ignored"}), "");
    EXPECT_EQ(launcher.processIdentifier(), ::getpid());
}

}  // namespace
}  // namespace platform::xdg
