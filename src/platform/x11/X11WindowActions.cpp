#include "platform/x11/X11WindowActions.h"

#include <xcb/xcb_icccm.h>

namespace platform::x11 {

namespace {
// The requests come from a tool acting for the user, not from the window's
// own application, so window managers honour them without focus-stealing
// checks.
constexpr auto userToolSource = XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER;
}  // namespace

X11WindowActions::X11WindowActions(X11Connection& connection)
    : connection_(connection), changeState_(connection.atom("WM_CHANGE_STATE")) {}

void X11WindowActions::activate(xcb_window_t window) {
    xcb_ewmh_request_change_active_window(&connection_.ewmh(), connection_.screenNumber(), window,
                                          userToolSource, XCB_CURRENT_TIME, XCB_NONE);
    xcb_flush(connection_.connection());
}

void X11WindowActions::iconify(xcb_window_t window) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = changeState_;
    message.data.data32[0] = XCB_ICCCM_WM_STATE_ICONIC;
    connection_.sendToWindowManager(message);
    xcb_flush(connection_.connection());
}

void X11WindowActions::close(xcb_window_t window) {
    xcb_ewmh_request_close_window(&connection_.ewmh(), connection_.screenNumber(), window,
                                  XCB_CURRENT_TIME, userToolSource);
    xcb_flush(connection_.connection());
}

void X11WindowActions::changeFullScreen(xcb_window_t window, Change change) {
    xcb_ewmh_request_change_wm_state(&connection_.ewmh(), connection_.screenNumber(), window,
                                     static_cast<xcb_ewmh_wm_state_action_t>(change),
                                     connection_.ewmh()._NET_WM_STATE_FULLSCREEN, XCB_ATOM_NONE,
                                     userToolSource);
    xcb_flush(connection_.connection());
}

}  // namespace platform::x11
