// Feeds arbitrary bytes to the update feed's reader. What it accepts must
// hold what the updater relies on, and picking an update from it and
// ordering its versions must work whatever the versions say.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "platform/update/AppcastParser.h"
#include "platform/update/UpdateSelection.h"
#include "platform/update/VersionComparator.h"

using namespace platform::update;

namespace {

void check(bool condition) {
    if (!condition)
        std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto reading = parseAppcast(bytes);
    check(reading.appcast.has_value() != !reading.problem.empty());
    if (!reading.appcast)
        return 0;
    const auto& items = reading.appcast->items;
    for (const auto& item : items) {
        check(!item.version.empty());
        if (!item.informationalUpdate) {
            check(item.enclosure && !item.enclosure->url.empty() && item.enclosure->length > 0 &&
                  !item.enclosure->edSignature.empty());
        }
        if (item.enclosure)
            check(item.enclosure->os.empty() || item.enclosure->os == "linux");
    }
    for (std::size_t i = 0; i + 1 < items.size(); ++i) {
        const auto forward = compareVersions(items[i].version, items[i + 1].version);
        const auto backward = compareVersions(items[i + 1].version, items[i].version);
        check((forward == std::strong_ordering::less) ==
              (backward == std::strong_ordering::greater));
        check((forward == std::strong_ordering::equal) ==
              (backward == std::strong_ordering::equal));
    }
    for (const bool userInitiated : {false, true}) {
        const auto offered = selectUpdate(*reading.appcast, {.currentVersion = "1.0",
                                                             .allowedChannels = {"staging"},
                                                             .skippedVersion = "1.1",
                                                             .userInitiated = userInitiated});
        if (offered)
            check(isNewerVersion(offered->version, "1.0"));
    }
    return 0;
}
