#include "platform/x11/X11ActiveWindowTracker.h"

#include <xcb/xcb_ewmh.h>

namespace platform::x11 {

X11ActiveWindowTracker::X11ActiveWindowTracker(X11InputEventSource& source) : source_(source) {
    source_.selectRootEvents(XCB_EVENT_MASK_PROPERTY_CHANGE);
    eventHandler_ =
        source_.addEventHandler([this](const xcb_generic_event_t& event) { handleEvent(event); });
    refresh();
    source_.dispatchSoon();
}

X11ActiveWindowTracker::~X11ActiveWindowTracker() {
    source_.removeEventHandler(eventHandler_);
}

Subscription X11ActiveWindowTracker::observeActiveProcess(Handler handler) {
    return observers_.subscribe(std::move(handler));
}

void X11ActiveWindowTracker::handleEvent(const xcb_generic_event_t& event) {
    if ((event.response_type & 0x7f) != XCB_PROPERTY_NOTIFY)
        return;
    const auto& notify = reinterpret_cast<const xcb_property_notify_event_t&>(event);
    if (notify.window != source_.root() ||
        notify.atom != source_.connection().ewmh()._NET_ACTIVE_WINDOW) {
        return;
    }
    const std::optional<pid_t> before = process_;
    refresh();
    if (process_ != before)
        observers_.call(process_);
}

void X11ActiveWindowTracker::refresh() {
    xcb_ewmh_connection_t& ewmh = source_.connection().ewmh();
    xcb_window_t window = XCB_NONE;
    if (!xcb_ewmh_get_active_window_reply(
            &ewmh, xcb_ewmh_get_active_window(&ewmh, source_.connection().screenNumber()), &window,
            nullptr)) {
        window = XCB_NONE;
    }
    window_ = window;
    process_ = window == XCB_NONE ? std::nullopt : processOf(window);
}

std::optional<pid_t> X11ActiveWindowTracker::processOf(xcb_window_t window) {
    xcb_ewmh_connection_t& ewmh = source_.connection().ewmh();
    std::uint32_t pid = 0;
    // A window that vanished in the meantime answers with an error: no owner.
    if (!xcb_ewmh_get_wm_pid_reply(&ewmh, xcb_ewmh_get_wm_pid(&ewmh, window), &pid, nullptr) ||
        pid == 0) {
        return std::nullopt;
    }
    return static_cast<pid_t>(pid);
}

}  // namespace platform::x11
