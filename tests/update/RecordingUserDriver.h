#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/update/UserDriver.h"

namespace testsupport {

// The updater's dialogues as a list of what was shown, with the replies kept
// for the test to give.
class RecordingUserDriver final : public platform::update::UserDriver {
  public:
    using UpdateChoice = platform::update::UpdateChoice;

    void showUpdateFound(const platform::update::UpdateFoundAlert& alert,
                         std::function<void(UpdateChoice)> reply) override {
        shown.push_back("found " + alert.title);
        found = alert;
        foundReply = std::move(reply);
    }
    void showUpdateNotFound(const platform::update::MessageAlert& alert,
                            std::function<void()> acknowledgement) override {
        shown.push_back("not found " + alert.title + " " + alert.message);
        acknowledge = std::move(acknowledgement);
    }
    void showUpdaterError(const std::string& message,
                          std::function<void()> acknowledgement) override {
        shown.push_back("error " + message);
        acknowledge = std::move(acknowledgement);
    }
    void showAutomaticChecksQuestion(const platform::update::MessageAlert& question,
                                     std::function<void(bool)> reply) override {
        shown.push_back("question " + question.title);
        questionReply = std::move(reply);
    }
    void showDownloadStarted(std::function<void()> cancel) override {
        shown.push_back("downloading");
        cancelDownload = std::move(cancel);
    }
    void showDownloadProgress(std::uint64_t received, std::uint64_t expected) override {
        progress.emplace_back(received, expected);
    }
    void showInstalling() override { shown.push_back("installing"); }
    void dismissProgress() override { shown.push_back("progress closed"); }
    void bringToFront() override { shown.push_back("to front"); }
    void openURL(const std::string& url) override { shown.push_back("open " + url); }

    // The last thing shown, or "" when nothing was.
    std::string last() const { return shown.empty() ? "" : shown.back(); }

    // Gives the reply to the open dialogue, once.
    void choose(UpdateChoice choice) { std::exchange(foundReply, {})(choice); }
    void dismiss() { std::exchange(acknowledge, {})(); }

    std::vector<std::string> shown;
    std::optional<platform::update::UpdateFoundAlert> found;
    std::vector<std::pair<std::uint64_t, std::uint64_t>> progress;
    std::function<void(UpdateChoice)> foundReply;
    std::function<void()> acknowledge;
    std::function<void(bool)> questionReply;
    std::function<void()> cancelDownload;
};

}  // namespace testsupport
