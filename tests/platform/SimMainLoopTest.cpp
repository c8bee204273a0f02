#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/sim/SimMainLoop.h"

// What the simulated loop adds to the promises every loop keeps (the main
// loop tests of the views run those on both): turns the test takes one at a
// time, and a clock that moves only when told.

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
