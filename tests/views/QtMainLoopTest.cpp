#include <gtest/gtest.h>
#include <unistd.h>

#include <memory>
#include <string>
#include <vector>

#include "QtTestSupport.h"
#include "views/QtMainLoop.h"

using platform::Token;
using platform::qt::QtMainLoop;
using viewtest::runQtFor;
using viewtest::runQtUntil;

TEST(QtMainLoop, PostedTasksRunLaterInTheOrderPosted) {
    QtMainLoop loop;
    std::vector<int> order;
    loop.post([&] { order.push_back(1); });
    loop.post([&] {
        order.push_back(2);
        loop.post([&] { order.push_back(4); });
    });
    loop.post([&] { order.push_back(3); });
    EXPECT_TRUE(order.empty());

    ASSERT_TRUE(runQtUntil([&] { return order.size() == 4; }));
    EXPECT_EQ(order, (std::vector<int>{1, 2, 3, 4}));
}

TEST(QtMainLoop, TimersFireNoEarlierThanAskedCancelledOnesNeverAndMayChain) {
    QtMainLoop loop;
    std::vector<std::string> fired;
    const double start = loop.now();
    double lateFiredAt = 0;
    loop.postAfter(0.06, [&] {
        fired.push_back("late");
        lateFiredAt = loop.now();
    });
    auto cancelled = loop.postAfter(0.02, [&] { fired.push_back("cancelled"); });
    auto early = loop.postAfter(0.01, [&] { fired.push_back("early"); });
    loop.cancel(cancelled);

    ASSERT_TRUE(runQtUntil([&] { return fired.size() == 2; }));
    runQtFor(30);
    EXPECT_EQ(fired, (std::vector<std::string>{"early", "late"}));
    EXPECT_GE(lateFiredAt - start, 0.06);
    EXPECT_EQ(loop.pendingTimerCount(), 0u);
    loop.cancel(early);  // already ran: harmless
    loop.cancel(Token{});

    // A timer may cancel itself and start another.
    int chained = 0;
    Token self;
    self = loop.postAfter(0, [&] {
        loop.cancel(self);
        loop.postAfter(0, [&] { ++chained; });
    });
    ASSERT_TRUE(runQtUntil([&] { return chained == 1; }));
}

TEST(QtMainLoop, WatchedDescriptorIsReportedWhileReadableUntilUnwatched) {
    int fds[2];
    ASSERT_EQ(::pipe(fds), 0);
    QtMainLoop loop;
    std::string received;
    Token watch;
    watch = loop.watchFileDescriptor(fds[0], [&] {
        char buffer[16];
        const auto n = ::read(fds[0], buffer, sizeof buffer);
        if (n > 0)
            received.append(buffer, static_cast<std::size_t>(n));
        if (received.find('!') != std::string::npos)
            loop.unwatch(watch);
    });

    ASSERT_EQ(::write(fds[1], "ab", 2), 2);
    ASSERT_TRUE(runQtUntil([&] { return received == "ab"; }));
    ASSERT_EQ(::write(fds[1], "c!", 2), 2);
    ASSERT_TRUE(runQtUntil([&] { return received == "abc!"; }));
    EXPECT_EQ(loop.watchCount(), 0u);

    ASSERT_EQ(::write(fds[1], "d", 1), 1);
    runQtFor(30);
    EXPECT_EQ(received, "abc!");
    ::close(fds[0]);
    ::close(fds[1]);
}

TEST(QtMainLoop, NothingPendingRunsAfterTheLoopIsGone) {
    bool ran = false;
    {
        QtMainLoop loop;
        loop.post([&] { ran = true; });
        loop.postAfter(0, [&] { ran = true; });
    }
    runQtFor(20);
    EXPECT_FALSE(ran);
}
