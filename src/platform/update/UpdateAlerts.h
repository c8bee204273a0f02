#pragma once

#include <cstdint>
#include <string>

#include "platform/update/Appcast.h"
#include "platform/update/InstallLocation.h"
#include "platform/update/Transfer.h"

namespace platform::update {

// What the dialogues say, worked out here so that the widgets only draw it.

struct UpdateFoundAlert {
    std::string title;
    std::string message;
    ReleaseNotes releaseNotes;  // empty text: the release has none
    std::string installButton;  // "Install Update", or what stands in its place
    bool canSkip = true;        // a critical update can't be skipped
};

struct MessageAlert {
    std::string title;
    std::string message;
};

struct AlertFacts {
    std::string applicationName;
    std::string currentDisplayVersion;
};

// How the user gets the release: installed in place, or fetched from its
// page when this copy isn't ours to replace or the item only announces.
enum class UpdateDelivery { install, downloadPage, learnMore };

UpdateDelivery deliveryOf(const AppcastItem& item, InstallLocation::Kind location);

UpdateFoundAlert updateFoundAlert(const AlertFacts& facts, const AppcastItem& item, bool critical,
                                  UpdateDelivery delivery);
MessageAlert upToDateAlert(const AlertFacts& facts);
MessageAlert automaticChecksQuestion(const AlertFacts& facts);

// The progress window's line: "Downloading update… 1.5 MB of 6.0 MB" once
// the size is known, and the installation's, which has no measure.
std::string downloadStatus(std::uint64_t received, std::uint64_t expected);
inline constexpr const char* installingStatus = "Installing update…";
// Sizes as people read them, in powers of a thousand: "512 bytes", "1.5 MB".
std::string formattedByteCount(std::uint64_t bytes);

// The errors, each one sentence that says what went wrong.
namespace errorText {
std::string noFeedAddress(const AlertFacts& facts);
// What went wrong fetching the thing named ("the update feed", "the update").
std::string transfer(TransferFailure failure, long httpStatus, const std::string& subject);
std::string damagedFeed(const std::string& problem);
std::string noPublicKey(const AlertFacts& facts);
std::string wrongLength();
std::string badSignature();
std::string installFailed(const std::string& problem);
std::string relaunchFailed(const std::string& problem);
}  // namespace errorText

inline constexpr const char* errorTitle = "Update Error";

}  // namespace platform::update
