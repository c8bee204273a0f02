#pragma once

#include <xcb/damage.h>
#include <xcb/xcb.h>

#include <chrono>
#include <cstdlib>

#include "DesktopDriver.h"

namespace bench {

// Tells when the program draws into a window: the server's damage record
// of the window turns non-empty at the first drawing after it was cleared.
class RepaintWatch {
  public:
    explicit RepaintWatch(xcb_window_t window) : connection_(xcb_connect(nullptr, nullptr)) {
        const auto* extension = xcb_get_extension_data(connection_, &xcb_damage_id);
        if (!extension || !extension->present)
            return;
        notifyEvent_ = extension->first_event + XCB_DAMAGE_NOTIFY;
        std::free(xcb_damage_query_version_reply(
            connection_, xcb_damage_query_version(connection_, 1, 1), nullptr));
        damage_ = xcb_generate_id(connection_);
        xcb_damage_create(connection_, damage_, window, XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY);
        xcb_flush(connection_);
    }
    ~RepaintWatch() { xcb_disconnect(connection_); }

    bool available() const { return damage_ != XCB_NONE; }

    // Forgets the drawing so far: the next one is reported again.
    void clear() {
        xcb_damage_subtract(connection_, damage_, XCB_NONE, XCB_NONE);
        std::free(
            xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
        while (auto* event = xcb_poll_for_event(connection_))
            std::free(event);
    }

    // Waits for the next drawing; false when none came within the time.
    bool waitForRepaint(double seconds) {
        const auto deadline = std::chrono::steady_clock::now() +
                              std::chrono::duration_cast<std::chrono::steady_clock::duration>(
                                  std::chrono::duration<double>(seconds));
        while (auto* event = e2e::nextEvent(connection_, deadline)) {
            const bool painted = (event->response_type & 0x7f) == notifyEvent_;
            std::free(event);
            if (painted)
                return true;
        }
        return false;
    }

  private:
    xcb_connection_t* connection_;
    xcb_damage_damage_t damage_ = XCB_NONE;
    uint8_t notifyEvent_ = 0;
};

}  // namespace bench
