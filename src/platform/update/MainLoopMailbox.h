#pragma once

#include <deque>
#include <functional>
#include <mutex>

#include "platform/MainLoop.h"

namespace platform::update {

// Brings work from other threads onto the main loop: a thread posts a task,
// and the loop runs it at its next turn. An event descriptor wakes the loop
// only when something was posted, so an idle mailbox costs no wake-ups.
// Tasks still waiting when the mailbox goes never run; whoever posts must
// be stopped before it goes.
class MainLoopMailbox {
  public:
    explicit MainLoopMailbox(MainLoop& loop);
    ~MainLoopMailbox();
    MainLoopMailbox(const MainLoopMailbox&) = delete;
    MainLoopMailbox& operator=(const MainLoopMailbox&) = delete;

    // From any thread.
    void post(MainLoop::Task task);

  private:
    void deliver();

    MainLoop& loop_;
    int eventFd_ = -1;
    Token watch_;
    std::mutex mutex_;
    std::deque<MainLoop::Task> tasks_;
};

}  // namespace platform::update
