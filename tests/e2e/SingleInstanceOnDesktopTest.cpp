// One copy per session: a later start hands its request to the running copy
// over the session bus and ends at once; without a bus a lock keeps the
// second copy out.
#include <gtest/gtest.h>

#include <cmath>
#include <csignal>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "AccessibilityBus.h"
#include "DesktopDriver.h"
#include "RunningProgram.h"

namespace {

using e2e::Desktop;
using e2e::eventually;
using e2e::exitedWith;
using e2e::ExitStatus;

// Each test starts after the first run, with a session bus of its own.
class SingleInstanceOnDesktopTest : public ::testing::Test {
  protected:
    void SetUp() override {
        if (!std::getenv("DISPLAY"))
            GTEST_SKIP() << "needs an X display";
        ASSERT_TRUE(e2e::AccessibilityBus::shared().isUp()) << "no session bus";
        folders.markInstructionsSeen();
    }

    std::vector<pid_t> running() const {
        return folders.processesRunning(e2e::tarnwickExecutable());
    }

    e2e::PrivateFolders folders;
};

TEST_F(SingleInstanceOnDesktopTest, ASecondStartIsAnsweredByTheFirstAndEndsAtOnce) {
    e2e::RunningProgram first(e2e::tarnwickExecutable(), {});
    ASSERT_TRUE(first.waitUntilHandling(SIGTERM, 20)) << first.standardError();

    // It ends with 0 only once the running copy took the request to open
    // Settings.
    const auto second = e2e::runTarnwick({}, 15);
    EXPECT_EQ(second.status, exitedWith(0)) << second.error;
    EXPECT_TRUE(second.output.empty()) << second.output;
    EXPECT_EQ(running(), std::vector<pid_t>{first.pid()});

    first.sendSignal(SIGTERM);
    EXPECT_EQ(first.waitForExit(10), exitedWith(0));
}

TEST_F(SingleInstanceOnDesktopTest, ShowPanelBringsTheRunningCopysPanelToThePointer) {
    Desktop desktop;
    e2e::RunningProgram first(e2e::tarnwickExecutable(), {});
    ASSERT_TRUE(first.waitUntilHandling(SIGTERM, 20)) << first.standardError();
    desktop.movePointer(400, 300);

    const auto asked = e2e::runTarnwick({"--show-panel"}, 15);
    EXPECT_EQ(asked.status, exitedWith(0)) << asked.error;
    // The panel a start brings up may show first, where the pointer was;
    // the request brings it to where the pointer is now.
    std::optional<e2e::Geometry> panel;
    const auto atPointer = [&] {
        return panel && std::abs(panel->x + panel->width / 2.0 - 400) <= 2 && panel->y < 300 &&
               300 < panel->y + panel->height;
    };
    EXPECT_TRUE(eventually(
        [&] {
            panel = desktop.shownPanel(first.pid());
            return atPointer();
        },
        10))
        << (panel ? std::to_string(panel->x) + "," + std::to_string(panel->y) : "no panel");
    EXPECT_EQ(running(), std::vector<pid_t>{first.pid()});

    first.sendSignal(SIGTERM);
    EXPECT_EQ(first.waitForExit(10), exitedWith(0));
}

// Starts at the same moment: the ones that lose the lock find the winner
// still starting, before it owns its name, wait for it and hand over.
TEST_F(SingleInstanceOnDesktopTest, StartsAtTheSameMomentLeaveExactlyOne) {
    for (int round = 0; round < 4; ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        std::vector<std::unique_ptr<e2e::RunningProgram>> starts;
        for (int i = 0; i < 3; ++i)
            starts.push_back(std::make_unique<e2e::RunningProgram>(e2e::tarnwickExecutable(),
                                                                   std::vector<std::string>{}));
        std::vector<ExitStatus> ended;
        e2e::RunningProgram* survivor = nullptr;
        ASSERT_TRUE(eventually(
            [&] {
                for (auto& start : starts) {
                    if (!start)
                        continue;
                    if (auto status = start->waitForExit(0.02)) {
                        ended.push_back(*status);
                        EXPECT_EQ(*status, exitedWith(0)) << start->standardError();
                        start.reset();
                    }
                }
                return ended.size() == starts.size() - 1;
            },
            30));
        for (auto& start : starts) {
            if (start)
                survivor = start.get();
        }
        ASSERT_TRUE(survivor->waitUntilHandling(SIGTERM, 20));
        EXPECT_EQ(running(), std::vector<pid_t>{survivor->pid()});
        survivor->sendSignal(SIGTERM);
        EXPECT_EQ(survivor->waitForExit(10), exitedWith(0));
    }
}

TEST_F(SingleInstanceOnDesktopTest, WithoutASessionBusTheLockKeepsASecondCopyOut) {
    testsupport::ScopedEnvironment noBus;
    noBus.set("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus");
    e2e::RunningProgram first(e2e::tarnwickExecutable(), {});
    ASSERT_TRUE(first.waitUntilHandling(SIGTERM, 20)) << first.standardError();

    const auto second = e2e::runTarnwick({}, 15);
    EXPECT_EQ(second.status, exitedWith(1));
    EXPECT_NE(second.error.find("a copy is running already"), std::string::npos) << second.error;
    EXPECT_EQ(running(), std::vector<pid_t>{first.pid()});

    // Once it has ended, the next start runs.
    first.sendSignal(SIGTERM);
    EXPECT_EQ(first.waitForExit(10), exitedWith(0));
    e2e::RunningProgram next(e2e::tarnwickExecutable(), {});
    EXPECT_TRUE(next.waitUntilHandling(SIGTERM, 20)) << next.standardError();
}

}  // namespace
