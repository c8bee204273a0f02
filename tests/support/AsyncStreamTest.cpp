#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "support/AsyncCancellableThrowingStream.h"
#include "support/Task.h"

using namespace quillbox;

namespace {

using IntStream = AsyncCancellableThrowingStream<int>;
using Kind = IntStream::YieldResult::Kind;

struct DiskFull {
    int code = 0;
};
using TypedStream = AsyncCancellableThrowingStream<std::string, DiskFull>;

// Everything a consumer read, and how its reading ended.
struct Reading {
    std::vector<int> elements;
    std::string end;
};

// With a gate, the reading starts once the gate's stream has ended in any way.
Task<Reading> readAll(IntStream stream, std::optional<IntStream> gate = std::nullopt) {
    Reading reading;
    if (gate) {
        auto opening = gate->makeAsyncIterator();
        try {
            co_await opening.next();
        } catch (const CancellationError&) {
        }
    }
    auto elements = stream.makeAsyncIterator();
    try {
        while (auto element = co_await elements.next())
            reading.elements.push_back(*element);
        reading.end = "finished";
    } catch (const std::exception& error) {
        reading.end = error.what();
    }
    co_return reading;
}

Task<std::optional<int>> readOne(IntStream::Iterator& elements) {
    co_return co_await elements.next();
}

std::exception_ptr failure(const std::string& text) {
    return std::make_exception_ptr(std::runtime_error(text));
}

}  // namespace

TEST(AsyncStream, YieldResultsFollowTheBufferLimit) {
    auto [zero, zeroInput] = IntStream::makeStream(IntStream::BufferingPolicy::limited(0));
    auto dropped = zeroInput.yield(1);
    EXPECT_EQ(dropped.kind, Kind::dropped);
    EXPECT_EQ(dropped.droppedElement, 1);

    auto zeroReader = zero.makeAsyncIterator();
    auto waiting = readOne(zeroReader);
    EXPECT_FALSE(waiting.isDone());
    auto handed = zeroInput.yield(2);
    EXPECT_EQ(handed.kind, Kind::enqueued);
    EXPECT_EQ(handed.remaining, 0u);
    EXPECT_EQ(waiting.result(), 2);

    auto [two, twoInput] = IntStream::makeStream(IntStream::BufferingPolicy::limited(2));
    EXPECT_EQ(twoInput.yield(1).remaining, 1u);
    EXPECT_EQ(twoInput.yield(2).remaining, 0u);
    auto third = twoInput.yield(3);
    EXPECT_EQ(third.kind, Kind::dropped);
    EXPECT_EQ(third.droppedElement, 3);
    twoInput.finish();
    EXPECT_EQ(readAll(two).result().elements, (std::vector<int>{1, 2}));

    auto [unbounded, input] = IntStream::makeStream();
    EXPECT_EQ(input.yield(1).remaining, detail::unboundedRemaining);
}

TEST(AsyncStream, TheBufferDrainsBeforeTheFirstErrorIsRaisedOnce) {
    auto [stream, input] = IntStream::makeStream();
    input.yield(1);
    input.yield(2);
    input.finish(failure("first"));
    input.finish(failure("second"));
    EXPECT_THROW(input.yield(3), CancellationError);

    auto elements = stream.makeAsyncIterator();
    EXPECT_EQ(readOne(elements).result(), 1);
    EXPECT_EQ(readOne(elements).result(), 2);
    try {
        readOne(elements).result();
        FAIL() << "the failure was not raised";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "first");
    }
    EXPECT_EQ(readOne(elements).result(), std::nullopt);
    EXPECT_EQ(readOne(elements).result(), std::nullopt);
}

