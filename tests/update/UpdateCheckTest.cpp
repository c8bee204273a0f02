// Checks against a real HTTP server on the loopback interface.
#include <gtest/gtest.h>

#include "UpdaterFixture.h"
#include "platform/update/UpdaterDefaults.h"

namespace {

using Behaviour = testsupport::LoopbackServer::Response::Behaviour;
using platform::update::UpdateChoice;
namespace defaults = platform::update::defaults;

class UpdateCheckTest : public ::testing::Test, protected testsupport::UpdaterFixture {};

}  // namespace

TEST_F(UpdateCheckTest, TheRunningVersionBeingTheNewestSaysSo) {
    publish("10", "1.0");
    publish("9", "0.9");
    start();
    EXPECT_EQ(userCheck(),
              "not found You're up to date! Tarnwick 1.0 is the newest version available.");
    EXPECT_EQ(server.requests(), (std::vector<std::string>{"/appcast.xml"}));
    driver.dismiss();
    EXPECT_FALSE(updater->sessionInProgress());
}

TEST_F(UpdateCheckTest, ChannelsAreFollowedFromTheNextCheckOn) {
    publish("11", "1.1", "<description>Faster &amp; smaller.</description>");
    publish("12", "1.2b1", "<sparkle:channel>staging</sparkle:channel>");
    start();
    EXPECT_EQ(userCheck(), "found Tarnwick 1.1 is available");
    EXPECT_EQ(driver.found->message, "You have version 1.0. Would you like to install it now?");
    EXPECT_EQ(driver.found->releaseNotes.text, "Faster & smaller.");
    EXPECT_EQ(driver.found->installButton, "Install Update");
    EXPECT_TRUE(driver.found->canSkip);
    driver.choose(UpdateChoice::remindLater);

    // The beta only for those who follow its channel, from the next check on
    // and without a restart.
    storeChannel("staging");
    EXPECT_EQ(userCheck(), "found Tarnwick 1.2b1 is available");
    driver.choose(UpdateChoice::remindLater);
    storeChannel("default");
    EXPECT_EQ(userCheck(), "found Tarnwick 1.1 is available");
    driver.choose(UpdateChoice::remindLater);
    EXPECT_TRUE(relaunched.empty());
}

TEST_F(UpdateCheckTest, TheFeedAddressComesFromThePreferencesBeforeTheBuild) {
    publish("11", "1.1");
    auto made = configuration();
    made.feedURL = server.url("/old-feed.xml");
    quillbox::DefaultsManager::shared().setValue(
        std::optional<std::string>(server.url("/appcast.xml")), defaults::feedURL);
    start(made);
    EXPECT_EQ(userCheck(), "found Tarnwick 1.1 is available");
    EXPECT_EQ(server.requests(), (std::vector<std::string>{"/appcast.xml"}));
}

TEST_F(UpdateCheckTest, WithoutAFeedAddressTheCheckSaysSoAndDoesNothingElse) {
    auto made = configuration();
    made.feedURL.clear();
    start(made);
    EXPECT_EQ(userCheck(),
              "error Tarnwick has no address to look for updates at, so it can't check for them.");
    driver.dismiss();
    EXPECT_TRUE(server.requests().empty());
    EXPECT_FALSE(quillbox::DefaultsManager::shared().getValue(defaults::lastCheckTime));
}

TEST_F(UpdateCheckTest, FailedChecksSayInOneSentenceWhatWentWrong) {
    auto made = configuration();
    made.feedLimits.maximumBytes = 64 * 1024;
    start(made);
    const std::vector<std::pair<testsupport::LoopbackServer::Response, std::string>> cases = {
        {{.status = 404, .body = "gone"},
         "The update server answered with an error (HTTP 404) for the update feed."},
        {{.body = "<html>a login page</html>"},
         "The update feed is damaged: it has no RSS channel."},
        {{.body = std::string(3000, 'x'), .behaviour = Behaviour::dropMidway},
         "The connection to the update server was lost while fetching the update feed."},
        {{.body = "x", .behaviour = Behaviour::stall},
         "The update server stopped responding while sending the update feed."},
        {{.behaviour = Behaviour::silent},
         "The update server stopped responding while sending the update feed."},
        {{.body = std::string(100 * 1024, ' ')},
         "The update feed is larger than it may be, so it was refused."},
    };
    for (const auto& [response, message] : cases) {
        server.serve("/appcast.xml", response);
        EXPECT_EQ(userCheck(), "error " + message);
        driver.dismiss();
    }
    EXPECT_TRUE(driver.progress.empty());
    EXPECT_EQ(testsupport::treeOf(root()),
              (std::vector<std::string>{"current -> tarnwick-1.0", "tarnwick-1.0",
                                        "tarnwick-1.0/bin", "tarnwick-1.0/bin/tarnwick"}));
}

