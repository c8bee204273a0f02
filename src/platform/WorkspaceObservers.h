#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <utility>

#include "platform/Workspace.h"

namespace platform {

// The launch and termination observers of a workspace: registered under a
// notification name, told in the order they came, and free to come and go
// while they are being told.
class WorkspaceObservers {
  public:
    Token add(WorkspaceNotification name, Workspace::NotificationHandler handler);
    // Only an observer registered under that name goes.
    void remove(Token observer, WorkspaceNotification name);
    void notify(WorkspaceNotification name, const RunningApplicationRef& application) const;
    std::size_t count(WorkspaceNotification name) const;

  private:
    std::uint64_t lastId_ = 0;
    std::map<std::uint64_t, std::pair<WorkspaceNotification, Workspace::NotificationHandler>>
        observers_;
};

}  // namespace platform