TEST(AsyncStream, AWaitingConsumerGetsElementsAndTheEndAsTheyCome) {
    auto [stream, input] = IntStream::makeStream();
    auto reading = readAll(stream);
    input.yield(7);
    input.yield(8);
    EXPECT_FALSE(reading.isDone());
    input.finish();
    EXPECT_EQ(reading.result().elements, (std::vector<int>{7, 8}));
    EXPECT_EQ(reading.result().end, "finished");

    auto [failing, failingInput] = IntStream::makeStream();
    auto failed = readAll(failing);
    failingInput.yieldWith(Result<int, std::exception_ptr>::success(1));
    auto result = failingInput.yieldWith(Result<int, std::exception_ptr>::failure(failure("gone")));
    EXPECT_EQ(result.kind, Kind::terminated);
    EXPECT_EQ(failed.result().elements, (std::vector<int>{1}));
    EXPECT_EQ(failed.result().end, "gone");
}

TEST(AsyncStream, TypedFailuresAreRaisedAsTheirOwnType) {
    auto [stream, input] =
        TypedStream::makeStream(TypedStream::BufferingPolicy::unbounded(), DiskFull{99});
    auto consumer = [](TypedStream consumed) -> Task<int> {
        auto elements = consumed.makeAsyncIterator();
        try {
            while (co_await elements.next()) {
            }
        } catch (const DiskFull& error) {
            co_return error.code;
        }
        co_return 0;
    };
    auto finished = consumer(stream);
    input.finish(DiskFull{28});
    EXPECT_EQ(finished.result(), 28);

    auto cancelled = consumer(stream);  // the failure was delivered: a plain end now
    EXPECT_EQ(cancelled.result(), 0);

    auto [other, otherInput] =
        TypedStream::makeStream(TypedStream::BufferingPolicy::unbounded(), DiskFull{99});
    auto waiting = consumer(other);
    other.cancel();
    EXPECT_EQ(waiting.result(), 99);
    EXPECT_EQ(other.errorOnCancellation().code, 99);
}

TEST(AsyncStream, FinishHandlersRunOnceWithHowTheStreamEnded) {
    auto [stream, input] = IntStream::makeStream();
    std::vector<std::string> told;
    auto record = [&](const IntStream::Termination& termination) {
        told.push_back(termination.isCancelled() ? "cancelled"
                       : termination.error       ? "failed"
                                                 : "finished");
    };
    stream.onFinish(record);
    input.onFinish(record);
    input.finish(failure("x"));
    input.finish();
    stream.cancel();
    EXPECT_EQ(told, (std::vector<std::string>{"failed", "failed"}));
    input.onFinish(record);
    EXPECT_EQ(told.back(), "failed");

    auto [cancelled, cancelledInput] = IntStream::makeStream();
    std::exception_ptr error;
    cancelledInput.onFinish([&](const IntStream::Termination& termination) {
        record(termination);
        error = termination.finishedOrCancelledError();
    });
    auto reading = readAll(cancelled);
    cancelled.cancelThrowing(std::nullopt);
    EXPECT_EQ(told.back(), "cancelled");
    EXPECT_THROW(std::rethrow_exception(error), CancellationError);
    EXPECT_EQ(reading.result().end, "finished");
    EXPECT_THROW(cancelledInput.yield(1), CancellationError);
}

TEST(AsyncStream, HandlersAndConsumersRunWithTheLockReleased) {
    auto [stream, input] = IntStream::makeStream();
    // Each of these would deadlock if the stream still held its lock.
    input.onFinish([input = input](const IntStream::Termination&) {
        EXPECT_THROW(input.yield(0), CancellationError);
    });
    auto echo = [](IntStream consumed, IntStream::Continuation back) -> Task<std::vector<int>> {
        std::vector<int> seen;
        auto elements = consumed.makeAsyncIterator();
        while (auto element = co_await elements.next()) {
            seen.push_back(*element);
            if (*element == 1)
                back.yield(10);
        }
        co_return seen;
    };
    auto task = echo(stream, input);
    input.yield(1);
    input.finish();
    EXPECT_EQ(task.result(), (std::vector<int>{1, 10}));
}

