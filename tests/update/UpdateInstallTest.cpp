// Installing a release into a release folder, from a loopback server.
#include <gtest/gtest.h>

#include "UpdaterFixture.h"
#include "platform/update/InstallLocation.h"
#include "platform/update/ReleaseInstaller.h"

namespace {

namespace fs = std::filesystem;
using Behaviour = testsupport::LoopbackServer::Response::Behaviour;
using platform::update::InstallLocation;
using platform::update::UpdateChoice;

const std::vector<std::string> untouched = {"current -> tarnwick-1.0", "tarnwick-1.0",
                                            "tarnwick-1.0/bin", "tarnwick-1.0/bin/tarnwick"};

class UpdateInstallTest : public ::testing::Test, protected testsupport::UpdaterFixture {
  protected:
    // Checks, accepts the update and waits for how it ends.
    std::string installOffered() {
        EXPECT_EQ(userCheck(), "found Tarnwick 1.1 is available");
        driver.choose(UpdateChoice::install);
        loop.runUntil([&] { return !updater->sessionInProgress() || driver.acknowledge; });
        return driver.last();
    }
};

}  // namespace

TEST_F(UpdateInstallTest, AnAcceptedUpdateIsUnpackedBesideSwitchedToAndStarted) {
    publish("11", "1.1");
    // An earlier version that the running one replaced, and something of the
    // user's own.
    testsupport::makeReleaseFolder(root(), "0.9");
    platform::update::switchCurrentVersion(root(), "tarnwick-1.0");
    fs::create_directories(root() / "notes");
    start();
    EXPECT_EQ(installOffered(), "progress closed");
    EXPECT_EQ(driver.shown,
              (std::vector<std::string>{"found Tarnwick 1.1 is available", "downloading",
                                        "installing", "progress closed"}));
    ASSERT_EQ(relaunched, (std::vector<fs::path>{root() / "current" / "bin" / "tarnwick"}));
    // The started program is the new version; the running one stays beside
    // it until it has ended, older ones go, and nothing of the unpacking is
    // left.
    EXPECT_EQ(testsupport::outputOf("'" + relaunched[0].string() + "' --version"),
              "Tarnwick 1.1\n");
    EXPECT_EQ(
        testsupport::treeOf(root()),
        (std::vector<std::string>{"current -> tarnwick-1.1", "notes", "tarnwick-1.0",
                                  "tarnwick-1.0/bin", "tarnwick-1.0/bin/tarnwick", "tarnwick-1.1",
                                  "tarnwick-1.1/bin", "tarnwick-1.1/bin/tarnwick"}));
}

TEST_F(UpdateInstallTest, ATamperedArchiveIsRefusedBeforeAnythingIsUnpacked) {
    // Same length, one byte changed.
    auto archive = publish("11", "1.1");
    archive[archive.size() / 2] ^= 0x20;
    server.serve("/tarnwick-1.1.tar.gz", archive);
    start();
    EXPECT_EQ(installOffered(),
              "error The update's signature isn't valid, so it wasn't installed.");
    EXPECT_TRUE(relaunched.empty());
    EXPECT_EQ(testsupport::treeOf(root()), untouched);
}

TEST_F(UpdateInstallTest, AnArchiveOfAnotherLengthOrCutShortIsRefused) {
    const auto archive = publish("11", "1.1");
    start();
    const std::vector<std::pair<testsupport::LoopbackServer::Response, std::string>> cases = {
        {{.body = archive + "extra"},
         "The downloaded update isn't the size the feed announced, so it wasn't installed."},
        {{.body = archive.substr(0, archive.size() - 5)},
         "The downloaded update isn't the size the feed announced, so it wasn't installed."},
        {{.body = archive, .behaviour = Behaviour::dropMidway},
         "The connection to the update server was lost while fetching the update."},
        {{.body = archive, .behaviour = Behaviour::stall},
         "The update server stopped responding while sending the update."},
    };
    for (const auto& [response, message] : cases) {
        server.serve("/tarnwick-1.1.tar.gz", response);
        EXPECT_EQ(installOffered(), "error " + message);
        driver.dismiss();
    }
    EXPECT_TRUE(relaunched.empty());
    EXPECT_EQ(testsupport::treeOf(root()), untouched);
}

