// Feeds arbitrary bytes to the update feed's reader: as they come, inside one
// item of a feed, and as the values of well-formed items, so that random
// bytes reach the reading of items, channels, versions and archives rather
// than stopping at a missing RSS root. What the reader accepts must hold
// what the updater relies on, and picking an update from it and ordering
// its versions must work whatever the versions say.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "platform/update/AppcastParser.h"
#include "platform/update/UpdateSelection.h"
#include "platform/update/VersionComparator.h"

using namespace platform::update;

namespace {

void check(bool condition) {
    if (!condition)
        std::abort();
}

constexpr std::string_view feedHead =
    "<?xml version=\"1.0\"?><rss version=\"2.0\" "
    "xmlns:sparkle=\"http://www.andymatuschak.org/xml-namespaces/sparkle\"><channel>";
constexpr std::string_view feedTail = "</channel></rss>";

void readFeed(std::string_view bytes) {
    const auto reading = parseAppcast(bytes);
    check(reading.appcast.has_value() != !reading.problem.empty());
    if (!reading.appcast)
        return;
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
}

std::string escaped(std::string_view text) {
    std::string out;
    for (const char c : text) {
        switch (c) {
            case '<':
                out += "&lt;";
                break;
            case '&':
                out += "&amp;";
                break;
            case '"':
                out += "&quot;";
                break;
            default:
                out += c;
        }
    }
    return out;
}

std::vector<std::string_view> linesOf(std::string_view bytes) {
    std::vector<std::string_view> lines;
    while (!bytes.empty()) {
        const auto end = bytes.find('\n');
        lines.push_back(bytes.substr(0, end));
        bytes.remove_prefix(end == std::string_view::npos ? bytes.size() : end + 1);
    }
    return lines;
}

// Every seven lines make an item: a line of switches (its first byte says
// which of the optional parts the item has), then the version, the channel,
// the archive's system and length, the version a critical update is
// critical below, and the lowest version that may update automatically.
std::string itemsFrom(std::string_view bytes) {
    const auto lines = linesOf(bytes);
    std::string items;
    for (std::size_t at = 0; at + 7 <= lines.size(); at += 7) {
        const auto switches = lines[at].empty() ? 0u : static_cast<unsigned char>(lines[at][0]);
        const auto value = [&](std::size_t field) { return escaped(lines[at + field]); };
        items += "<item><sparkle:version>" + value(1) + "</sparkle:version>";
        if (switches & 1)
            items += "<sparkle:channel>" + value(2) + "</sparkle:channel>";
        if (switches & 2)
            items += "<sparkle:criticalUpdate sparkle:version=\"" + value(5) + "\"/>";
        if (switches & 4)
            items += "<sparkle:informationalUpdate><sparkle:belowVersion>" + value(5) +
                     "</sparkle:belowVersion></sparkle:informationalUpdate>";
        if (switches & 8)
            items += "<sparkle:minimumAutoupdateVersion>" + value(6) +
                     "</sparkle:minimumAutoupdateVersion>";
        if (!(switches & 16)) {
            items += "<enclosure url=\"https://example.org/a.tar.gz\" length=\"" + value(4) +
                     "\" sparkle:edSignature=\"AAAA\"";
            if (switches & 32)
                items += " sparkle:os=\"" + value(3) + "\"";
            items += "/>";
        }
        items += "</item>";
    }
    return items;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    readFeed(bytes);
    std::string asItems(feedHead);
    asItems.append(itemsFrom(bytes)).append(feedTail);
    readFeed(asItems);
    std::string inItem(feedHead);
    inItem.append("<item><sparkle:version>2</sparkle:version>")
        .append(bytes)
        .append("</item>")
        .append(feedTail);
    readFeed(inItem);
    return 0;
}
