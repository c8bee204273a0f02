#include <gtest/gtest.h>

#include "FeedText.h"
#include "platform/update/AppcastParser.h"

using platform::update::parseAppcast;
using platform::update::ReleaseNotes;
using testsupport::feedWith;
using testsupport::ItemText;
using testsupport::itemWith;

TEST(AppcastParserTest, ReadsEveryFieldOfAnItem) {
    const auto feed = feedWith(itemWith(
        {.version = "42",
         .shortVersion = "1.4.0",
         .extra = "<pubDate>Tue, 03 Mar 2026 10:00:00 +0000</pubDate>"
                  "<link>https://example.org/1.4</link>"
                  "<description sparkle:format=\"markdown\"><![CDATA[# New\n* faster]]>"
                  "</description>"
                  "<sparkle:channel>staging</sparkle:channel>"
                  "<sparkle:criticalUpdate sparkle:version=\"40\"/>"
                  "<sparkle:minimumAutoupdateVersion>30</sparkle:minimumAutoupdateVersion>",
         .length = "98765",
         .signature = "AAAA",
         .enclosureExtra = "sparkle:os=\"linux\""}));
    const auto reading = parseAppcast(feed);
    ASSERT_TRUE(reading.appcast) << reading.problem;
    EXPECT_EQ(reading.appcast->link, "https://example.org/tarnwick");
    ASSERT_EQ(reading.appcast->items.size(), 1u);
    const auto& item = reading.appcast->items[0];
    EXPECT_EQ(item.version, "42");
    EXPECT_EQ(item.displayVersion(), "1.4.0");
    EXPECT_EQ(item.pubDate, "Tue, 03 Mar 2026 10:00:00 +0000");
    EXPECT_EQ(item.link, "https://example.org/1.4");
    ASSERT_TRUE(item.releaseNotes);
    EXPECT_EQ(item.releaseNotes->format, ReleaseNotes::Format::markdown);
    EXPECT_EQ(item.releaseNotes->text, "# New\n* faster");
    EXPECT_EQ(item.channel, "staging");
    EXPECT_TRUE(item.criticalUpdate);
    EXPECT_EQ(item.criticalBelowVersion, "40");
    EXPECT_EQ(item.minimumAutoupdateVersion, "30");
    ASSERT_TRUE(item.enclosure);
    EXPECT_EQ(item.enclosure->length, 98765u);
    EXPECT_EQ(item.enclosure->edSignature, "AAAA");
    EXPECT_EQ(item.enclosure->type, "application/gzip");
}

TEST(AppcastParserTest, NamesAreMatchedByTheNamespaceNotThePrefix) {
    // Any prefix bound to the namespace will do, and the version may stand on
    // the enclosure.
    const auto feed = feedWith(
        "<item><u:channel>staging</u:channel>"
        "<description u:format=\"plain-text\">just text</description>"
        "<enclosure url=\"https://e.org/a\" length=\"5\" u:version=\"7\" "
        "u:shortVersionString=\"0.7\" u:edSignature=\"AAAA\"/></item>",
        "u");
    const auto reading = parseAppcast(feed);
    ASSERT_TRUE(reading.appcast) << reading.problem;
    const auto& item = reading.appcast->items.at(0);
    EXPECT_EQ(item.version, "7");
    EXPECT_EQ(item.displayVersion(), "0.7");
    EXPECT_EQ(item.channel, "staging");
    EXPECT_EQ(item.releaseNotes->format, ReleaseNotes::Format::plainText);

    // The usual prefix bound to another namespace means nothing.
    const auto foreign = R"(<rss xmlns:sparkle="urn:other"><channel><item>
        <sparkle:version>3</sparkle:version></item></channel></rss>)";
    EXPECT_EQ(parseAppcast(foreign).problem, "an item has no version");
}

TEST(AppcastParserTest, ItemsForOtherSystemsAreLeftOutUnread) {
    // The other system's item is damaged too; that is not ours to mind.
    const auto feed =
        feedWith(itemWith({.version = "5", .enclosureExtra = "sparkle:os=\"macos\""}) +
                 "<item><enclosure sparkle:os=\"windows\"/></item>" + itemWith({.version = "4"}) +
                 itemWith({.version = "3", .enclosureExtra = "sparkle:os=\"linux\""}));
    const auto reading = parseAppcast(feed);
    ASSERT_TRUE(reading.appcast) << reading.problem;
    ASSERT_EQ(reading.appcast->items.size(), 2u);
    EXPECT_EQ(reading.appcast->items[0].version, "4");
    EXPECT_EQ(reading.appcast->items[1].version, "3");
}

