#pragma once

#include <sys/types.h>
#include <xcb/xproto.h>

#include <memory>
#include <string>

#include "platform/CFValue.h"

namespace platform::x11 {

// What an accessibility element stands for on X11: a process that owns
// managed windows, one managed top-level window, one of the three title-bar
// buttons of such a window, or the whole desktop.
enum class X11ElementKind { application, window, button, systemWide };

enum class X11WindowButton { close, minimize, zoom };

// The identity of an element, without the handle around it. Windows are
// named by their X id alone: the id outlives any change of owner.
struct X11ElementKey {
    X11ElementKind kind = X11ElementKind::systemWide;
    pid_t pid = 0;
    xcb_window_t window = XCB_NONE;
    X11WindowButton button = X11WindowButton::close;

    static X11ElementKey forApplication(pid_t pid) {
        return {X11ElementKind::application, pid, XCB_NONE, X11WindowButton::close};
    }
    static X11ElementKey forWindow(xcb_window_t window) {
        return {X11ElementKind::window, 0, window, X11WindowButton::close};
    }
    static X11ElementKey forButton(xcb_window_t window, X11WindowButton button) {
        return {X11ElementKind::button, 0, window, button};
    }
    static X11ElementKey forSystemWide() { return {}; }

    friend bool operator==(const X11ElementKey& a, const X11ElementKey& b);
    std::size_t hash() const;
};

// The handle the backend gives out. The process id is kept for the
// description only; equality and hash rest on the key.
class X11Element final : public AXUIElementHandle {
  public:
    X11Element(X11ElementKey key, pid_t describedPid) : key_(key), describedPid_(describedPid) {}

    static AXUIElementRef make(X11ElementKey key, pid_t describedPid = 0);
    // The element behind a handle, or nothing when the handle is not ours.
    static const X11Element* from(const AXUIElementRef& handle);

    const X11ElementKey& key() const { return key_; }

    bool isEqual(const AXUIElementHandle& other) const override;
    std::size_t hash() const override { return key_.hash(); }
    std::string description() const override;

  private:
    X11ElementKey key_;
    pid_t describedPid_;
};

}  // namespace platform::x11
