#pragma once

#include <xcb/damage.h>
#include <xcb/xcb.h>

#include <chrono>
#include <cstdlib>

#include "DesktopDriver.h"

namespace bench {

// Tells when the program draws into a window: each drawing the server
// records is reported, with the area it covered, and the first after a
// clear() is waited for; the drawings that cover the whole window (a full
// repaint) are counted.
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
        xcb_damage_create(connection_, damage_, window, XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
        xcb_flush(connection_);
    }
    ~RepaintWatch() { xcb_disconnect(connection_); }

    bool available() const { return damage_ != XCB_NONE; }

    // Forgets the drawing so far: the next one is reported again.
    void clear() {
        fullRepaints_ = 0;
        xcb_damage_subtract(connection_, damage_, XCB_NONE, XCB_NONE);
        std::free(
            xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
        while (auto* event = xcb_poll_for_event(connection_))
            std::free(event);
    }

    // Waits for the next drawing; false when none came within the time.
    bool waitForRepaint(double seconds) {
        const auto deadline = deadlineIn(seconds);
        while (auto* event = e2e::nextEvent(connection_, deadline)) {
            const bool painted = countDrawing(event);
            std::free(event);
            if (painted)
                return true;
        }
        return false;
    }

    // Follows the drawings for the time given; how many covered the whole
    // window since the last clear().
    int fullRepaintsAfter(double seconds) {
        const auto deadline = deadlineIn(seconds);
        while (auto* event = e2e::nextEvent(connection_, deadline)) {
            countDrawing(event);
            std::free(event);
        }
        return fullRepaints_;
    }

  private:
    static std::chrono::steady_clock::time_point deadlineIn(double seconds) {
        return std::chrono::steady_clock::now() +
               std::chrono::duration_cast<std::chrono::steady_clock::duration>(
                   std::chrono::duration<double>(seconds));
    }

    // Whether the event tells of a drawing; one over the whole window counts.
    bool countDrawing(const xcb_generic_event_t* event) {
        if ((event->response_type & 0x7f) != notifyEvent_)
            return false;
        const auto* drawn = reinterpret_cast<const xcb_damage_notify_event_t*>(event);
        if (drawn->area.width == drawn->geometry.width &&
            drawn->area.height == drawn->geometry.height)
            ++fullRepaints_;
        return true;
    }

    xcb_connection_t* connection_;
    xcb_damage_damage_t damage_ = XCB_NONE;
    uint8_t notifyEvent_ = 0;
    int fullRepaints_ = 0;
};

}  // namespace bench
