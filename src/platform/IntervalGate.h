#pragma once

#include <functional>
#include <optional>

#include "platform/LifetimeGuard.h"
#include "platform/MainLoop.h"

namespace platform {

// Lets work run at most once per interval of the main loop's clock: the
// first request after a quiet spell may run it at once; the requests that
// follow within the interval are gathered into one run at its end.
class IntervalGate {
  public:
    IntervalGate(MainLoop& loop, double interval, std::function<void()> atIntervalEnd);
    ~IntervalGate();
    IntervalGate(const IntervalGate&) = delete;
    IntervalGate& operator=(const IntervalGate&) = delete;

    // True when the work may run now: the caller runs it and says `ran`.
    // Otherwise the run at the interval's end is arranged, once.
    bool admitsNow();
    // The work ran now, by whatever path: the interval starts again.
    void ran();
    // A run at the interval's end is waiting.
    bool waiting() const { return static_cast<bool>(timer_); }
    void cancel();

  private:
    MainLoop& loop_;
    double interval_;
    std::function<void()> atIntervalEnd_;
    std::optional<double> lastRun_;
    Token timer_;
    LifetimeGuard lifetime_;
};

}  // namespace platform
