#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "FeedText.h"
#include "LoopbackServer.h"
#include "RecordingUserDriver.h"
#include "ReleaseFolder.h"
#include "platform/update/LinuxUpdater.h"
#include "services/UpdaterDelegate.h"
#include "settings/SettingsKeys.h"
#include "support/DefaultsManager.h"
#include "support/InstalledPreferences.h"

namespace testsupport {

// The updater of a program at version 1.0 (build 10) installed in a release
// folder, reading its feed from a loopback server, with a key pair of the
// test's own. The main loop is simulated: transfers run on real threads,
// and their results arrive when the test runs the loop.
class UpdaterFixture : protected InstalledPreferences {
  protected:
    UpdaterFixture() { makeReleaseFolder(root(), "1.0"); }

    std::filesystem::path root() const { return folder.path() / "tarnwick"; }

    platform::update::UpdaterConfiguration configuration() {
        platform::update::UpdaterConfiguration made;
        made.version = "10";
        made.displayVersion = "1.0";
        made.feedURL = server.url("/appcast.xml");
        made.publicEDKey = keys.publicKey;
        made.executable = root() / "current" / "bin" / "tarnwick";
        // Stalls are noticed after a second rather than half a minute.
        made.feedLimits.stallSeconds = 1;
        made.archiveLimits.stallSeconds = 1;
        made.relaunch = [this](const std::filesystem::path& program) {
            relaunched.push_back(program);
            return relaunchProblem;
        };
        made.clock = [this] {
            return std::chrono::system_clock::time_point() +
                   std::chrono::duration_cast<std::chrono::system_clock::duration>(
                       std::chrono::duration<double>(1e9 + loop.now()));
        };
        return made;
    }

    void start(platform::update::UpdaterConfiguration made) {
        updater = std::make_unique<platform::update::LinuxUpdater>(loop, driver, std::move(made));
        updater->startUpdater(delegate);
    }
    void start() { start(configuration()); }

    // Serves the release's archive and adds its item to the feed, signed
    // with the test's key. The archive's bytes.
    std::string publish(const std::string& build, const std::string& version,
                        std::string extra = {}, std::string enclosureExtra = {}) {
        const auto archive = releaseArchive(version);
        const auto path = "/tarnwick-" + version + ".tar.gz";
        server.serve(path, archive);
        items += itemWith({.version = build,
                           .shortVersion = version,
                           .extra = std::move(extra),
                           .url = server.url(path),
                           .length = std::to_string(archive.size()),
                           .signature = keys.sign(archive),
                           .enclosureExtra = std::move(enclosureExtra)});
        server.serve("/appcast.xml", feedWith(items));
        return archive;
    }

    void storeChannel(const std::string& channel) {
        quillbox::DefaultsManager::shared().setValue(std::optional<std::string>(channel),
                                                     tarnwick::releaseChannel);
    }

    // Does the action, then runs the loop until something new is shown;
    // that last thing.
    std::string shownAfter(const std::function<void()>& action) {
        const auto before = driver.shown.size();
        action();
        loop.runUntil([&] { return driver.shown.size() > before; }, 10);
        return driver.last();
    }
    // A check the user asked for, and what it showed.
    std::string userCheck() {
        return shownAfter([&] { updater->checkForUpdates(); });
    }

    TemporaryFolder folder;
    LoopbackServer server;
    TestKeyPair keys;
    RecordingUserDriver driver;
    std::shared_ptr<tarnwick::UpdaterDelegate> delegate =
        std::make_shared<tarnwick::UpdaterDelegate>();
    std::string items;
    std::vector<std::filesystem::path> relaunched;
    std::string relaunchProblem;
    std::unique_ptr<platform::update::LinuxUpdater> updater;
};

}  // namespace testsupport
