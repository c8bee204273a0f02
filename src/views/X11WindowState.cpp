#include "views/X11WindowState.h"

#include <QGuiApplication>
#include <QWidget>

#if defined(__linux__)
#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>
#endif

namespace platform::qt::x11 {

#if defined(__linux__)

namespace {

struct FreeDeleter {
    void operator()(void* p) const { std::free(p); }
};
template <typename T>
using Reply = std::unique_ptr<T, FreeDeleter>;

xcb_atom_t internAtom(xcb_connection_t* connection, const char* name) {
    Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        connection,
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name),
        nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

struct StateAtoms {
    xcb_atom_t state;
    xcb_atom_t skipTaskbar;
    xcb_atom_t skipPager;
};

StateAtoms stateAtoms(xcb_connection_t* connection) {
    return {internAtom(connection, "_NET_WM_STATE"),
            internAtom(connection, "_NET_WM_STATE_SKIP_TASKBAR"),
            internAtom(connection, "_NET_WM_STATE_SKIP_PAGER")};
}

std::vector<xcb_atom_t> readStates(xcb_connection_t* connection, xcb_window_t window,
                                   xcb_atom_t property) {
    Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        connection, xcb_get_property(connection, 0, window, property, XCB_ATOM_ATOM, 0, 1024),
        nullptr));
    if (!reply || reply->format != 32 || reply->type != XCB_ATOM_ATOM)
        return {};
    const auto* atoms = static_cast<const xcb_atom_t*>(xcb_get_property_value(reply.get()));
    return std::vector<xcb_atom_t>(atoms, atoms + xcb_get_property_value_length(reply.get()) / 4);
}

// Before mapping, the window's own property is the request.
void writeStates(xcb_connection_t* connection, xcb_window_t window, const StateAtoms& atoms,
                 bool skip) {
    auto states = readStates(connection, window, atoms.state);
    std::erase_if(states,
                  [&](xcb_atom_t a) { return a == atoms.skipTaskbar || a == atoms.skipPager; });
    if (skip) {
        states.push_back(atoms.skipTaskbar);
        states.push_back(atoms.skipPager);
    }
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, atoms.state, XCB_ATOM_ATOM, 32,
                        static_cast<std::uint32_t>(states.size()), states.data());
}

// Sends a client message about the window to the window manager.
void sendToWindowManager(xcb_connection_t* connection, const xcb_client_message_event_t& message) {
    const xcb_setup_t* setup = xcb_get_setup(connection);
    xcb_screen_t* screen = xcb_setup_roots_iterator(setup).data;
    if (!screen)
        return;
    xcb_send_event(connection, 0, screen->root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
}

// A mapped window asks the window manager, through the root window.
void requestStates(xcb_connection_t* connection, xcb_window_t window, const StateAtoms& atoms,
                   bool skip) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atoms.state;
    message.data.data32[0] = skip ? 1 : 0;  // _NET_WM_STATE_ADD or _REMOVE
    message.data.data32[1] = atoms.skipTaskbar;
    message.data.data32[2] = atoms.skipPager;
    message.data.data32[3] = 1;  // from an application
    sendToWindowManager(connection, message);
}

// The X connection behind a top-level window; none off X11 (the offscreen
// platform, say, has the interface with no connection behind it).
xcb_connection_t* connectionFor(const QWidget& window) {
    auto* x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return x11 && window.isWindow() ? x11->connection() : nullptr;
}

}  // namespace

void setSkipTaskbarAndPager(QWidget& window, bool skip) {
    xcb_connection_t* connection = connectionFor(window);
    if (!connection)
        return;
    const auto id = static_cast<xcb_window_t>(window.winId());
    const auto atoms = stateAtoms(connection);
    if (window.isVisible()) {
        requestStates(connection, id, atoms, skip);
    } else {
        writeStates(connection, id, atoms, skip);
    }
    xcb_flush(connection);
}

void requestFrameExtents(QWidget& window) {
    xcb_connection_t* connection = connectionFor(window);
    if (!connection)
        return;
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = static_cast<xcb_window_t>(window.winId());
    message.type = internAtom(connection, "_NET_REQUEST_FRAME_EXTENTS");
    sendToWindowManager(connection, message);
    xcb_flush(connection);
}

std::optional<QMargins> frameExtents(QWidget& window) {
    xcb_connection_t* connection = connectionFor(window);
    if (!connection)
        return std::nullopt;
    const auto id = static_cast<xcb_window_t>(window.winId());
    const auto property = internAtom(connection, "_NET_FRAME_EXTENTS");
    Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        connection, xcb_get_property(connection, 0, id, property, XCB_ATOM_CARDINAL, 0, 4),
        nullptr));
    if (!reply || reply->format != 32 || xcb_get_property_value_length(reply.get()) != 16)
        return std::nullopt;
    // Left, right, top, bottom.
    const auto* sides = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    return QMargins(static_cast<int>(sides[0]), static_cast<int>(sides[2]),
                    static_cast<int>(sides[1]), static_cast<int>(sides[3]));
}

#else

void setSkipTaskbarAndPager(QWidget&, bool) {}
void requestFrameExtents(QWidget&) {}
std::optional<QMargins> frameExtents(QWidget&) {
    return std::nullopt;
}

#endif

}  // namespace platform::qt::x11
