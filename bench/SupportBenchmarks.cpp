// The cost of validating an e-mail address, of hashing a megabyte
// persistently, and of measuring the length of a cubic curve.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <vector>

#include "geometry/Segment.h"
#include "support/EmailAddress.h"
#include "support/PersistentHasher.h"

namespace {

void validateAddress(benchmark::State& state) {
    const std::string address = "first.last+newsletter@mail.example-domain.org";
    for (auto _ : state)
        benchmark::DoNotOptimize(quillbox::EmailAddress::validatedAddress(address, true));
}
BENCHMARK(validateAddress);

void validateQuotedAddress(benchmark::State& state) {
    const std::string address = "\"first \\\"nick\\\" last\"@example.org";
    for (auto _ : state)
        benchmark::DoNotOptimize(quillbox::EmailAddress::validatedAddress(address, true));
}
BENCHMARK(validateQuotedAddress);

void hashOneMegabyte(benchmark::State& state) {
    const std::vector<std::uint8_t> megabyte(1 << 20, 0xA5);
    for (auto _ : state) {
        quillbox::PersistentHasher hasher;
        hasher.update(megabyte);
        benchmark::DoNotOptimize(hasher.finalize());
    }
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * (1 << 20));
}
BENCHMARK(hashOneMegabyte);

// Folding many small fields, as a record's hashPersistently does.
void hashIntegers(benchmark::State& state) {
    for (auto _ : state) {
        quillbox::PersistentHasher hasher;
        for (std::int64_t i = 0; i < 1000; ++i)
            hasher.update(i);
        benchmark::DoNotOptimize(hasher.finalize());
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * 1000);
}
BENCHMARK(hashIntegers);

// A quarter circle of the given radius: the larger, the more halvings.
void cubicLength(benchmark::State& state) {
    const double r = static_cast<double>(state.range(0));
    constexpr double kappa = 0.5522847498;
    const plumbline::Segment curve(
        plumbline::CubicCurve{platform::CGPoint{r, 0}, {r, r * kappa}, {r * kappa, r}, {0, r}});
    for (auto _ : state)
        benchmark::DoNotOptimize(curve.length());
}
BENCHMARK(cubicLength)->Arg(10)->Arg(100)->Arg(1000)->Arg(10000);

}  // namespace

BENCHMARK_MAIN();
