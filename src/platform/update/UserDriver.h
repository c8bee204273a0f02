#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "platform/update/UpdateAlerts.h"

namespace platform::update {

enum class UpdateChoice { install, remindLater, skip };

// The updater's dialogues. At most one is open at a time; each reply comes
// back once, on the main loop, and closes its dialogue.
class UserDriver {
  public:
    virtual ~UserDriver() = default;

    virtual void showUpdateFound(const UpdateFoundAlert& alert,
                                 std::function<void(UpdateChoice)> reply) = 0;
    virtual void showUpdateNotFound(const MessageAlert& alert,
                                    std::function<void()> acknowledgement) = 0;
    virtual void showUpdaterError(const std::string& message,
                                  std::function<void()> acknowledgement) = 0;
    // Yes or no to checking once a day.
    virtual void showAutomaticChecksQuestion(const MessageAlert& question,
                                             std::function<void(bool)> reply) = 0;

    // The progress window: a download that may be cancelled, then the
    // installation, which may not.
    virtual void showDownloadStarted(std::function<void()> cancel) = 0;
    virtual void showDownloadProgress(std::uint64_t received, std::uint64_t expected) = 0;
    virtual void showInstalling() = 0;
    // Closes the progress window.
    virtual void dismissProgress() = 0;

    // Brings the open dialogue to the front, when the user asks again.
    virtual void bringToFront() = 0;
    // A web page in the user's browser.
    virtual void openURL(const std::string& url) = 0;
};

}  // namespace platform::update
