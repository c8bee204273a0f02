#include "views/PanelStacking.h"

#include <QWidget>
#include <QWindow>

#if defined(__linux__)
#include <unistd.h>

#include "platform/x11/X11Connection.h"
#include "views/QtX11Connection.h"
#endif

namespace platform::qt::x11 {

namespace {

#if defined(__linux__)

using platform::x11::awaitReply;
using platform::x11::internAtom;

std::optional<std::uint32_t> cardinalProperty(xcb_connection_t* connection, xcb_window_t window,
                                              const char* name, xcb_atom_t type) {
    const auto reply = awaitReply(
        connection, xcb_get_property_reply,
        xcb_get_property(connection, 0, window, internAtom(connection, name), type, 0, 1));
    if (!reply || reply->format != 32 || xcb_get_property_value_length(reply.get()) != 4)
        return std::nullopt;
    return *static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
}

// The active window when it is another program's.
std::optional<xcb_window_t> othersActiveWindow(QWidget& panel) {
    xcb_connection_t* connection = connectionFor(panel);
    if (!connection)
        return std::nullopt;
    const auto active =
        cardinalProperty(connection, rootOf(connection), "_NET_ACTIVE_WINDOW", XCB_ATOM_WINDOW);
    if (!active || *active == XCB_NONE)
        return std::nullopt;
    const auto pid = cardinalProperty(connection, *active, "_NET_WM_PID", XCB_ATOM_CARDINAL);
    if (pid && static_cast<pid_t>(*pid) == ::getpid())
        return std::nullopt;
    return *active;
}

#else

std::optional<unsigned long> othersActiveWindow(QWidget&) {
    return std::nullopt;
}

#endif

}  // namespace

PanelStacking::PanelStacking() = default;

PanelStacking::~PanelStacking() = default;

void PanelStacking::stackAboveActiveWindow(QWidget& panel) {
    QWindow* handle = panel.windowHandle();
    if (!handle)
        return;
    const auto active = othersActiveWindow(panel);
    if (activeWindow_ && active && activeWindow_->winId() == static_cast<WId>(*active))
        return;
    handle->setTransientParent(nullptr);
    activeWindow_.reset(active ? QWindow::fromWinId(static_cast<WId>(*active)) : nullptr);
    if (activeWindow_)
        handle->setTransientParent(activeWindow_.get());
}

}  // namespace platform::qt::x11
