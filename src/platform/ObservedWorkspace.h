#pragma once

#include <cstddef>
#include <cstdint>
#include <map>

#include "platform/HandlerList.h"
#include "platform/LifetimeGuard.h"
#include "platform/MainLoop.h"
#include "platform/Workspace.h"

namespace platform {

// What every backend's workspace does alike: it keeps the observers of the
// launch and termination notifications, registered under a notification
// name, and those of the frontmost application, each a handler list told in
// the order they came. A backend says when the frontmost application changes
// and posts the notifications.
class ObservedWorkspace : public Workspace {
  public:
    explicit ObservedWorkspace(MainLoop& loop) : loop_(loop) {}

    RunningApplicationRef frontmostApplication() const override { return frontmost_; }
    Token addObserverForName(WorkspaceNotification name, NotificationHandler handler) override;
    // Only an observer registered under that name goes.
    void removeObserver(Token observer, WorkspaceNotification name) override;
    Subscription observeFrontmostApplication(bool initial, FrontmostHandler handler) override;

    std::size_t observerCount(WorkspaceNotification name) const;

  protected:
    MainLoop& loop() const { return loop_; }
    // Tells the frontmost application's observers of it.
    void setFrontmost(RunningApplicationRef application);
    // Notifies one turn of the loop later, as the platform delivers
    // notifications; nothing when the workspace is gone by then.
    void post(WorkspaceNotification name, RunningApplicationRef application);

  private:
    MainLoop& loop_;
    RunningApplicationRef frontmost_;
    HandlerList<WorkspaceNotification, const RunningApplicationRef&> observers_;
    std::map<std::uint64_t, WorkspaceNotification> names_;
    HandlerList<const RunningApplicationRef&> frontmostObservers_;
    LifetimeGuard lifetime_;
};

}  // namespace platform
