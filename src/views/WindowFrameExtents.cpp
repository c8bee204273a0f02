#include "views/WindowFrameExtents.h"

#include <QWidget>
#include <cmath>
#include <thread>

#if defined(__linux__)
#include "platform/x11/X11Connection.h"
#include "views/QtX11Connection.h"
#endif

namespace platform::qt::x11 {

#if defined(__linux__)

using platform::x11::awaitReply;
using platform::x11::internAtom;

namespace {

// Atoms are the server's for as long as it runs: each is asked for once.
xcb_atom_t requestFrameExtentsAtom(xcb_connection_t* connection) {
    static const xcb_atom_t atom = internAtom(connection, "_NET_REQUEST_FRAME_EXTENTS");
    return atom;
}

xcb_atom_t frameExtentsAtom(xcb_connection_t* connection) {
    static const xcb_atom_t atom = internAtom(connection, "_NET_FRAME_EXTENTS");
    return atom;
}

}  // namespace

void requestFrameExtents(QWidget& window) {
    xcb_connection_t* connection = connectionFor(window);
    if (!connection)
        return;
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = static_cast<xcb_window_t>(window.winId());
    message.type = requestFrameExtentsAtom(connection);
    platform::x11::sendToWindowManager(connection, rootOf(connection), message);
    xcb_flush(connection);
}

std::optional<QMargins> frameExtents(QWidget& window) {
    xcb_connection_t* connection = connectionFor(window);
    if (!connection)
        return std::nullopt;
    const auto id = static_cast<xcb_window_t>(window.winId());
    const auto extents = awaitReply(
        connection, xcb_get_property_reply,
        xcb_get_property(connection, 0, id, frameExtentsAtom(connection), XCB_ATOM_CARDINAL, 0, 4));
    if (!extents || extents->format != 32 || xcb_get_property_value_length(extents.get()) != 16)
        return std::nullopt;
    // Left, right, top, bottom, in the server's device pixels; the window
    // is placed in Qt's points.
    const auto* sides = static_cast<const std::uint32_t*>(xcb_get_property_value(extents.get()));
    const double pixelsPerPoint = window.devicePixelRatioF() > 0 ? window.devicePixelRatioF() : 1.0;
    const auto inPoints = [pixelsPerPoint](std::uint32_t pixels) {
        return static_cast<int>(std::lround(pixels / pixelsPerPoint));
    };
    return QMargins(inPoints(sides[0]), inPoints(sides[2]), inPoints(sides[1]), inPoints(sides[3]));
}

// The answer comes as a property change on a connection whose events Qt
// reads on its own thread; looking for the property every few milliseconds
// keeps out of Qt's way.
std::optional<QMargins> awaitFrameExtents(QWidget& window, std::chrono::milliseconds patience) {
    if (!connectionFor(window))
        return std::nullopt;
    requestFrameExtents(window);
    const auto deadline = std::chrono::steady_clock::now() + patience;
    for (;;) {
        if (auto extents = frameExtents(window))
            return extents;
        if (std::chrono::steady_clock::now() >= deadline)
            return std::nullopt;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
}

#else

void requestFrameExtents(QWidget&) {}
std::optional<QMargins> awaitFrameExtents(QWidget&, std::chrono::milliseconds) {
    return std::nullopt;
}
std::optional<QMargins> frameExtents(QWidget&) {
    return std::nullopt;
}

#endif

}  // namespace platform::qt::x11
