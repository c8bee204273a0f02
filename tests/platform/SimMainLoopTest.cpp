#include <gtest/gtest.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "platform/sim/SimMainLoop.h"

using platform::sim::SimMainLoop;

TEST(SimMainLoop, PostedTasksRunInOrderOnlyWhenTheLoopRuns) {
    SimMainLoop loop;
    std::vector<int> order;
    loop.post([&] { order.push_back(1); });
    loop.post([&] {
        order.push_back(2);
        loop.post([&] { order.push_back(4); });
    });
    loop.post([&] { order.push_back(3); });
    EXPECT_TRUE(order.empty());

    EXPECT_EQ(loop.runOneTurn(), 3u);
    EXPECT_EQ(order, (std::vector<int>{1, 2, 3}));  // the task posted meanwhile waits a turn
    loop.runUntilIdle();
    EXPECT_EQ(order, (std::vector<int>{1, 2, 3, 4}));
}

TEST(SimMainLoop, TimersFireInDueOrderAsTheClockAdvances) {
    SimMainLoop loop;
    std::vector<std::string> fired;
    loop.postAfter(0.5, [&] { fired.push_back("half"); });
    auto cancelled = loop.postAfter(0.2, [&] { fired.push_back("cancelled"); });
    loop.postAfter(0.1, [&] {
        fired.push_back("tenth");
        loop.postAfter(0.1, [&] { fired.push_back("chained at 0.2"); });
    });
    loop.cancel(cancelled);

    loop.advance(0.3);
    EXPECT_EQ(fired, (std::vector<std::string>{"tenth", "chained at 0.2"}));
    EXPECT_DOUBLE_EQ(loop.now(), 0.3);
    loop.advance(0.2);
    EXPECT_EQ(fired.back(), "half");
    EXPECT_EQ(loop.pendingTimerCount(), 0u);
    loop.cancel(cancelled);  // cancelling twice is harmless
}

TEST(SimMainLoop, WatchedDescriptorsRunTheirHandlerWhenReadable) {
    SimMainLoop loop;
    int fds[2];
    ASSERT_EQ(::pipe(fds), 0);
    int reads = 0;
    auto watch = loop.watchFileDescriptor(fds[0], [&] {
        char buffer[16];
        if (::read(fds[0], buffer, sizeof buffer) > 0)
            ++reads;
    });
    loop.runUntilIdle();
    EXPECT_EQ(reads, 0);

    ASSERT_EQ(::write(fds[1], "x", 1), 1);
    EXPECT_TRUE(loop.runUntil([&] { return reads == 1; }));

    loop.unwatch(watch);
    ASSERT_EQ(::write(fds[1], "y", 1), 1);
    loop.runUntilIdle();
    EXPECT_EQ(reads, 1);
    ::close(fds[0]);
    ::close(fds[1]);
}
