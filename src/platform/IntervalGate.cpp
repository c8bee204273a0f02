#include "platform/IntervalGate.h"

#include <utility>

namespace platform {

IntervalGate::IntervalGate(MainLoop& loop, double interval, std::function<void()> atIntervalEnd)
    : loop_(loop), interval_(interval), atIntervalEnd_(std::move(atIntervalEnd)) {}

IntervalGate::~IntervalGate() {
    cancel();
}

bool IntervalGate::admitsNow() {
    if (waiting())
        return false;
    const double wait = lastRun_ ? *lastRun_ + interval_ - loop_.now() : 0;
    if (wait <= 0)
        return true;
    timer_ = loop_.postAfter(wait, lifetime_.guard([this] {
        timer_ = {};
        atIntervalEnd_();
    }));
    return false;
}

void IntervalGate::ran() {
    lastRun_ = loop_.now();
}

void IntervalGate::cancel() {
    loop_.cancel(std::exchange(timer_, {}));
}

}  // namespace platform