TEST(AppcastParserTest, InformationalItemsNeedNoArchive) {
    const auto feed = feedWith(
        "<item><sparkle:version>9</sparkle:version><link>https://e.org/9</link>"
        "<sparkle:informationalUpdate><sparkle:version>7</sparkle:version>"
        "<sparkle:version>8</sparkle:version><sparkle:belowVersion>5</sparkle:belowVersion>"
        "</sparkle:informationalUpdate></item>");
    const auto reading = parseAppcast(feed);
    ASSERT_TRUE(reading.appcast) << reading.problem;
    const auto& item = reading.appcast->items.at(0);
    EXPECT_TRUE(item.informationalUpdate);
    EXPECT_EQ(item.informationalForVersions, (std::vector<std::string>{"7", "8"}));
    EXPECT_EQ(item.informationalBelowVersion, "5");
    EXPECT_FALSE(item.enclosure);
}

TEST(AppcastParserTest, DamagedFeedsSayWhatIsWrongAndGiveNothing) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"", "it is not XML (No document element found)"},
        {"this is no feed", "it is not XML (No document element found)"},
        {"<rss><channel><item>", "it is not XML (Start-end tags mismatch)"},
        {"<html><body>Moved</body></html>", "it has no RSS channel"},
        {feedWith("<item><title>no version</title></item>"), "an item has no version"},
        {feedWith(itemWith({.version = "2", .url = ""})), "the archive of 2 has no address"},
        {feedWith(itemWith({.version = "2", .length = "12abc"})),
         "the archive of 2 has no valid length"},
        {feedWith(itemWith({.version = "2", .length = "-5"})),
         "the archive of 2 has no valid length"},
        {feedWith(itemWith({.version = "2", .length = "0"})),
         "the archive of 2 has no valid length"},
        {feedWith(itemWith({.version = "2", .length = "99999999999999999999999"})),
         "the archive of 2 has no valid length"},
        {feedWith(itemWith({.version = "2", .signature = ""})),
         "the archive of 2 has no signature"},
        {feedWith("<item><sparkle:version>2</sparkle:version></item>"),
         "the item 2 has no archive"},
    };
    for (const auto& [feed, problem] : cases) {
        const auto reading = parseAppcast(feed);
        EXPECT_FALSE(reading.appcast) << feed;
        EXPECT_EQ(reading.problem, problem) << feed;
    }
    // One damaged item spoils the feed, however good the others are.
    EXPECT_FALSE(parseAppcast(feedWith(itemWith({.version = "3"}) + "<item/>")).appcast);
}

TEST(AppcastParserTest, HostileFeedsAreRefusedWithoutExpandingAnything) {
    // Entities that would grow to gigabytes are never looked at: a document
    // type has no place in a feed.
    std::string laughs = "<?xml version=\"1.0\"?>\n<!DOCTYPE rss [\n<!ENTITY a \"aaaaaaaaaa\">\n";
    for (char c = 'b'; c <= 'j'; ++c) {
        laughs += std::string("<!ENTITY ") + c + " \"";
        for (int i = 0; i < 10; ++i)
            laughs += std::string("&") + static_cast<char>(c - 1) + ";";
        laughs += "\">\n";
    }
    laughs += "]>\n<rss><channel><title>&j;</title></channel></rss>";
    EXPECT_EQ(parseAppcast(laughs).problem, "it declares a document type, which a feed must not");

    const auto external = R"(<?xml version="1.0"?><!DOCTYPE rss SYSTEM "file:///etc/passwd">
        <rss><channel/></rss>)";
    EXPECT_FALSE(parseAppcast(external).appcast);

    // An undeclared entity stays text; it fetches and expands nothing.
    const auto undeclared = parseAppcast(feedWith(itemWith({.version = "&x;"})));
    ASSERT_TRUE(undeclared.appcast);
    EXPECT_EQ(undeclared.appcast->items.at(0).version, "&x;");

    // Bigger than any feed: refused before it is parsed.
    std::string huge = feedWith(itemWith({.version = "1"}));
    huge.insert(huge.find("<channel>"), std::string(platform::update::maximumFeedBytes, ' '));
    EXPECT_EQ(parseAppcast(huge).problem, "it is larger than a feed can be");

    // Deeply nested elements don't exhaust the stack.
    std::string deep = "<rss><channel><item>";
    for (int i = 0; i < 200000; ++i)
        deep += "<a>";
    EXPECT_FALSE(parseAppcast(deep).appcast);
}
