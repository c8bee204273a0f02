#pragma once

#include <memory>
#include <optional>
#include <set>
#include <string>

#include "platform/MainLoop.h"
#include "platform/Updater.h"
#include "platform/update/Appcast.h"
#include "platform/update/MainLoopMailbox.h"
#include "platform/update/Transfer.h"
#include "platform/update/UpdateInstallation.h"
#include "platform/update/UpdaterConfiguration.h"
#include "platform/update/UserDriver.h"

namespace platform::update {

// The updater of a Linux program: it reads an update feed, offers the newest
// release on the channels the user follows, and installs it into a release
// folder. One session at a time: a check, then perhaps an installation.
// Automatic checks run from one main-loop timer set to the next due time.
class LinuxUpdater final : public Updater {
  public:
    LinuxUpdater(MainLoop& loop, UserDriver& userDriver, UpdaterConfiguration configuration);
    ~LinuxUpdater() override;

    void startUpdater(std::weak_ptr<UpdaterDelegate> delegate) override;
    void checkForUpdates() override;
    bool automaticallyChecksForUpdates() const override;
    void setAutomaticallyChecksForUpdates(bool value) override;

    // A check or an installation is under way.
    bool sessionInProgress() const { return session_ != nullptr; }
    bool automaticCheckScheduled() const { return static_cast<bool>(timer_); }

  private:
    struct Session;

    void startCheck(bool userInitiated);
    std::string effectiveFeedURL() const;
    std::set<std::string> allowedChannels() const;
    void feedArrived(TransferResult result);
    void releaseNotesArrived(TransferResult result);
    void offer();
    void answer(UpdateChoice choice);
    void install();
    void finish();
    void fail(const std::string& message);

    void askAboutAutomaticChecks();
    void recordCheck();
    void scheduleNextCheck();
    void automaticCheckDue();
    AlertFacts facts() const;

    MainLoop& loop_;
    UserDriver& userDriver_;
    UpdaterConfiguration configuration_;
    std::weak_ptr<UpdaterDelegate> delegate_;
    Token timer_;
    // Before anything that posts to it.
    MainLoopMailbox mailbox_;
    std::unique_ptr<Session> session_;
};

}  // namespace platform::update
