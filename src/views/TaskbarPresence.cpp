#include "views/TaskbarPresence.h"

#include <QWidget>

#if defined(__linux__)
#include <array>

#include "platform/x11/X11Connection.h"
#include "views/QtX11Connection.h"
#endif

namespace platform::qt::x11 {

#if defined(__linux__)

namespace {

using platform::x11::internAtoms;

struct StateAtoms {
    xcb_atom_t state;
    xcb_atom_t skipTaskbar;
    xcb_atom_t skipPager;
};

// Interned once, together: Qt's one connection lives as long as the
// program, and a window about to show should wait for no answer.
const StateAtoms& stateAtoms(xcb_connection_t* connection) {
    static const StateAtoms atoms = [connection] {
        const auto [state, skipTaskbar, skipPager] = internAtoms<3>(
            connection,
            {"_NET_WM_STATE", "_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER"});
        return StateAtoms{state, skipTaskbar, skipPager};
    }();
    return atoms;
}

// Before mapping, the window's own property is the request. It is written
// without reading it first: the window manager removes it when a window is
// withdrawn, and Qt adds its own states to what it finds there as it maps
// the window.
void writeStates(xcb_connection_t* connection, xcb_window_t window, const StateAtoms& atoms,
                 bool skip) {
    const std::array<xcb_atom_t, 2> states{atoms.skipTaskbar, atoms.skipPager};
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, atoms.state, XCB_ATOM_ATOM, 32,
                        skip ? static_cast<std::uint32_t>(states.size()) : 0, states.data());
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
    const auto& atoms = stateAtoms(connection);
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
