#include "views/TaskbarPresence.h"

#include <QWidget>

#if defined(__linux__)
#include <algorithm>
#include <vector>

#include "platform/x11/X11Connection.h"
#include "views/QtX11Connection.h"
#endif

namespace platform::qt::x11 {

#if defined(__linux__)

namespace {

using platform::x11::awaitReply;
using platform::x11::internAtom;

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
    const auto states =
        awaitReply(connection, xcb_get_property_reply,
                   xcb_get_property(connection, 0, window, property, XCB_ATOM_ATOM, 0, 1024));
    if (!states || states->format != 32 || states->type != XCB_ATOM_ATOM)
        return {};
    const auto* atoms = static_cast<const xcb_atom_t*>(xcb_get_property_value(states.get()));
    return std::vector<xcb_atom_t>(atoms, atoms + xcb_get_property_value_length(states.get()) / 4);
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
    platform::x11::sendToWindowManager(connection, rootOf(connection), message);
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

#else

void setSkipTaskbarAndPager(QWidget&, bool) {}

#endif

}  // namespace platform::qt::x11
