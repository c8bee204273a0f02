#pragma once

#include <functional>

#include "platform/Subscription.h"

namespace platform {

// The one thread of control: everything the program does runs as a task on
// this loop. Backends: a virtual clock in the simulated desktop, the Qt event
// loop on a real desktop.
class MainLoop {
  public:
    using Task = std::function<void()>;

    virtual ~MainLoop() = default;

    // Runs the task one turn later, after the work already queued.
    virtual void post(Task task) = 0;

    // Runs the task once after the given number of seconds. The token
    // cancels it; cancelling a timer that already ran does nothing.
    virtual Token postAfter(double seconds, Task task) = 0;
    virtual void cancel(Token timer) = 0;

    // Calls onReadable on the loop whenever the descriptor has data to read,
    // until unwatched.
    virtual Token watchFileDescriptor(int fd, Task onReadable) = 0;
    virtual void unwatch(Token watch) = 0;

    // Seconds on the loop's clock (monotonic; virtual in the simulation).
    virtual double now() const = 0;
};

}  // namespace platform
