#pragma once

#include <memory>

#include "support/UUID.h"

namespace quillbox {

// Keeps the display awake and the screen saver off for as long as it lives.
class SleepStopperToken {
  public:
    virtual ~SleepStopperToken() = default;
    virtual const UUID& id() const = 0;
};

// Holds off display sleep while anyone asks: each caller holds a token, and
// one power assertion ("NoDisplaySleepAssertion") is held while at least one
// token lives. The assertion goes with the last token. Safe to use from any
// thread.
namespace SleepStopper {

bool isPreventingSleep();
[[nodiscard]] std::shared_ptr<SleepStopperToken> disableSleepUntilTokenRelease();

}  // namespace SleepStopper

}  // namespace quillbox
