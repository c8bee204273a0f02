#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "platform/update/Appcast.h"
#include "platform/update/BackgroundTask.h"
#include "platform/update/MainLoopMailbox.h"
#include "platform/update/Transfer.h"
#include "platform/update/UserDriver.h"

namespace platform::update {

// One release from download to relaunch: the archive is downloaded with a
// cancellable progress window, refused unless it has the announced length
// and its signature verifies, then installed into the release folder and
// started. A failure at any step leaves the running version in place.
class UpdateInstallation {
  public:
    struct Request {
        Enclosure enclosure;
        std::string publicEDKey;
        std::filesystem::path root;           // the release folder
        std::filesystem::path runningFolder;  // the running version's folder
        TransferLimits limits;
        std::function<std::string(const std::filesystem::path&)> relaunch;
    };
    struct Outcome {
        enum class Kind { relaunching, cancelled, failed };
        Kind kind;
        std::string message;  // for a failure: the sentence to show
    };
    using Finished = std::function<void(Outcome)>;

    UpdateInstallation(MainLoopMailbox& mailbox, UserDriver& userDriver, Request request,
                       Finished finished);
    ~UpdateInstallation();
    UpdateInstallation(const UpdateInstallation&) = delete;
    UpdateInstallation& operator=(const UpdateInstallation&) = delete;

  private:
    void cancel();
    void archiveArrived(TransferResult result);
    void installed(const std::string& problem);
    void end(Outcome outcome);

    MainLoopMailbox& mailbox_;
    UserDriver& userDriver_;
    Request request_;
    Finished finished_;
    std::unique_ptr<Transfer> transfer_;
    std::unique_ptr<BackgroundTask> task_;
};

}  // namespace platform::update
