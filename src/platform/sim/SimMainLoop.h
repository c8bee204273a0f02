#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <utility>

#include "platform/MainLoop.h"

namespace platform::sim {

// A main loop on a virtual clock. Nothing runs until the test says so:
// runUntilIdle() drains what is due now, advance() moves the clock and runs
// timers as they come due. Watched file descriptors are real and are polled
// without waiting, so that real files and pipes work in tests.
class SimMainLoop final : public MainLoop {
  public:
    void post(Task task) override;
    Token postAfter(double seconds, Task task) override;
    void cancel(Token timer) override;
    Token watchFileDescriptor(int fd, Task onReadable) override;
    void unwatch(Token watch) override;
    double now() const override { return now_; }

    // Runs the tasks posted before this call, and no others: one turn.
    std::size_t runOneTurn();
    // Runs posted tasks, due timers and ready descriptors until none is left.
    std::size_t runUntilIdle();
    // Moves the clock forward by the given seconds, running everything that
    // comes due on the way, in order.
    void advance(double seconds);
    // Runs the loop (polling descriptors, waiting up to the real timeout)
    // until the predicate holds, moving the clock by the real time waited.
    // False when the time ran out first.
    bool runUntil(const std::function<bool()>& predicate, double realSeconds = 5.0);

    std::size_t pendingTaskCount() const { return tasks_.size(); }
    std::size_t pendingTimerCount() const { return timers_.size(); }

  private:
    struct TimerKey {
        double due;
        std::uint64_t sequence;
        friend bool operator<(const TimerKey& a, const TimerKey& b) {
            return a.due != b.due ? a.due < b.due : a.sequence < b.sequence;
        }
    };
    struct Timer {
        std::uint64_t id;
        Task task;
    };

    bool runDueTimer();
    bool pollDescriptors(int timeoutMs);
    std::uint64_t nextId() { return ++lastId_; }

    double now_ = 0;
    std::uint64_t lastId_ = 0;
    std::deque<Task> tasks_;
    std::map<TimerKey, Timer> timers_;
    std::map<std::uint64_t, std::pair<int, Task>> watches_;
};

}  // namespace platform::sim
