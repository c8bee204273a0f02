#include "platform/WorkspaceObservers.h"

#include <algorithm>

namespace platform {

Token WorkspaceObservers::add(WorkspaceNotification name, Workspace::NotificationHandler handler) {
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

void WorkspaceObservers::remove(Token observer, WorkspaceNotification name) {
    const auto it = names_.find(observer.id);
    if (it == names_.end() || it->second != name)
        return;
    names_.erase(it);
    observers_.remove(observer);
}

void WorkspaceObservers::notify(WorkspaceNotification name,
                                const RunningApplicationRef& application) const {
    observers_.call(name, application);
}

void WorkspaceObservers::post(MainLoop& loop, WorkspaceNotification name,
                              RunningApplicationRef application) {
    loop.post(lifetime_.guard(
        [this, name, application = std::move(application)] { notify(name, application); }));
}

std::size_t WorkspaceObservers::count(WorkspaceNotification name) const {
    return static_cast<std::size_t>(std::count_if(
        names_.begin(), names_.end(), [name](const auto& entry) { return entry.second == name; }));
}

Subscription WorkspaceObservers::observeFrontmost(bool initial,
                                                  const RunningApplicationRef& current,
                                                  Workspace::FrontmostHandler handler) {
    if (initial && handler)
        handler(current);
    return frontmostObservers_.subscribe(std::move(handler));
}

void WorkspaceObservers::frontmostChanged(const RunningApplicationRef& frontmost) const {
    frontmostObservers_.call(frontmost);
}

}  // namespace platform
