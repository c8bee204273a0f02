#include "platform/update/UpdateAlerts.h"

#include <array>
#include <cstdio>

namespace platform::update {

UpdateDelivery deliveryOf(const AppcastItem& item, InstallLocation::Kind location) {
    if (item.informationalUpdate)
        return UpdateDelivery::learnMore;
    return location == InstallLocation::Kind::releaseFolder ? UpdateDelivery::install
                                                            : UpdateDelivery::downloadPage;
}

namespace {

std::string howToGetIt(const AlertFacts& facts, UpdateDelivery delivery) {
    switch (delivery) {
        case UpdateDelivery::install:
            return "Would you like to install it now?";
        case UpdateDelivery::downloadPage:
            return "This copy of " + facts.applicationName +
                   " can't replace itself (it was installed by the system or by hand), so get "
                   "the new version from its download page.";
        case UpdateDelivery::learnMore:
            return "Its page tells more about it.";
    }
    return {};
}

const char* buttonFor(UpdateDelivery delivery) {
    switch (delivery) {
        case UpdateDelivery::install:
            return "Install Update";
        case UpdateDelivery::downloadPage:
            return "Open Download Page";
        case UpdateDelivery::learnMore:
            return "Learn More...";
    }
    return "";
}

}  // namespace

UpdateFoundAlert updateFoundAlert(const AlertFacts& facts, const AppcastItem& item, bool critical,
                                  UpdateDelivery delivery) {
    UpdateFoundAlert alert;
    alert.title = facts.applicationName + " " + item.displayVersion() + " is available";
    std::string message = critical ? "This is an important update. " : "";
    message +=
        "You have version " + facts.currentDisplayVersion + ". " + howToGetIt(facts, delivery);
    alert.message = std::move(message);
    if (item.releaseNotes)
        alert.releaseNotes = *item.releaseNotes;
    alert.installButton = buttonFor(delivery);
    alert.canSkip = !critical;
    return alert;
}

MessageAlert upToDateAlert(const AlertFacts& facts) {
    return {"You're up to date!", facts.applicationName + " " + facts.currentDisplayVersion +
                                      " is the newest version available."};
}

MessageAlert automaticChecksQuestion(const AlertFacts& facts) {
    return {"Check for updates automatically?",
            "Should " + facts.applicationName +
                " look for a new version once a day? You can change this in Settings."};
}

std::string formattedByteCount(std::uint64_t bytes) {
    if (bytes < 1000)
        return std::to_string(bytes) + (bytes == 1 ? " byte" : " bytes");
    static constexpr std::array<const char*, 5> units = {"kB", "MB", "GB", "TB", "PB"};
    auto value = static_cast<double>(bytes) / 1000;
    std::size_t unit = 0;
    // 999.96 kB reads as 1.0 MB, not as 1000.0 kB.
    while (value >= 999.95 && unit + 1 < units.size()) {
        value /= 1000;
        ++unit;
    }
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.1f %s", value, units[unit]);
    return text.data();
}

std::string downloadStatus(std::uint64_t received, std::uint64_t expected) {
    std::string status = "Downloading update…";
    if (expected > 0)
        status += " " + formattedByteCount(received) + " of " + formattedByteCount(expected);
    return status;
}

namespace errorText {

namespace {

std::string capitalized(std::string text) {
    if (!text.empty() && text[0] >= 'a' && text[0] <= 'z')
        text[0] = static_cast<char>(text[0] - 'a' + 'A');
    return text;
}

}  // namespace

std::string noFeedAddress(const AlertFacts& facts) {
    return facts.applicationName +
           " has no address to look for updates at, so it can't check for them.";
}

std::string transfer(TransferFailure failure, long httpStatus, const std::string& subject) {
    switch (failure) {
        case TransferFailure::none:
        case TransferFailure::cancelled:
            break;
        case TransferFailure::insecureAddress:
            return capitalized(subject) +
                   "'s address doesn't use a secure connection (HTTPS), so it wasn't used.";
        case TransferFailure::untrustedServer:
            return "The update server's identity couldn't be verified, so " + subject +
                   " wasn't fetched.";
        case TransferFailure::unreachable:
            return "The update server couldn't be reached; check the network connection.";
        case TransferFailure::connectionLost:
            return "The connection to the update server was lost while fetching " + subject + ".";
        case TransferFailure::stalled:
            return "The update server stopped responding while sending " + subject + ".";
        case TransferFailure::tooLarge:
            return capitalized(subject) + " is larger than it may be, so it was refused.";
        case TransferFailure::httpError:
            return "The update server answered with an error (HTTP " + std::to_string(httpStatus) +
                   ") for " + subject + ".";
        case TransferFailure::tooManyRedirects:
            return "The update server sent " + subject + " around too many redirects.";
        case TransferFailure::other:
            break;
    }
    return capitalized(subject) + " couldn't be fetched.";
}

std::string damagedFeed(const std::string& problem) {
    return "The update feed is damaged: " + problem + ".";
}

std::string noPublicKey(const AlertFacts& facts) {
    return "This copy of " + facts.applicationName +
           " has no key to verify updates with, so it can't install them.";
}

std::string wrongLength() {
    return "The downloaded update isn't the size the feed announced, so it wasn't installed.";
}

std::string badSignature() {
    return "The update's signature isn't valid, so it wasn't installed.";
}

std::string installFailed(const std::string& problem) {
    return "The update couldn't be installed (" + problem + "); the current version is unchanged.";
}

std::string relaunchFailed(const std::string& problem) {
    return "The new version couldn't be started (" + problem +
           "), so the current version stays in place.";
}

}  // namespace errorText

}  // namespace platform::update
