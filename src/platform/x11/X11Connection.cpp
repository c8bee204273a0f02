#include "platform/x11/X11Connection.h"

namespace platform::x11 {

xcb_atom_t internAtom(xcb_connection_t* connection, std::string_view name) {
    const auto answer = awaitReply(
        connection, xcb_intern_atom_reply,
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data()));
    return answer ? answer->atom : xcb_atom_t{XCB_ATOM_NONE};
}

void sendToWindowManager(xcb_connection_t* connection, xcb_window_t root,
                         const xcb_client_message_event_t& message) {
    xcb_send_event(connection, 0, root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
}

std::unique_ptr<X11Connection> X11Connection::open(const char* displayName) {
    int screenNumber = 0;
    xcb_connection_t* connection = xcb_connect(displayName, &screenNumber);
    if (!connection || xcb_connection_has_error(connection)) {
        if (connection)
            xcb_disconnect(connection);
        return nullptr;
    }
    return std::unique_ptr<X11Connection>(new X11Connection(connection, screenNumber));
}

X11Connection::X11Connection(xcb_connection_t* connection, int screenNumber)
    : connection_(connection), screenNumber_(screenNumber) {
    auto iter = xcb_setup_roots_iterator(xcb_get_setup(connection_));
    for (int i = 0; i < screenNumber_ && iter.rem; ++i)
        xcb_screen_next(&iter);
    screen_ = iter.data;
    xcb_intern_atom_cookie_t* cookies = xcb_ewmh_init_atoms(connection_, &ewmh_);
    xcb_ewmh_init_atoms_replies(&ewmh_, cookies, nullptr);
}

X11Connection::~X11Connection() {
    xcb_ewmh_connection_wipe(&ewmh_);
    xcb_disconnect(connection_);
}

}  // namespace platform::x11
