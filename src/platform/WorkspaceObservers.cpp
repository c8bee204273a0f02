#include "platform/WorkspaceObservers.h"

#include <algorithm>

namespace platform {

Token WorkspaceObservers::add(WorkspaceNotification name, Workspace::NotificationHandler handler) {
    const auto id = ++lastId_;
    observers_.emplace(id, std::make_pair(name, std::move(handler)));
    return Token{id};
}

void WorkspaceObservers::remove(Token observer, WorkspaceNotification name) {
    const auto it = observers_.find(observer.id);
    if (it != observers_.end() && it->second.first == name)
        observers_.erase(it);
}

// Tells a copy, so that an observer removed by an earlier one is skipped and
// one added meanwhile waits for the next notification.
void WorkspaceObservers::notify(WorkspaceNotification name,
                                const RunningApplicationRef& application) const {
    const auto observers = observers_;
    for (const auto& [id, entry] : observers) {
        if (entry.first == name && observers_.contains(id))
            entry.second({application});
    }
}

std::size_t WorkspaceObservers::count(WorkspaceNotification name) const {
    return static_cast<std::size_t>(
        std::count_if(observers_.begin(), observers_.end(),
                      [name](const auto& entry) { return entry.second.first == name; }));
}

}  // namespace platform
