#pragma once

#include <string>

// Feeds written for tests: an RSS channel in the update namespace around
// the items given.
namespace testsupport {

inline std::string feedWith(const std::string& items, const std::string& prefix = "sparkle") {
    return R"(<?xml version="1.0" encoding="utf-8"?>
<rss version="2.0" xmlns:)" +
           prefix + R"(="http://www.andymatuschak.org/xml-namespaces/sparkle">
<channel><title>Tarnwick</title><link>https://example.org/tarnwick</link>
)" + items +
           "</channel></rss>\n";
}

struct ItemText {
    std::string version{};
    std::string shortVersion{};
    std::string extra{};  // more elements inside the item
    std::string url = "https://example.org/tarnwick.tar.gz";
    std::string length = "1234";
    std::string signature = "c2lnbmF0dXJl";
    std::string enclosureExtra{};  // more attributes of the enclosure
};

inline std::string itemWith(const ItemText& item) {
    std::string text = "<item><title>Version " + item.version + "</title>";
    text += "<sparkle:version>" + item.version + "</sparkle:version>";
    if (!item.shortVersion.empty())
        text +=
            "<sparkle:shortVersionString>" + item.shortVersion + "</sparkle:shortVersionString>";
    text += item.extra;
    text += "<enclosure url=\"" + item.url + "\" length=\"" + item.length +
            "\" type=\"application/gzip\" sparkle:edSignature=\"" + item.signature + "\" " +
            item.enclosureExtra + "/>";
    return text + "</item>\n";
}

}  // namespace testsupport