TEST_F(UpdateCheckTest, NoServerAndPlainRemoteAddressesAreRefused) {
    auto made = configuration();
    made.feedURL = "http://127.0.0.1:1/appcast.xml";
    start(made);
    EXPECT_EQ(userCheck(),
              "error The update server couldn't be reached; check the network connection.");
    driver.dismiss();
    // Plain HTTP is for this machine only: a feed elsewhere needs HTTPS.
    quillbox::DefaultsManager::shared().setValue(
        std::optional<std::string>("http://example.org/appcast.xml"), defaults::feedURL);
    EXPECT_EQ(userCheck(),
              "error The update feed's address doesn't use a secure connection (HTTPS), so it "
              "wasn't used.");
}

TEST_F(UpdateCheckTest, RedirectsAreFollowedAFewTimesOnly) {
    publish("11", "1.1");
    server.serve("/moved.xml", {.status = 302, .location = server.url("/appcast.xml")});
    for (int i = 0; i < 8; ++i) {
        server.serve("/loop" + std::to_string(i),
                     {.status = 302, .location = server.url("/loop" + std::to_string(i + 1))});
    }
    auto made = configuration();
    made.feedURL = server.url("/moved.xml");
    start(made);
    EXPECT_EQ(userCheck(), "found Tarnwick 1.1 is available");
    driver.choose(UpdateChoice::remindLater);
    quillbox::DefaultsManager::shared().setValue(std::optional<std::string>(server.url("/loop0")),
                                                 defaults::feedURL);
    EXPECT_EQ(userCheck(),
              "error The update server sent the update feed around too many redirects.");
}

TEST_F(UpdateCheckTest, ReleaseNotesAreFetchedFromTheirLink) {
    server.serve("/notes/1.1.md", "# What's new\n\n* Everything");
    publish(
        "11", "1.1",
        "<sparkle:releaseNotesLink>" + server.url("/notes/1.1.md") + "</sparkle:releaseNotesLink>");
    start();
    EXPECT_EQ(userCheck(), "found Tarnwick 1.1 is available");
    EXPECT_EQ(driver.found->releaseNotes.text, "# What's new\n\n* Everything");
    EXPECT_EQ(driver.found->releaseNotes.format, platform::update::ReleaseNotes::Format::markdown);
    driver.choose(UpdateChoice::remindLater);

    // Notes that can't be had don't stand in the update's way.
    server.serve("/notes/1.1.md", {.status = 404});
    EXPECT_EQ(userCheck(), "found Tarnwick 1.1 is available");
    EXPECT_EQ(driver.found->releaseNotes.text, "The release notes couldn't be loaded.");
}

TEST_F(UpdateCheckTest, ASkippedVersionIsOfferedAgainOnlyWhenTheUserAsks) {
    publish("11", "1.1");
    start();
    EXPECT_EQ(shownAfter([&] { updater->setAutomaticallyChecksForUpdates(true); }),
              "found Tarnwick 1.1 is available");
    driver.choose(UpdateChoice::skip);
    EXPECT_EQ(quillbox::DefaultsManager::shared().getValue(defaults::skippedVersion), "11");

    // The next automatic check is a day later and finds nothing to show.
    loop.advance(24 * 60 * 60);
    EXPECT_TRUE(loop.runUntil([&] { return !updater->sessionInProgress(); }));
    EXPECT_EQ(server.requests().size(), 2u);
    EXPECT_EQ(driver.last(), "found Tarnwick 1.1 is available");
    EXPECT_EQ(driver.shown.size(), 1u);

    EXPECT_EQ(userCheck(), "found Tarnwick 1.1 is available");
}

