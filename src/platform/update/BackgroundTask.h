#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <thread>

#include "platform/update/MainLoopMailbox.h"

namespace platform::update {

// Work that may take a while (checking a signature over a large archive,
// unpacking it) run on a thread of its own; its result, a problem's text or
// nothing, arrives on the main loop. Once abandoned, the result is dropped.
// Destroying it waits for the work to end. The mailbox must outlive it.
class BackgroundTask {
  public:
    using Work = std::function<std::string()>;
    using Completion = std::function<void(std::string problem)>;

    BackgroundTask(MainLoopMailbox& mailbox, Work work, Completion completion)
        : abandoned_(std::make_shared<std::atomic<bool>>(false)) {
        thread_ = std::thread([&mailbox, abandoned = abandoned_, work = std::move(work),
                               completion = std::move(completion)] {
            auto problem = work();
            mailbox.post([abandoned, completion, problem = std::move(problem)] {
                if (!*abandoned)
                    completion(problem);
            });
        });
    }
    ~BackgroundTask() {
        *abandoned_ = true;
        thread_.join();
    }
    BackgroundTask(const BackgroundTask&) = delete;
    BackgroundTask& operator=(const BackgroundTask&) = delete;

  private:
    std::shared_ptr<std::atomic<bool>> abandoned_;
    std::thread thread_;
};

}  // namespace platform::update
