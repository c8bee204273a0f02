#include "platform/ObservedWorkspace.h"

#include <algorithm>

namespace platform {

Token ObservedWorkspace::addObserverForName(WorkspaceNotification name,
                                            NotificationHandler handler) {
    if (!handler)
        return Token{};
    const Token token = observers_.add(
        [name, handler = std::move(handler)](WorkspaceNotification notified,
                                             const RunningApplicationRef& application) {
            if (notified == name)
                handler({application});
        });
    names_.emplace(token.id, name);
    return token;
}

void ObservedWorkspace::removeObserver(Token observer, WorkspaceNotification name) {
    const auto it = names_.find(observer.id);
    if (it == names_.end() || it->second != name)
        return;
    names_.erase(it);
    observers_.remove(observer);
}

Subscription ObservedWorkspace::observeFrontmostApplication(bool initial,
                                                            FrontmostHandler handler) {
    if (initial && handler)
        handler(frontmost_);
    return frontmostObservers_.subscribe(std::move(handler));
}

std::size_t ObservedWorkspace::observerCount(WorkspaceNotification name) const {
    return static_cast<std::size_t>(std::count_if(
        names_.begin(), names_.end(), [name](const auto& entry) { return entry.second == name; }));
}

void ObservedWorkspace::setFrontmost(RunningApplicationRef application) {
    frontmost_ = std::move(application);
    frontmostObservers_.call(frontmost_);
}

void ObservedWorkspace::post(WorkspaceNotification name, RunningApplicationRef application) {
    loop_.post(lifetime_.guard([this, name, application = std::move(application)] {
        observers_.call(name, application);
    }));
}

}  // namespace platform
