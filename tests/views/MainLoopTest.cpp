// What every main loop promises, run against the simulated desktop's loop
// (on its virtual clock) and against Qt's: posted tasks in order, timers no
// earlier than asked and never once cancelled, descriptors watched until
// unwatched, and nothing left to run once the loop is gone.
#include <gtest/gtest.h>
#include <unistd.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "QtTestSupport.h"
#include "platform/sim/SimMainLoop.h"
#include "views/QtMainLoop.h"

namespace {

using platform::MainLoop;
using platform::Token;

// The simulated loop, its clock moved on in small steps as if time passed.
struct SimulatedLoop {
    static constexpr double step = 0.005;
    platform::sim::SimMainLoop loop;

    bool runUntil(const std::function<bool()>& done, double seconds = 5) {
        for (double waited = 0; waited <= seconds; waited += step) {
            loop.runUntilIdle();
            if (done())
                return true;
            loop.advance(step);
        }
        return false;
    }
    void runFor(double seconds) {
        runUntil([] { return false; }, seconds);
    }
};

struct QtLoop {
    platform::qt::QtMainLoop loop;

    bool runUntil(const std::function<bool()>& done, double seconds = 5) {
        return viewtest::runQtUntil(done, static_cast<int>(seconds * 1000));
    }
    void runFor(double seconds) { viewtest::runQtFor(static_cast<int>(seconds * 1000)); }
};

template <typename Backend>
class MainLoopTest : public ::testing::Test {
  protected:
    Backend backend;
    MainLoop& mainLoop = backend.loop;
};

class BackendNames {
  public:
    template <typename T>
    static std::string GetName(int) {
        return std::is_same_v<T, SimulatedLoop> ? "Simulated" : "Qt";
    }
};
using Backends = ::testing::Types<SimulatedLoop, QtLoop>;
TYPED_TEST_SUITE(MainLoopTest, Backends, BackendNames);

}  // namespace

TYPED_TEST(MainLoopTest, PostedTasksRunLaterInTheOrderPosted) {
    auto& loop = this->mainLoop;
    std::vector<int> order;
    loop.post([&] { order.push_back(1); });
    loop.post([&] {
        order.push_back(2);
        loop.post([&] { order.push_back(4); });  // after the ones already queued
    });
    loop.post([&] { order.push_back(3); });
    EXPECT_TRUE(order.empty());

    ASSERT_TRUE(this->backend.runUntil([&] { return order.size() == 4; }));
    EXPECT_EQ(order, (std::vector<int>{1, 2, 3, 4}));
}

TYPED_TEST(MainLoopTest, TimersFireInDueOrderNoEarlierThanAskedAndNeverOnceCancelled) {
    auto& loop = this->mainLoop;
    std::vector<std::string> fired;
    const double start = loop.now();
    double lateFiredAt = 0;
    loop.postAfter(0.06, [&] {
        fired.push_back("late");
        lateFiredAt = loop.now();
    });
    const Token cancelled = loop.postAfter(0.02, [&] { fired.push_back("cancelled"); });
    const Token early = loop.postAfter(0.01, [&] { fired.push_back("early"); });
    loop.cancel(cancelled);

    ASSERT_TRUE(this->backend.runUntil([&] { return fired.size() == 2; }));
    this->backend.runFor(0.03);
    EXPECT_EQ(fired, (std::vector<std::string>{"early", "late"}));
    EXPECT_GE(lateFiredAt - start, 0.06);
    loop.cancel(early);  // already ran: harmless
    loop.cancel(Token{});

    // A timer may cancel itself and start another.
    int chained = 0;
    Token self;
    self = loop.postAfter(0, [&] {
        loop.cancel(self);
        loop.postAfter(0, [&] { ++chained; });
    });
    ASSERT_TRUE(this->backend.runUntil([&] { return chained == 1; }));
}

TYPED_TEST(MainLoopTest, AWatchedDescriptorIsReportedWhileReadableUntilUnwatched) {
    auto& loop = this->mainLoop;
    int fds[2];
    ASSERT_EQ(::pipe(fds), 0);
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
    this->backend.runFor(0.02);
    EXPECT_EQ(received, "");  // nothing to read yet

    ASSERT_EQ(::write(fds[1], "ab", 2), 2);
    ASSERT_TRUE(this->backend.runUntil([&] { return received == "ab"; }));
    ASSERT_EQ(::write(fds[1], "c!", 2), 2);
    ASSERT_TRUE(this->backend.runUntil([&] { return received == "abc!"; }));

    ASSERT_EQ(::write(fds[1], "d", 1), 1);
    this->backend.runFor(0.03);
    EXPECT_EQ(received, "abc!");
    ::close(fds[0]);
    ::close(fds[1]);
}

TYPED_TEST(MainLoopTest, NothingPendingRunsAfterTheLoopIsGone) {
    bool ran = false;
    {
        TypeParam gone;
        gone.loop.post([&] { ran = true; });
        gone.loop.postAfter(0, [&] { ran = true; });
    }
    // Another loop of the kind runs what is due; the gone one's work isn't.
    this->backend.runFor(0.02);
    EXPECT_FALSE(ran);
}
