#include "support/TaskCancellation.h"

#include <optional>
#include <utility>

namespace quillbox {

bool TaskCancellation::isCancelled() const {
    return lock_.withLock([&] { return cancelled_; });
}

void TaskCancellation::cancel() {
    if (lock_.withLock([&] { return std::exchange(cancelled_, true); }))
        return;
    handlers_.call();
    handlers_.clear();  // each runs once: what they hold goes now
}

// Registered under the lock that cancel() sets the flag under, so that a
// handler is either in the list when the handlers are called or runs here.
platform::Subscription TaskCancellation::onCancel(std::function<void()> handler) {
    auto registered = lock_.withLock([&]() -> std::optional<platform::Subscription> {
        if (cancelled_)
            return std::nullopt;
        return handlers_.subscribe(std::move(handler));
    });
    if (registered)
        return std::move(*registered);
    handler();
    return {};
}

}  // namespace quillbox
