#include "support/SleepStopper.h"

#include <algorithm>
#include <mutex>
#include <optional>
#include <vector>

#include "platform/Platform.h"

namespace quillbox {

namespace {

constexpr const char* assertionName = "NoDisplaySleepAssertion";

// The process-wide list of tokens and the one assertion. The assertion is
// released through the power management that made it, even if another has
// been installed since.
class SleepStopperState {
  public:
    static SleepStopperState& shared() {
        // Never destroyed: a token may outlive static destruction.
        static auto* state = new SleepStopperState;
        return *state;
    }

    std::shared_ptr<SleepStopperToken> makeToken();
    void tokenReleased() {
        std::lock_guard lock(mutex_);
        tokensChanged();
    }
    bool isPreventingSleep() {
        std::lock_guard lock(mutex_);
        return assertion_.has_value();
    }

  private:
    // Called with the lock held, after every change of the list.
    void tokensChanged() {
        std::erase_if(tokens_, [](const auto& token) { return token.expired(); });
        if (!tokens_.empty() && !assertion_) {
            holder_ = &platform::powerManagement();
            assertion_ = holder_->assertionCreateWithName(assertionName);
        } else if (tokens_.empty() && assertion_) {
            holder_->assertionRelease(*assertion_);
            assertion_.reset();
        }
    }

    std::mutex mutex_;
    std::vector<std::weak_ptr<SleepStopperToken>> tokens_;
    std::optional<platform::PowerManagement::AssertionID> assertion_;
    platform::PowerManagement* holder_ = nullptr;
};

class Token final : public SleepStopperToken {
  public:
    Token() : id_(UUID::make()) {}
    ~Token() override { SleepStopperState::shared().tokenReleased(); }
    const UUID& id() const override { return id_; }

  private:
    UUID id_;
};

std::shared_ptr<SleepStopperToken> SleepStopperState::makeToken() {
    auto token = std::make_shared<Token>();
    std::lock_guard lock(mutex_);
    tokens_.push_back(token);
    tokensChanged();
    return token;
}

}  // namespace

bool SleepStopper::isPreventingSleep() {
    return SleepStopperState::shared().isPreventingSleep();
}

std::shared_ptr<SleepStopperToken> SleepStopper::disableSleepUntilTokenRelease() {
    return SleepStopperState::shared().makeToken();
}

}  // namespace quillbox
