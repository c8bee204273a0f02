#pragma once

#include <xcb/xcb.h>

#include <mutex>
#include <set>

#include "platform/PowerManagement.h"

namespace platform::x11 {

// Power assertions kept by the X server's screen-saver extension: while any
// is held, this client suspends the screen saver, which also keeps the
// display from being powered down. The suspension ends with the last
// assertion, or when the connection closes.
class X11ScreenSaverSuspension final : public PowerManagement {
  public:
    // The connection must outlive this object.
    explicit X11ScreenSaverSuspension(xcb_connection_t* connection);

    // Nothing when the server lacks the extension (version 1.1 or later) or
    // refuses the suspension.
    std::optional<AssertionID> assertionCreateWithName(const std::string& name) override;
    void assertionRelease(AssertionID assertion) override;

  private:
    bool suspend(bool on);

    xcb_connection_t* connection_;
    bool supported_ = false;
    std::mutex mutex_;
    std::set<AssertionID> held_;
    AssertionID lastID_ = 0;
};

}  // namespace platform::x11
