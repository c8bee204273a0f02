#pragma once

#include <xcb/xcb.h>

#include <map>
#include <vector>

#include "platform/HandlerList.h"
#include "platform/HotKeys.h"
#include "platform/x11/X11InputEventSource.h"
#include "platform/x11/X11KeyGrabs.h"

namespace platform::x11 {

// Hot keys as passive key grabs on the root window.
//
// X keeps no list of the desktop's own shortcuts. What comes closest are the
// keys other clients (the window manager, a desktop's shortcut daemon) have
// grabbed on the root window, and those can only be found by trying to grab
// a key: the server refuses a grab that another client holds. So a key is
// "taken" when such a grab is refused, "free" when it is granted (it is let
// go at once), and any other error means the desktop "can't be read". The
// system shortcuts are every key of the key table, in every combination of
// Shift, Control, Option and Command, that another client holds.
class X11HotKeys final : public HotKeys {
  public:
    // Statuses in the hot key service's numbering.
    static constexpr OSStatus paramErr = -50;
    static constexpr OSStatus eventHotKeyExistsErr = -9878;
    static constexpr OSStatus eventHotKeyInvalidErr = -9879;
    static constexpr OSStatus eventInternalErr = -9868;

    explicit X11HotKeys(X11InputEventSource& source);
    ~X11HotKeys() override;
    X11HotKeys(const X11HotKeys&) = delete;
    X11HotKeys& operator=(const X11HotKeys&) = delete;

    OSStatus registerEventHotKey(KeyCode keyCode, std::uint32_t carbonModifiers, Handler handler,
                                 Token& hotKey) override;
    OSStatus unregisterEventHotKey(Token hotKey) override;
    OSStatus copySymbolicHotKeys(std::vector<SymbolicHotKey>& hotKeys) override;
    ShortcutAvailability isShortcutTaken(KeyCode keyCode, std::uint32_t carbonModifiers) override;

  private:
    void handleEvent(const xcb_generic_event_t& event);
    bool isOurs(const KeyGrab& grab) const;

    X11InputEventSource& source_;
    X11KeyGrabs grabs_;
    // The handler of the key pressed or released takes the event, and the
    // rest are left alone.
    HandlerList<const KeyGrab&, bool, bool&> handlers_;
    std::map<std::uint64_t, KeyGrab> grabbed_;
    Token eventHandler_;
};

}  // namespace platform::x11
