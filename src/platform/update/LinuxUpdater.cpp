#include "platform/update/LinuxUpdater.h"

#include <algorithm>

#include "platform/update/AppcastParser.h"
#include "platform/update/InstallLocation.h"
#include "platform/update/UpdateSelection.h"
#include "platform/update/UpdaterDefaults.h"
#include "support/DefaultsManager.h"
#include "support/Log.h"

namespace platform::update {

namespace {

quillbox::DefaultsManager& preferences() {
    return quillbox::DefaultsManager::shared();
}

constexpr std::uint64_t maximumReleaseNotesBytes = 1024 * 1024;

ReleaseNotes::Format formatOfLink(const std::string& link) {
    if (link.ends_with(".md"))
        return ReleaseNotes::Format::markdown;
    if (link.ends_with(".txt"))
        return ReleaseNotes::Format::plainText;
    return ReleaseNotes::Format::html;
}

}  // namespace

struct LinuxUpdater::Session {
    bool userInitiated = false;
    // The user has seen something of this session, so its failures are
    // shown too.
    bool userEngaged = false;
    std::set<std::string> channels;
    std::unique_ptr<Transfer> transfer;
    Appcast appcast;
    std::optional<AppcastItem> item;
    UpdateDelivery delivery = UpdateDelivery::install;
    std::unique_ptr<UpdateInstallation> installation;
};

LinuxUpdater::LinuxUpdater(MainLoop& loop, UserDriver& userDriver,
                           UpdaterConfiguration configuration)
    : loop_(loop),
      userDriver_(userDriver),
      configuration_(std::move(configuration)),
      mailbox_(loop) {}

LinuxUpdater::~LinuxUpdater() {
    loop_.cancel(timer_);
    session_.reset();
}

// The first launch asks nothing; the second asks once whether to check
// automatically, when there is a feed to check.
void LinuxUpdater::startUpdater(std::weak_ptr<UpdaterDelegate> delegate) {
    delegate_ = std::move(delegate);
    if (!preferences().getValue(defaults::hasLaunchedBefore)) {
        preferences().setValue(std::optional<bool>(true), defaults::hasLaunchedBefore);
    } else if (!preferences().getValue(defaults::automaticallyChecks) &&
               !effectiveFeedURL().empty()) {
        loop_.post([this] { askAboutAutomaticChecks(); });
    }
    scheduleNextCheck();
}

void LinuxUpdater::askAboutAutomaticChecks() {
    userDriver_.showAutomaticChecksQuestion(automaticChecksQuestion(facts()), [this](bool yes) {
        setAutomaticallyChecksForUpdates(yes);
    });
}

void LinuxUpdater::checkForUpdates() {
    startCheck(true);
}

bool LinuxUpdater::automaticallyChecksForUpdates() const {
    return preferences().getValue(defaults::automaticallyChecks).value_or(false);
}

void LinuxUpdater::setAutomaticallyChecksForUpdates(bool value) {
    preferences().setValue(std::optional<bool>(value), defaults::automaticallyChecks);
    scheduleNextCheck();
}

std::string LinuxUpdater::effectiveFeedURL() const {
    auto stored = preferences().getValue(defaults::feedURL);
    return stored && !stored->empty() ? *stored : configuration_.feedURL;
}

std::set<std::string> LinuxUpdater::allowedChannels() const {
    auto delegate = delegate_.lock();
    return delegate ? delegate->allowedChannelsForUpdater(*this) : std::set<std::string>{};
}

AlertFacts LinuxUpdater::facts() const {
    return {configuration_.applicationName, configuration_.displayVersion};
}

void LinuxUpdater::startCheck(bool userInitiated) {
    if (session_) {
        if (userInitiated)
            userDriver_.bringToFront();
        return;
    }
    session_ = std::make_unique<Session>();
    session_->userInitiated = userInitiated;
    session_->userEngaged = userInitiated;
    const auto feed = effectiveFeedURL();
    if (feed.empty()) {
        fail(errorText::noFeedAddress(facts()));
        return;
    }
    session_->channels = allowedChannels();
    session_->transfer = std::make_unique<Transfer>(
        mailbox_, feed, configuration_.feedLimits, nullptr,
        [this](TransferResult result) { feedArrived(std::move(result)); });
}

void LinuxUpdater::feedArrived(TransferResult result) {
    recordCheck();
    if (result.failure != TransferFailure::none) {
        quillbox::Log::info("Update check failed: " + result.detail);
        fail(errorText::transfer(result.failure, result.httpStatus, "the update feed"));
        return;
    }
    auto reading = parseAppcast(result.body);
    if (!reading.appcast) {
        fail(errorText::damagedFeed(reading.problem));
        return;
    }
    session_->appcast = std::move(*reading.appcast);
    session_->item = selectUpdate(
        session_->appcast,
        {configuration_.version, session_->channels,
         preferences().getValue(defaults::skippedVersion).value_or(""), session_->userInitiated});
    if (!session_->item) {
        if (session_->userInitiated)
            userDriver_.showUpdateNotFound(upToDateAlert(facts()), [this] { finish(); });
        else
            finish();
        return;
    }
    const auto& item = *session_->item;
    if (!item.releaseNotes && !item.releaseNotesLink.empty()) {
        auto limits = configuration_.feedLimits;
        limits.maximumBytes = maximumReleaseNotesBytes;
        session_->transfer = std::make_unique<Transfer>(
            mailbox_, item.releaseNotesLink, limits, nullptr,
            [this](TransferResult notes) { releaseNotesArrived(std::move(notes)); });
        return;
    }
    session_->transfer.reset();
    offer();
}

// Notes that can't be fetched don't stand in the way of the update.
void LinuxUpdater::releaseNotesArrived(TransferResult result) {
    auto& item = *session_->item;
    if (result.failure == TransferFailure::none) {
        item.releaseNotes =
            ReleaseNotes{formatOfLink(item.releaseNotesLink), std::move(result.body)};
    } else {
        item.releaseNotes =
            ReleaseNotes{ReleaseNotes::Format::plainText, "The release notes couldn't be loaded."};
    }
    session_->transfer.reset();
    offer();
}

void LinuxUpdater::offer() {
    const auto& item = *session_->item;
    session_->userEngaged = true;
    session_->delivery = deliveryOf(item, InstallLocation::of(configuration_.executable).kind);
    const bool critical = isCriticalFor(item, configuration_.version);
    userDriver_.showUpdateFound(updateFoundAlert(facts(), item, critical, session_->delivery),
                                [this](UpdateChoice choice) { answer(choice); });
}

void LinuxUpdater::answer(UpdateChoice choice) {
    const auto& item = *session_->item;
    switch (choice) {
        case UpdateChoice::skip:
            preferences().setValue(std::optional<std::string>(item.version),
                                   defaults::skippedVersion);
            finish();
            return;
        case UpdateChoice::remindLater:
            finish();
            return;
        case UpdateChoice::install:
            break;
    }
    if (session_->delivery == UpdateDelivery::install) {
        install();
        return;
    }
    // The release's own page, else the feed's, else the archive itself.
    std::string page = item.link.empty() ? session_->appcast.link : item.link;
    if (page.empty() && item.enclosure)
        page = item.enclosure->url;
    if (!page.empty())
        userDriver_.openURL(page);
    finish();
}

void LinuxUpdater::install() {
    if (configuration_.publicEDKey.empty()) {
        fail(errorText::noPublicKey(facts()));
        return;
    }
    const auto location = InstallLocation::of(configuration_.executable);
    UpdateInstallation::Request request{
        *session_->item->enclosure, configuration_.publicEDKey,   location.root,
        location.versionFolder,     configuration_.archiveLimits, configuration_.relaunch};
    session_->installation = std::make_unique<UpdateInstallation>(
        mailbox_, userDriver_, std::move(request), [this](UpdateInstallation::Outcome outcome) {
            if (outcome.kind == UpdateInstallation::Outcome::Kind::failed)
                fail(outcome.message);
            else
                finish();
        });
}

void LinuxUpdater::fail(const std::string& message) {
    if (!session_->userEngaged) {
        quillbox::Log::info("Automatic update check: " + message);
        finish();
        return;
    }
    userDriver_.showUpdaterError(message, [this] { finish(); });
}

// Ends the session from within one of its own callbacks: what is destroyed
// here has finished its work.
void LinuxUpdater::finish() {
    session_.reset();
    scheduleNextCheck();
}

void LinuxUpdater::recordCheck() {
    preferences().setValue(std::optional<PropertyList::Date>(configuration_.clock()),
                           defaults::lastCheckTime);
}

// One timer, set to when the next check is due: a day after the last check,
// at once when none was made yet or the day has passed.
void LinuxUpdater::scheduleNextCheck() {
    loop_.cancel(timer_);
    timer_ = {};
    if (!automaticallyChecksForUpdates())
        return;
    double delay = 0;
    if (const auto last = preferences().getValue(defaults::lastCheckTime)) {
        const std::chrono::duration<double> since = configuration_.clock() - *last;
        // A last check in the future means the clock was set back.
        delay = std::clamp(configuration_.checkInterval - since.count(), 0.0,
                           configuration_.checkInterval);
    }
    timer_ = loop_.postAfter(delay, [this] {
        timer_ = {};
        automaticCheckDue();
    });
}

// A session under way schedules the next check when it ends.
void LinuxUpdater::automaticCheckDue() {
    if (!session_)
        startCheck(false);
}

}  // namespace platform::update
