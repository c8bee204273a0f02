#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "support/ContinuationProxy.h"
#include "support/Task.h"

using namespace quillbox;

namespace {

using Gate = ContinuationProxy<int>;

Task<int> waitFor(Gate& gate) {
    co_return co_await gate;
}

Task<std::string> describe(Task<int> inner) {
    try {
        co_return "got " + std::to_string(co_await inner);
    } catch (const std::exception& error) {
        co_return std::string("failed: ") + error.what();
    }
}

}  // namespace

TEST(Task, AwaitingCoroutinesAndWaitingThreadsAllGetTheOutcome) {
    Gate gate;
    auto inner = waitFor(gate);
    auto first = describe(inner);
    auto second = describe(inner);
    EXPECT_FALSE(first.isDone());
    gate.resumeReturning(7);
    EXPECT_EQ(inner.result(), 7);
    EXPECT_EQ(first.result(), "got 7");
    EXPECT_EQ(second.result(), "got 7");
    EXPECT_EQ(describe(inner).result(), "got 7");  // already done: no suspension

    Gate failing;
    auto failed = waitFor(failing);
    auto described = describe(failed);
    failing.resumeThrowing(std::make_exception_ptr(std::runtime_error("disk gone")));
    EXPECT_THROW(failed.result(), std::runtime_error);
    EXPECT_EQ(described.result(), "failed: disk gone");
}

TEST(Task, CancellationHandlersRunOnceAndOnlyWhileRegistered) {
    Gate gate;
    auto task = waitFor(gate);
    std::vector<std::string> ran;
    auto cancellation = std::make_shared<TaskCancellation>();
    auto kept = cancellation->onCancel([&] { ran.push_back("kept"); });
    auto dropped = cancellation->onCancel([&] { ran.push_back("dropped"); });
    dropped.cancel();
    cancellation->cancel();
    cancellation->cancel();
    auto late = cancellation->onCancel([&] { ran.push_back("late"); });
    EXPECT_EQ(ran, (std::vector<std::string>{"kept", "late"}));
    EXPECT_TRUE(cancellation->isCancelled());

    EXPECT_FALSE(task.isCancelled());
    task.cancel();  // nothing in the task listens: it goes on
    EXPECT_TRUE(task.isCancelled());
    gate.resumeReturning(1);
    EXPECT_EQ(task.result(), 1);
}

TEST(TaskThreads, AThreadWaitingForATaskSeesWhatAnotherThreadCompleted) {
    for (int round = 0; round < 50; ++round) {
        Gate gate;
        auto task = describe(waitFor(gate));
        std::thread completer([&] { gate.resumeReturning(round); });
        EXPECT_EQ(task.result(), "got " + std::to_string(round));
        completer.join();
    }
}