TEST_F(UpdateInstallTest, ACancelledDownloadLeavesEverythingAsItWas) {
    publish("11", "1.1");
    server.serve("/tarnwick-1.1.tar.gz",
                 {.body = testsupport::releaseArchive("1.1"), .behaviour = Behaviour::stall});
    auto made = configuration();
    made.archiveLimits.stallSeconds = 30;
    start(made);
    EXPECT_EQ(userCheck(), "found Tarnwick 1.1 is available");
    driver.choose(UpdateChoice::install);
    EXPECT_EQ(driver.last(), "downloading");
    driver.cancelDownload();
    EXPECT_EQ(driver.last(), "progress closed");
    EXPECT_FALSE(updater->sessionInProgress());
    EXPECT_EQ(testsupport::treeOf(root()), untouched);
}

TEST_F(UpdateInstallTest, ANewVersionThatCantBeStartedIsSwitchedBack) {
    publish("11", "1.1");
    relaunchProblem = "no restart helper";
    start();
    EXPECT_EQ(installOffered(),
              "error The new version couldn't be started (no restart helper), so the current "
              "version stays in place.");
    EXPECT_EQ(fs::read_symlink(root() / "current"), "tarnwick-1.0");
}

TEST_F(UpdateInstallTest, AnArchiveThatIsNoReleaseChangesNothing) {
    // Signed and of the right length, but laid out as no release.
    const testsupport::TemporaryFolder staging;
    fs::create_directories(staging.path() / "loose");
    testsupport::outputOf("tar -czf '" + (staging.path() / "a.tar.gz").string() + "' -C '" +
                          staging.path().string() + "' loose");
    const auto archive =
        testsupport::outputOf("cat '" + (staging.path() / "a.tar.gz").string() + "'");
    server.serve("/bad.tar.gz", archive);
    items = testsupport::itemWith({.version = "11",
                                   .shortVersion = "1.1",
                                   .url = server.url("/bad.tar.gz"),
                                   .length = std::to_string(archive.size()),
                                   .signature = keys.sign(archive)});
    server.serve("/appcast.xml", testsupport::feedWith(items));
    start();
    EXPECT_EQ(installOffered(),
              "error The update couldn't be installed (the archive's release folder has no link "
              "to its version); the current version is unchanged.");
    EXPECT_EQ(testsupport::treeOf(root()), untouched);

    // The same goes for bytes that are no archive at all.
    EXPECT_EQ(platform::update::installRelease("no archive", root(), "tarnwick-1.0").problem,
              "the archive couldn't be unpacked");
    EXPECT_EQ(testsupport::treeOf(root()), untouched);
}

TEST_F(UpdateInstallTest, ACopyThatIsNotOursToReplaceOffersTheDownloadPage) {
    publish("11", "1.1", "<link>https://example.org/releases/1.1</link>");
    auto made = configuration();
    made.executable = "/usr/bin/tar";
    start(made);
    EXPECT_EQ(userCheck(), "found Tarnwick 1.1 is available");
    EXPECT_EQ(driver.found->installButton, "Open Download Page");
    driver.choose(UpdateChoice::install);
    EXPECT_EQ(driver.last(), "open https://example.org/releases/1.1");
    EXPECT_EQ(server.requests(), (std::vector<std::string>{"/appcast.xml"}));
}

TEST_F(UpdateInstallTest, AProgramWithoutAKeyInstallsNothing) {
    publish("11", "1.1");
    auto made = configuration();
    made.publicEDKey.clear();
    start(made);
    EXPECT_EQ(installOffered(),
              "error This copy of Tarnwick has no key to verify updates with, so it can't "
              "install them.");
    EXPECT_EQ(server.requests(), (std::vector<std::string>{"/appcast.xml"}));
}

TEST(InstallLocationTest, OnlyAWritableReleaseFolderIsUpdatedInPlace) {
    const testsupport::TemporaryFolder folder;
    const auto root = folder.path() / "tarnwick";
    testsupport::makeReleaseFolder(root, "1.0");
    const auto release = InstallLocation::of(root / "current" / "bin" / "tarnwick");
    EXPECT_EQ(release.kind, InstallLocation::Kind::releaseFolder);
    EXPECT_EQ(release.root, fs::canonical(root));
    EXPECT_EQ(release.versionFolder, fs::canonical(root / "tarnwick-1.0"));

    // A version folder the link doesn't point at is not the installed one.
    testsupport::makeReleaseFolder(root, "2.0");
    EXPECT_EQ(InstallLocation::of(root / "tarnwick-1.0" / "bin" / "tarnwick").kind,
              InstallLocation::Kind::elsewhere);
    // The distribution's files, and anything missing.
    EXPECT_EQ(InstallLocation::of("/usr/bin/tar").kind, InstallLocation::Kind::packageManaged);
    EXPECT_EQ(InstallLocation::of(root / "nothing").kind, InstallLocation::Kind::elsewhere);
}