TEST_F(UpdateCheckTest, ACriticalUpdateCantBeSkipped) {
    publish("11", "1.1", "<sparkle:criticalUpdate/>");
    start();
    EXPECT_EQ(userCheck(), "found Tarnwick 1.1 is available");
    EXPECT_FALSE(driver.found->canSkip);
    EXPECT_EQ(driver.found->message,
              "This is an important update. You have version 1.0. Would you like to install it "
              "now?");
}

TEST_F(UpdateCheckTest, AnInformationalItemOpensItsPage) {
    items =
        "<item><sparkle:version>11</sparkle:version><link>https://example.org/news</link>"
        "<sparkle:informationalUpdate/></item>";
    server.serve("/appcast.xml", testsupport::feedWith(items));
    start();
    EXPECT_EQ(userCheck(), "found Tarnwick 11 is available");
    EXPECT_EQ(driver.found->installButton, "Learn More...");
    driver.choose(UpdateChoice::install);
    EXPECT_EQ(driver.last(), "open https://example.org/news");
    EXPECT_FALSE(updater->sessionInProgress());
}

TEST_F(UpdateCheckTest, AUserCheckDuringASessionRaisesItsDialogue) {
    publish("11", "1.1");
    start();
    EXPECT_EQ(userCheck(), "found Tarnwick 1.1 is available");
    updater->checkForUpdates();
    EXPECT_EQ(driver.last(), "to front");
    EXPECT_EQ(server.requests().size(), 1u);
}

TEST_F(UpdateCheckTest, TheSecondLaunchAsksOnceAndThenChecksDailyFromOneTimer) {
    publish("10", "1.0");
    const auto relaunch = [&] {
        updater.reset();
        start();
        loop.runUntilIdle();
    };
    relaunch();
    // The first launch asks nothing and checks nothing.
    EXPECT_TRUE(driver.shown.empty());
    EXPECT_EQ(loop.pendingTimerCount(), 0u);

    relaunch();
    EXPECT_EQ(driver.shown,
              (std::vector<std::string>{"question Check for updates automatically?"}));
    driver.questionReply(true);
    EXPECT_TRUE(updater->automaticallyChecksForUpdates());
    // Never checked before: at once. Finding nothing new shows nothing.
    ASSERT_TRUE(loop.runUntil(
        [&] { return server.requests().size() == 1 && !updater->sessionInProgress(); }));
    EXPECT_EQ(driver.shown.size(), 1u);
    EXPECT_EQ(loop.pendingTimerCount(), 1u);

    // The next one is due a day after the last, and not a moment before.
    loop.advance(24 * 60 * 60 - 1);
    EXPECT_EQ(server.requests().size(), 1u);
    loop.advance(1);
    ASSERT_TRUE(loop.runUntil(
        [&] { return server.requests().size() == 2 && !updater->sessionInProgress(); }));

    // Later launches don't ask again, and wait for the rest of the day.
    loop.advance(60 * 60);
    relaunch();
    EXPECT_EQ(driver.shown.size(), 1u);
    loop.advance(23 * 60 * 60 - 1);
    EXPECT_EQ(server.requests().size(), 2u);

    // A failing automatic check bothers no one.
    server.serve("/appcast.xml", {.status = 500});
    loop.advance(1);
    ASSERT_TRUE(loop.runUntil(
        [&] { return server.requests().size() == 3 && !updater->sessionInProgress(); }));
    EXPECT_EQ(driver.shown.size(), 1u);

    // Switched off, nothing waits on the loop.
    updater->setAutomaticallyChecksForUpdates(false);
    EXPECT_EQ(loop.pendingTimerCount(), 0u);
    EXPECT_FALSE(
        quillbox::DefaultsManager::shared().getValue(defaults::automaticallyChecks).value_or(true));
}

TEST_F(UpdateCheckTest, NoQuestionIsAskedWithoutAFeedToCheck) {
    auto made = configuration();
    made.feedURL.clear();
    start(made);
    updater.reset();
    start(made);
    loop.runUntilIdle();
    EXPECT_TRUE(driver.shown.empty());
}
