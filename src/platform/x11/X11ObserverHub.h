#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/MainLoop.h"
#include "platform/x11/X11ElementAttributes.h"
#include "platform/x11/X11Observer.h"
#include "platform/x11/X11WindowMirror.h"

namespace platform::x11 {

// Keeps the observers and turns the mirror's changes into their
// notifications, each delivered as a task of its own on the main loop.
class X11ObserverHub final : public X11WindowMirrorListener {
  public:
    X11ObserverHub(MainLoop& loop, const X11ElementAttributes& attributes);

    AXErrorCode create(pid_t pid, AXObserverCallback callback,
                       AXObserverCallbackWithInfo callbackWithInfo, AXObserverRef& observer);
    AXErrorCode add(const AXObserverRef& observer, const AXUIElementRef& element,
                    const std::string& notification, void* refcon);
    AXErrorCode remove(const AXObserverRef& observer, const AXUIElementRef& element,
                       const std::string& notification);
    void setOnMainLoop(const AXObserverRef& observer, bool on);

    void windowJoined(xcb_window_t window, pid_t pid) override;
    void windowLeft(xcb_window_t window, pid_t pid) override;
    void windowMoved(xcb_window_t window, pid_t pid) override;
    void windowRetitled(xcb_window_t window, pid_t pid) override;
    void windowMiniaturized(xcb_window_t window, pid_t pid) override;
    void mainWindowChanged(pid_t pid, xcb_window_t window) override;

  private:
    // Posts the notification about the window to every registration on the
    // window itself or on its application.
    void notify(const std::string& notification, xcb_window_t window, pid_t pid);

    MainLoop& loop_;
    const X11ElementAttributes& attributes_;
    std::vector<std::weak_ptr<X11Observer>> observers_;
};

}  // namespace platform::x11
