#include "platform/x11/X11Connection.h"

#include <cstdlib>

namespace platform::x11 {

std::unique_ptr<X11Connection> X11Connection::open(const char* displayName) {
    int screenNumber = 0;
    xcb_connection_t* connection = xcb_connect(displayName, &screenNumber);
    if (!connection || xcb_connection_has_error(connection)) {
        if (connection) xcb_disconnect(connection);
        return nullptr;
    }
    return std::unique_ptr<X11Connection>(new X11Connection(connection, screenNumber));
}

X11Connection::X11Connection(xcb_connection_t* connection, int screenNumber)
    : connection_(connection), screenNumber_(screenNumber) {
    auto iter = xcb_setup_roots_iterator(xcb_get_setup(connection_));
    for (int i = 0; i < screenNumber_ && iter.rem; ++i) xcb_screen_next(&iter);
    screen_ = iter.data;
    xcb_intern_atom_cookie_t* cookies = xcb_ewmh_init_atoms(connection_, &ewmh_);
    xcb_ewmh_init_atoms_replies(&ewmh_, cookies, nullptr);
}

X11Connection::~X11Connection() {
    xcb_ewmh_connection_wipe(&ewmh_);
    xcb_disconnect(connection_);
}

std::optional<std::string> X11Connection::windowManagerName() {
    xcb_window_t check = XCB_NONE;
    if (!xcb_ewmh_get_supporting_wm_check_reply(
            &ewmh_, xcb_ewmh_get_supporting_wm_check(&ewmh_, root()), &check, nullptr)) {
        return std::nullopt;
    }
    xcb_ewmh_get_utf8_strings_reply_t name{};
    if (!xcb_ewmh_get_wm_name_reply(&ewmh_, xcb_ewmh_get_wm_name(&ewmh_, check), &name, nullptr)) {
        return std::string();
    }
    std::string text(name.strings, name.strings_len);
    xcb_ewmh_get_utf8_strings_reply_wipe(&name);
    return text;
}

xcb_atom_t X11Connection::atom(const std::string& name) {
    auto cookie = xcb_intern_atom(connection_, 0, static_cast<uint16_t>(name.size()), name.c_str());
    xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(connection_, cookie, nullptr);
    if (!reply) return XCB_ATOM_NONE;
    xcb_atom_t atom = reply->atom;
    std::free(reply);
    return atom;
}

}  // namespace platform::x11
