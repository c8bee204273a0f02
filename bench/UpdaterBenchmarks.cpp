// What a check costs on the main loop once the feed has arrived (reading it
// and picking the update), and what checking an archive's signature costs
// off it, by size.
#include <benchmark/benchmark.h>

#include <string>

#include "platform/update/AppcastParser.h"
#include "platform/update/ArchiveSignature.h"
#include "platform/update/UpdateSelection.h"

namespace {

using namespace platform::update;

std::string feedOf(int items) {
    std::string feed =
        "<?xml version=\"1.0\"?><rss version=\"2.0\" "
        "xmlns:sparkle=\"http://www.andymatuschak.org/xml-namespaces/sparkle\"><channel>";
    for (int i = 0; i < items; ++i) {
        const auto version = std::to_string(i);
        feed +=
            "<item><title>Version 1." + version + "</title><sparkle:version>" + version +
            "</sparkle:version><sparkle:shortVersionString>1." + version +
            "</sparkle:shortVersionString>" +
            (i % 3 ? "" : "<sparkle:channel>staging</sparkle:channel>") +
            "<description><![CDATA[<h2>What's new</h2><ul><li>Faster</li><li>Smaller</li></ul>]]>"
            "</description><enclosure url=\"https://example.org/t-" +
            version +
            ".tar.gz\" length=\"4000000\" type=\"application/gzip\" "
            "sparkle:edSignature=\"AAAA\"/></item>";
    }
    return feed + "</channel></rss>";
}

void ReadFeedAndPickUpdate(benchmark::State& state) {
    const auto feed = feedOf(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        const auto reading = parseAppcast(feed);
        auto offered =
            selectUpdate(*reading.appcast, {.currentVersion = "5", .allowedChannels = {"staging"}});
        benchmark::DoNotOptimize(offered);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * feed.size()));
}
BENCHMARK(ReadFeedAndPickUpdate)->Arg(10)->Arg(100)->Arg(1000);

void VerifyArchiveSignature(benchmark::State& state) {
    const std::string archive(static_cast<std::size_t>(state.range(0)), 'x');
    // A well-formed signature of other bytes, so that the whole archive is
    // hashed before the check fails, as it is for a good one.
    const std::string signature =
        "kU/Mo+Nt175CiUnHplOL0sBh1FRFlfAbrlTaHV/q5zLNwAnoM6XUHXq7/HuNENTSEVvxMz31w33NLMAGUMVrCw==";
    const std::string key = "QB8Xel+RLlNye96PunvW7JH4RcYeIUmpHZz8TYZSLL8=";
    for (auto _ : state)
        benchmark::DoNotOptimize(verifyArchiveSignature(archive, signature, key));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * archive.size()));
}
BENCHMARK(VerifyArchiveSignature)->Arg(1 << 20)->Arg(32 << 20)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
