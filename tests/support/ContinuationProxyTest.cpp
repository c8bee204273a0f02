#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "support/ContinuationProxy.h"
#include "support/MutexLock.h"
#include "support/StandardOutput.h"
#include "support/Task.h"

using namespace quillbox;

namespace {

using Proxy = ContinuationProxy<int>;
using ProxyResult = Proxy::ResultType;

struct Timeout {
    int seconds = 0;
};

struct Flags {
    bool completed, needsContinuation, needsResult;
    friend bool operator==(const Flags&, const Flags&) = default;
};

Flags flagsOf(const Proxy& proxy) {
    return {proxy.hasCompleted(), proxy.needsContinuation(), proxy.needsResult()};
}

}  // namespace

TEST(ContinuationProxy, TheSecondHalfToArriveResumesTheContinuationOnce) {
    Proxy resultFirst;
    EXPECT_EQ(flagsOf(resultFirst), (Flags{false, true, true}));
    resultFirst.resumeReturning(1);
    EXPECT_EQ(flagsOf(resultFirst), (Flags{false, true, false}));
    resultFirst.resumeReturning(2);
    std::vector<int> received;
    resultFirst.setContinuation([&](ProxyResult result) { received.push_back(result.value()); });
    EXPECT_EQ(received, (std::vector<int>{1}));
    EXPECT_EQ(flagsOf(resultFirst), (Flags{true, false, false}));

    Proxy continuationFirst;
    continuationFirst.setContinuation(
        [&](ProxyResult result) { received.push_back(result.value()); });
    continuationFirst.setContinuation([&](ProxyResult) { received.push_back(-1); });
    EXPECT_EQ(flagsOf(continuationFirst), (Flags{false, false, true}));
    continuationFirst.resumeReturning(3);
    continuationFirst.resumeReturning(4);
    EXPECT_EQ(received, (std::vector<int>{1, 3}));
    EXPECT_TRUE(continuationFirst.hasCompleted());
}

TEST(ContinuationProxy, AnAwaitingCoroutineGetsTheValueOrTheFailureRaised) {
    auto await = [](Proxy& proxy) -> Task<int> { co_return co_await proxy; };
    Proxy early;
    early.resumeReturning(5);
    EXPECT_EQ(await(early).result(), 5);

    Proxy late;
    auto waiting = await(late);
    EXPECT_FALSE(waiting.isDone());
    late.resumeThrowing(std::make_exception_ptr(std::out_of_range("no such row")));
    EXPECT_THROW(waiting.result(), std::out_of_range);

    ContinuationProxy<void, Timeout> typed;
    auto awaitTyped = [](ContinuationProxy<void, Timeout>& proxy) -> Task<int> {
        try {
            co_await proxy;
        } catch (const Timeout& timeout) {
            co_return timeout.seconds;
        }
        co_return 0;
    };
    auto timingOut = awaitTyped(typed);
    typed.resumeThrowing(Timeout{30});
    EXPECT_EQ(timingOut.result(), 30);

    ContinuationProxy<void, Timeout> plain;
    plain.resume();
    EXPECT_EQ(awaitTyped(plain).result(), 0);
}

TEST(ContinuationProxyThreads, ResultAndContinuationFromTwoThreadsMeetExactlyOnce) {
    for (int round = 0; round < 100; ++round) {
        Proxy proxy;
        std::atomic<int> deliveries = 0;
        std::atomic<int> value = 0;
        std::atomic<bool> go = false;
        std::thread caller([&] {
            while (!go)
                std::this_thread::yield();
            proxy.setContinuation([&](ProxyResult result) {
                value = result.value();
                ++deliveries;
            });
        });
        std::thread producer([&] {
            while (!go)
                std::this_thread::yield();
            proxy.resumeReturning(round);
            proxy.resumeReturning(-1);
        });
        go = true;
        caller.join();
        producer.join();
        EXPECT_EQ(deliveries, 1);
        EXPECT_EQ(value, round);
        EXPECT_TRUE(proxy.hasCompleted());
    }
}

TEST(ContinuationProxyThreads, AnAwaitResumedFromAnotherThreadSeesItsValue) {
    for (int round = 0; round < 100; ++round) {
        Proxy proxy;
        auto await = [](Proxy& awaited) -> Task<std::string> {
            co_return "got " + std::to_string(co_await awaited);
        };
        std::thread producer([&] { proxy.resumeReturning(round); });
        auto task = await(proxy);
        producer.join();
        EXPECT_EQ(task.result(), "got " + std::to_string(round));
    }
}

TEST(MutexLock, WithLockPassesResultsAndErrorsOnAndAlwaysUnlocks) {
    MutexLock lock;
    EXPECT_FALSE(lock.debugMode);
    EXPECT_EQ(lock.withLock([] { return 42; }), 42);
    EXPECT_THROW(lock.withLock([]() -> int { throw std::runtime_error("inside"); }),
                 std::runtime_error);
    ASSERT_TRUE(lock.tryLock());
    bool otherThreadGotIt = true;
    std::thread([&] { otherThreadGotIt = lock.tryLock(); }).join();
    EXPECT_FALSE(otherThreadGotIt);
    lock.unlock();
}

TEST(MutexLock, SaysSoWhenItCannotBeDestroyed) {
    CapturedOutput output;
    {
        MutexLock held;
        held.lock();
    }
    EXPECT_EQ(output.lines(), (std::vector<std::string>{"Failed to destroy mutex lock."}));
}

TEST(MutexLockThreads, KeepsOutOtherThreadsWhileHeld) {
    MutexLock lock;
    long counter = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&] {
            for (int i = 0; i < 5000; ++i)
                lock.withLock([&] { ++counter; });
        });
    }
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(counter, 20000);
}
