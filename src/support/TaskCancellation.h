#pragma once

#include <functional>

#include "platform/HandlerList.h"
#include "platform/Subscription.h"
#include "support/MutexLock.h"

namespace quillbox {

// The cancellation of one task: a flag that is set once, and the handlers
// that the task's awaits register to hear of it.
class TaskCancellation {
  public:
    bool isCancelled() const;

    // Sets the flag and runs every registered handler once, on this thread,
    // with no lock held. Later calls do nothing.
    void cancel();

    // Runs the handler when the task is cancelled, or at once when it already
    // is. Ending the subscription removes the handler; a handler that has
    // already started still finishes.
    [[nodiscard]] platform::Subscription onCancel(std::function<void()> handler);

  private:
    mutable MutexLock lock_;
    bool cancelled_ = false;
    platform::HandlerList<> handlers_;
};

}  // namespace quillbox
