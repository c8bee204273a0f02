#include "platform/update/MainLoopMailbox.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cstdint>

#include "support/Fatal.h"

namespace platform::update {

MainLoopMailbox::MainLoopMailbox(MainLoop& loop) : loop_(loop) {
    eventFd_ = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (eventFd_ < 0)
        quillbox::fatalError("Cannot make the updater's event descriptor");
    watch_ = loop_.watchFileDescriptor(eventFd_, [this] { deliver(); });
}

MainLoopMailbox::~MainLoopMailbox() {
    loop_.unwatch(watch_);
    ::close(eventFd_);
}

void MainLoopMailbox::post(MainLoop::Task task) {
    {
        std::lock_guard lock(mutex_);
        tasks_.push_back(std::move(task));
    }
    const std::uint64_t one = 1;
    if (::write(eventFd_, &one, sizeof one) < 0) {
        // The counter is already non-zero: the loop will look anyway.
    }
}

void MainLoopMailbox::deliver() {
    std::uint64_t count = 0;
    if (::read(eventFd_, &count, sizeof count) < 0) {
        // Nothing new; a spurious wake-up.
    }
    std::deque<MainLoop::Task> due;
    {
        std::lock_guard lock(mutex_);
        due.swap(tasks_);
    }
    for (auto& task : due)
        task();
}

}  // namespace platform::update