TEST(AsyncStream, CancellingTheConsumingTaskCancelsTheStream) {
    auto [stream, input] = IntStream::makeStream();
    bool cancelledSeen = false;
    input.onFinish([&](const IntStream::Termination& termination) {
        cancelledSeen = termination.isCancelled();
    });
    auto reading = readAll(stream);
    input.yield(1);
    reading.cancel();
    EXPECT_TRUE(cancelledSeen);
    EXPECT_EQ(reading.result().elements, (std::vector<int>{1}));
    EXPECT_EQ(reading.result().end, "CancellationError");
    EXPECT_THROW(input.yield(2), CancellationError);

    // A task cancelled before it awaits still drains what was buffered.
    auto [buffered, bufferedInput] = IntStream::makeStream();
    bufferedInput.yield(5);
    auto gate = IntStream::makeStream();
    auto task = readAll(buffered, gate.first);
    task.cancel();  // ends the wait at the gate; the task stays cancelled
    EXPECT_EQ(task.result().elements, (std::vector<int>{5}));
    EXPECT_EQ(task.result().end, "CancellationError");
}

TEST(AsyncStream, TheStreamEndsWhenItsConsumerSideIsGone) {
    std::optional<IntStream::Continuation> input;
    bool cancelled = false;
    {
        IntStream stream([&](IntStream::Continuation continuation) { input = continuation; });
        input->onFinish([&](const IntStream::Termination& termination) {
            cancelled = termination.isCancelled();
        });
        input->yield(1);
    }
    EXPECT_TRUE(cancelled);
    EXPECT_THROW(input->yield(2), CancellationError);

    using Ticks = AsyncCancellableThrowingStream<std::monostate>;
    auto [ticks, tick] = Ticks::makeStream();
    EXPECT_EQ(tick.yield().kind, Ticks::YieldResult::Kind::enqueued);
}

namespace {
void awaitTwice() {
    auto [stream, input] = IntStream::makeStream();
    auto first = readAll(stream);
    auto second = readAll(stream);
}
}  // namespace

TEST(AsyncStreamDeathTest, ASecondWaitingConsumerStopsTheProcess) {
    EXPECT_DEATH(awaitTwice(), "attempt to await next\\(\\) on more than one task");
}

TEST(AsyncStreamThreads, ElementsFromManyProducersArriveOnceAndInEachProducersOrder) {
    constexpr int producers = 4;
    constexpr int perProducer = 2000;
    auto [stream, input] = IntStream::makeStream();
    auto reading = readAll(stream);
    std::atomic<int> running = producers;
    std::vector<std::thread> threads;
    for (int p = 0; p < producers; ++p) {
        threads.emplace_back([&, p, input = input] {
            for (int i = 0; i < perProducer; ++i)
                input.yield(p * perProducer + i);
            if (--running == 0)
                input.finish();
        });
    }
    for (auto& thread : threads)
        thread.join();
    const auto elements = reading.result().elements;
    ASSERT_EQ(elements.size(), static_cast<std::size_t>(producers * perProducer));
    std::vector<int> last(producers, -1);
    for (int element : elements) {
        const int producer = element / perProducer;
        EXPECT_GT(element, last[producer]);
        last[producer] = element;
    }
}

TEST(AsyncStreamThreads, CancellingFromAnotherThreadEndsTheWaitOnce) {
    for (int round = 0; round < 20; ++round) {
        auto [stream, input] = IntStream::makeStream(IntStream::BufferingPolicy::limited(4));
        auto reading = readAll(stream);
        std::thread producer([input = input] {
            try {
                for (int i = 0;; ++i)
                    input.yield(i);
            } catch (const CancellationError&) {
            }
        });
        std::thread canceller([&reading] { reading.cancel(); });
        canceller.join();
        producer.join();
        EXPECT_EQ(reading.result().end, "CancellationError");
    }
}
