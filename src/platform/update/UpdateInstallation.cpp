#include "platform/update/UpdateInstallation.h"

#include <algorithm>

#include "platform/update/ArchiveSignature.h"
#include "platform/update/ReleaseInstaller.h"
#include "platform/update/UpdateAlerts.h"

namespace platform::update {

namespace {

// Runs off the main loop: the signature first, so that nothing of a
// tampered archive is ever unpacked.
std::string verifyAndInstall(const std::string& archive, const UpdateInstallation::Request& request,
                             std::filesystem::path& program) {
    const auto check =
        verifyArchiveSignature(archive, request.enclosure.edSignature, request.publicEDKey);
    if (check != SignatureCheck::valid)
        return errorText::badSignature();
    auto result = installRelease(archive, request.root, request.runningFolder.filename());
    if (!result.problem.empty())
        return errorText::installFailed(result.problem);
    program = result.program;
    return {};
}

}  // namespace

UpdateInstallation::UpdateInstallation(MainLoopMailbox& mailbox, UserDriver& userDriver,
                                       Request request, Finished finished)
    : mailbox_(mailbox),
      userDriver_(userDriver),
      request_(std::move(request)),
      finished_(std::move(finished)) {
    auto limits = request_.limits;
    limits.maximumBytes = std::min<std::uint64_t>(limits.maximumBytes, request_.enclosure.length);
    userDriver_.showDownloadStarted([this] { cancel(); });
    transfer_ = std::make_unique<Transfer>(
        mailbox_, request_.enclosure.url, limits,
        [this](std::uint64_t received, std::uint64_t) {
            userDriver_.showDownloadProgress(received, request_.enclosure.length);
        },
        [this](TransferResult result) { archiveArrived(std::move(result)); });
}

UpdateInstallation::~UpdateInstallation() = default;

void UpdateInstallation::cancel() {
    // Once installing, the step runs to its end: stopping an unpacking
    // half-way would only leave more to clear up.
    if (!transfer_)
        return;
    transfer_->cancel();
    end({Outcome::Kind::cancelled, {}});
}

void UpdateInstallation::archiveArrived(TransferResult result) {
    if (result.failure == TransferFailure::tooLarge) {
        end({Outcome::Kind::failed, errorText::wrongLength()});
        return;
    }
    if (result.failure != TransferFailure::none) {
        end({Outcome::Kind::failed,
             errorText::transfer(result.failure, result.httpStatus, "the update")});
        return;
    }
    if (result.body.size() != request_.enclosure.length) {
        end({Outcome::Kind::failed, errorText::wrongLength()});
        return;
    }
    userDriver_.showInstalling();
    auto program = std::make_shared<std::filesystem::path>();
    task_ = std::make_unique<BackgroundTask>(
        mailbox_,
        [archive = std::move(result.body), request = request_, program] {
            return verifyAndInstall(archive, request, *program);
        },
        [this, program](const std::string& problem) {
            if (!problem.empty()) {
                end({Outcome::Kind::failed, problem});
                return;
            }
            installed(program->string());
        });
    transfer_.reset();
}

void UpdateInstallation::installed(const std::string& program) {
    const auto problem = request_.relaunch ? request_.relaunch(program) : std::string();
    if (problem.empty()) {
        end({Outcome::Kind::relaunching, {}});
        return;
    }
    // The running version goes on, so it stays the current one.
    switchCurrentVersion(request_.root, request_.runningFolder.filename());
    end({Outcome::Kind::failed, errorText::relaunchFailed(problem)});
}

void UpdateInstallation::end(Outcome outcome) {
    userDriver_.dismissProgress();
    if (auto finished = std::exchange(finished_, {}))
        finished(std::move(outcome));
}

}  // namespace platform::update
