#include <gtest/gtest.h>

#include "platform/update/UpdateSelection.h"

using platform::update::Appcast;
using platform::update::AppcastItem;
using platform::update::isCriticalFor;
using platform::update::SelectionContext;
using platform::update::selectUpdate;

namespace {

AppcastItem release(std::string version, std::optional<std::string> channel = std::nullopt) {
    AppcastItem item;
    item.version = std::move(version);
    item.channel = std::move(channel);
    return item;
}

// The version offered, or "none".
std::string offered(const Appcast& appcast, const SelectionContext& context) {
    const auto item = selectUpdate(appcast, context);
    return item ? item->version : "none";
}

}  // namespace

TEST(UpdateSelectionTest, TheNewestReleaseOnAFollowedChannelIsOffered) {
    const Appcast feed{.items = {release("10"), release("12"), release("11"),
                                 release("13", "staging"), release("14", "nightly")}};
    SelectionContext context{.currentVersion = "10"};
    EXPECT_EQ(offered(feed, context), "12");
    context.allowedChannels = {"staging"};
    EXPECT_EQ(offered(feed, context), "13");
    context.allowedChannels = {"nightly"};
    EXPECT_EQ(offered(feed, context), "14");
    // A channel named by the empty word is a channel like any other.
    context.allowedChannels = {""};
    EXPECT_EQ(offered(feed, context), "12");
    context.currentVersion = "12";
    EXPECT_EQ(offered(feed, context), "none");
    context.currentVersion = "20";
    EXPECT_EQ(offered(feed, context), "none");
    EXPECT_EQ(offered(Appcast{}, context), "none");
}

TEST(UpdateSelectionTest, ASkippedVersionWaitsForTheUserOrSomethingNewer) {
    const Appcast feed{.items = {release("11"), release("12")}};
    SelectionContext context{.currentVersion = "10", .skippedVersion = "12"};
    EXPECT_EQ(offered(feed, context), "none");
    context.userInitiated = true;
    EXPECT_EQ(offered(feed, context), "12");

    context.userInitiated = false;
    const Appcast newer{.items = {release("12"), release("13")}};
    EXPECT_EQ(offered(newer, context), "13");

    // A critical update comes through the skip.
    auto critical = release("12");
    critical.criticalUpdate = true;
    EXPECT_EQ(offered(Appcast{.items = {critical}}, context), "12");
}

TEST(UpdateSelectionTest, CriticalnessCanBeBoundedByVersion) {
    auto item = release("20");
    EXPECT_FALSE(isCriticalFor(item, "10"));
    item.criticalUpdate = true;
    EXPECT_TRUE(isCriticalFor(item, "10"));
    item.criticalBelowVersion = "15";
    EXPECT_TRUE(isCriticalFor(item, "14"));
    EXPECT_FALSE(isCriticalFor(item, "15"));
    EXPECT_FALSE(isCriticalFor(item, "16"));
}

TEST(UpdateSelectionTest, AMajorUpgradeIsOfferedOnlyWhenTheUserAsks) {
    auto major = release("30");
    major.minimumAutoupdateVersion = "20";
    const Appcast feed{.items = {release("11"), major}};
    SelectionContext context{.currentVersion = "10"};
    // Automatic checks fall back to the newest release of our line.
    EXPECT_EQ(offered(feed, context), "11");
    context.userInitiated = true;
    EXPECT_EQ(offered(feed, context), "30");
    // From the minimum version on it is an ordinary update.
    context = {.currentVersion = "20"};
    EXPECT_EQ(offered(feed, context), "30");
}

TEST(UpdateSelectionTest, InformationalItemsReachOnlyTheVersionsTheyName) {
    auto notice = release("15");
    notice.informationalUpdate = true;
    const Appcast everyone{.items = {release("11"), notice}};
    EXPECT_EQ(offered(everyone, {.currentVersion = "10"}), "15");

    notice.informationalForVersions = {"8", "9"};
    notice.informationalBelowVersion = "5";
    const Appcast some{.items = {release("11"), notice}};
    EXPECT_EQ(offered(some, {.currentVersion = "9"}), "15");
    EXPECT_EQ(offered(some, {.currentVersion = "4"}), "15");
    EXPECT_EQ(offered(some, {.currentVersion = "10"}), "11");
    EXPECT_EQ(offered(some, {.currentVersion = "5"}), "11");
}
