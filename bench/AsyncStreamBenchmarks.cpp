// The cost of handing an element through the cancellable stream: to a
// consumer already waiting in next() (it is resumed on the yielding thread,
// so this is the whole yield-to-resume latency), through the buffer when the
// consumer comes later, and with two producer threads contending.
#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdint>
#include <thread>

#include "support/AsyncCancellableThrowingStream.h"
#include "support/Task.h"

namespace {

using Stream = quillbox::AsyncCancellableThrowingStream<std::int64_t>;
using quillbox::Task;

Task<std::int64_t> sum(Stream stream, std::atomic<std::int64_t>* seen = nullptr) {
    std::int64_t total = 0;
    auto elements = stream.makeAsyncIterator();
    while (auto element = co_await elements.next()) {
        total += *element;
        if (seen)
            seen->store(*element, std::memory_order_release);
    }
    co_return total;
}

void yieldToWaitingConsumer(benchmark::State& state) {
    auto [stream, input] = Stream::makeStream();
    std::atomic<std::int64_t> seen = 0;
    auto consumer = sum(stream, &seen);
    std::int64_t next = 0;
    for (auto _ : state) {
        input.yield(++next);
        if (seen.load(std::memory_order_acquire) != next)
            state.SkipWithError("the consumer didn't run before yield returned");
    }
    input.finish();
    benchmark::DoNotOptimize(consumer.result());
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(yieldToWaitingConsumer);

void yieldThroughTheBuffer(benchmark::State& state) {
    const auto batch = state.range(0);
    for (auto _ : state) {
        auto [stream, input] = Stream::makeStream();
        for (std::int64_t i = 0; i < batch; ++i)
            input.yield(i);
        input.finish();
        benchmark::DoNotOptimize(sum(stream).result());
    }
    state.SetItemsProcessed(state.iterations() * batch);
}
BENCHMARK(yieldThroughTheBuffer)->Arg(1000);

void twoProducersOneConsumer(benchmark::State& state) {
    constexpr std::int64_t perProducer = 10'000;
    for (auto _ : state) {
        auto [stream, input] = Stream::makeStream();
        auto consumer = sum(stream);
        std::thread other([input = input] {
            for (std::int64_t i = 0; i < perProducer; ++i)
                input.yield(1);
        });
        for (std::int64_t i = 0; i < perProducer; ++i)
            input.yield(1);
        other.join();
        input.finish();
        if (consumer.result() != 2 * perProducer)
            state.SkipWithError("elements were lost");
    }
    state.SetItemsProcessed(state.iterations() * 2 * perProducer);
}
BENCHMARK(twoProducersOneConsumer)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
