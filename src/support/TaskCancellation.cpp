#include "support/TaskCancellation.h"

#include <utility>
#include <vector>

namespace quillbox {

bool TaskCancellation::isCancelled() const {
    return lock_.withLock([&] { return cancelled_; });
}

void TaskCancellation::cancel() {
    auto handlers = lock_.withLock([&] {
        cancelled_ = true;
        return std::exchange(handlers_, {});
    });
    for (auto& [id, handler] : handlers)
        handler();
}

platform::Subscription TaskCancellation::onCancel(std::function<void()> handler) {
    const auto id = lock_.withLock([&]() -> std::uint64_t {
        if (cancelled_)
            return 0;
        handlers_.emplace(++lastId_, std::move(handler));
        return lastId_;
    });
    if (id == 0) {
        handler();
        return {};
    }
    return platform::Subscription([weak = weak_from_this(), id] {
        if (auto self = weak.lock())
            self->lock_.withLock([&] { self->handlers_.erase(id); });
    });
}

}  // namespace quillbox
