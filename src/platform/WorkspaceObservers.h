#pragma once

#include <cstddef>
#include <cstdint>
#include <map>

#include "platform/HandlerList.h"
#include "platform/LifetimeGuard.h"
#include "platform/MainLoop.h"
#include "platform/Workspace.h"

namespace platform {

// The observers of a workspace: the launch and termination observers,
// registered under a notification name, and those of the frontmost
// application. Both are handler lists, told in the order they came.
class WorkspaceObservers {
  public:
    Token add(WorkspaceNotification name, Workspace::NotificationHandler handler);
    // Only an observer registered under that name goes.
    void remove(Token observer, WorkspaceNotification name);
    void notify(WorkspaceNotification name, const RunningApplicationRef& application) const;
    // Notifies one turn of the loop later, as the platform delivers
    // notifications; nothing when the observers are gone by then.
    void post(MainLoop& loop, WorkspaceNotification name, RunningApplicationRef application);
    std::size_t count(WorkspaceNotification name) const;

    // With initial set, the handler hears `current` at once.
    Subscription observeFrontmost(bool initial, const RunningApplicationRef& current,
                                  Workspace::FrontmostHandler handler);
    void frontmostChanged(const RunningApplicationRef& frontmost) const;

  private:
    HandlerList<WorkspaceNotification, const RunningApplicationRef&> observers_;
    std::map<std::uint64_t, WorkspaceNotification> names_;
    HandlerList<const RunningApplicationRef&> frontmostObservers_;
    LifetimeGuard lifetime_;
};

}  // namespace platform
