#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "platform/Accessibility.h"
#include "platform/x11/X11Element.h"

namespace platform::x11 {

// One observer of one process's notifications: what it asked for, and
// whether its source is on the main loop.
class X11Observer final : public AXObserverHandle {
  public:
    struct Registration {
        X11ElementKey element;
        std::string notification;
        void* refcon;
    };

    X11Observer(pid_t pid, AXObserverCallback callback, AXObserverCallbackWithInfo withInfo)
        : pid_(pid), callback_(callback), callbackWithInfo_(withInfo) {}

    pid_t pid() const { return pid_; }
    bool isOnMainLoop() const { return onMainLoop_; }
    void setOnMainLoop(bool on) { onMainLoop_ = on; }

    // False when that registration already exists.
    bool add(Registration registration);
    // False when there was no such registration.
    bool remove(const X11ElementKey& element, const std::string& notification);
    // Drops every registration on the window and its buttons.
    void forgetWindow(xcb_window_t window);
    const std::vector<Registration>& registrations() const { return registrations_; }

    void call(const AXObserverRef& self, const AXUIElementRef& element,
              const std::string& notification, void* refcon) const;

  private:
    pid_t pid_;
    AXObserverCallback callback_;
    AXObserverCallbackWithInfo callbackWithInfo_;
    bool onMainLoop_ = false;
    std::vector<Registration> registrations_;
};

}  // namespace platform::x11
