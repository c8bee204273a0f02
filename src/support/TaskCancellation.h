#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>

#include "platform/Subscription.h"
#include "support/MutexLock.h"

namespace quillbox {

// The cancellation of one task: a flag that is set once, and the handlers
// that the task's awaits register to hear of it.
class TaskCancellation : public std::enable_shared_from_this<TaskCancellation> {
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
    std::uint64_t lastId_ = 0;
    std::map<std::uint64_t, std::function<void()>> handlers_;
};

}  // namespace quillbox
