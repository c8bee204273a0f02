#include <gtest/gtest.h>

#include <filesystem>
#include <vector>

#include "platform/sim/SimMainLoop.h"
#include "platform/xdg/ProcessWatcher.h"
#include "xdg/ProcessTestChild.h"

namespace platform::xdg {
namespace {

using fixtures::ProcessTestChild;

std::size_t openDescriptorCount() {
    return static_cast<std::size_t>(
        std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                      std::filesystem::directory_iterator()));
}

class ProcessWatcherTest : public ::testing::Test {
  protected:
    ProcessWatcher::Handler record() {
        return [this](pid_t pid) { reported.push_back(pid); };
    }

    sim::SimMainLoop loop;
    ProcessWatcher watcher{loop};
    std::vector<pid_t> reported;
};

TEST_F(ProcessWatcherTest, ReportsAChildEndingOnceOnTheLoop) {
    ProcessTestChild child;
    ASSERT_TRUE(watcher.watch(child.pid(), record()));
    loop.runUntilIdle();
    EXPECT_TRUE(reported.empty()) << "the child still runs";

    child.kill();
    ASSERT_TRUE(loop.runUntil([&] { return !reported.empty(); }));
    EXPECT_EQ(reported, std::vector<pid_t>{child.pid()});
    EXPECT_FALSE(watcher.isWatching(child.pid()));
    loop.runUntilIdle();
    EXPECT_EQ(reported.size(), 1u);
}

TEST_F(ProcessWatcherTest, ReportsAProcessThatAlreadyEndedReapedOrNot) {
    ProcessTestChild reaped(ProcessTestChild::Behaviour::exitAtOnce);
    reaped.reap();
    ProcessTestChild zombie(ProcessTestChild::Behaviour::exitAtOnce);
    zombie.waitUntilEnded();
    ASSERT_TRUE(watcher.watch(reaped.pid(), record()));
    ASSERT_TRUE(watcher.watch(zombie.pid(), record()));
    ASSERT_TRUE(watcher.watch(-1, record()));
    EXPECT_TRUE(reported.empty()) << "never from within watch";
    loop.runOneTurn();
    EXPECT_EQ(reported, (std::vector<pid_t>{reaped.pid(), -1}));
    loop.runUntilIdle();
    EXPECT_EQ(reported, (std::vector<pid_t>{reaped.pid(), -1, zombie.pid()}));
}

TEST_F(ProcessWatcherTest, OnlyTheLastHandlerOfAWatchedProcessIsCalled) {
    ProcessTestChild running;
    ProcessTestChild gone(ProcessTestChild::Behaviour::exitAtOnce);
    gone.reap();
    int first = 0;
    watcher.watch(running.pid(), record());
    watcher.watch(gone.pid(), [&](pid_t) { ++first; });
    watcher.watch(gone.pid(), record());
    watcher.unwatch(running.pid());
    running.kill();
    running.reap();
    loop.runUntilIdle();
    EXPECT_EQ(first, 0);
    EXPECT_EQ(reported, std::vector<pid_t>{gone.pid()});
    EXPECT_EQ(watcher.watchCount(), 0u);

    watcher.watch(gone.pid(), record());
    watcher.unwatch(gone.pid());
    loop.runUntilIdle();
    EXPECT_EQ(reported.size(), 1u) << "an unwatched report is dropped";
}

TEST_F(ProcessWatcherTest, ClosesItsDescriptors) {
    const auto before = openDescriptorCount();
    ProcessTestChild first;
    ProcessTestChild second;
    {
        ProcessWatcher local(loop);
        local.watch(first.pid(), record());
        local.watch(second.pid(), record());
        EXPECT_EQ(openDescriptorCount(), before + 2);
        first.kill();
        ASSERT_TRUE(loop.runUntil([&] { return !reported.empty(); }));
        EXPECT_EQ(openDescriptorCount(), before + 1) << "closed once reported";
    }
    EXPECT_EQ(openDescriptorCount(), before) << "closed with the watcher";
}

TEST_F(ProcessWatcherTest, AReportPostedBeforeTheWatcherWentIsDropped) {
    ProcessTestChild child(ProcessTestChild::Behaviour::exitAtOnce);
    child.reap();
    {
        ProcessWatcher local(loop);
        local.watch(child.pid(), record());
    }
    loop.runUntilIdle();
    EXPECT_TRUE(reported.empty());
}

}  // namespace
}  // namespace platform::xdg
