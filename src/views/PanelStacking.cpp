#include "views/PanelStacking.h"

#include <QCoreApplication>
#include <QWidget>
#include <QWindow>
#include <optional>

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

// The atoms asked for at each show, interned once: Qt's one connection
// lives as long as the program, and a show should cost no extra round trip.
struct StackingAtoms {
    xcb_atom_t activeWindow;
    xcb_atom_t windowPid;
};
const StackingAtoms& stackingAtoms(xcb_connection_t* connection) {
    static const StackingAtoms atoms{internAtom(connection, "_NET_ACTIVE_WINDOW"),
                                     internAtom(connection, "_NET_WM_PID")};
    return atoms;
}

std::optional<std::uint32_t> cardinalProperty(xcb_connection_t* connection, xcb_window_t window,
                                              xcb_atom_t property, xcb_atom_t type) {
    const auto reply = awaitReply(connection, xcb_get_property_reply,
                                  xcb_get_property(connection, 0, window, property, type, 0, 1));
    if (!reply || reply->format != 32 || xcb_get_property_value_length(reply.get()) != 4)
        return std::nullopt;
    return *static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
}

// The active window when it is another program's.
std::optional<WId> othersActiveWindow(QWidget& panel) {
    xcb_connection_t* connection = connectionFor(panel);
    if (!connection)
        return std::nullopt;
    const auto& atoms = stackingAtoms(connection);
    const auto active =
        cardinalProperty(connection, rootOf(connection), atoms.activeWindow, XCB_ATOM_WINDOW);
    if (!active || *active == XCB_NONE)
        return std::nullopt;
    const auto pid = cardinalProperty(connection, *active, atoms.windowPid, XCB_ATOM_CARDINAL);
    if (pid && static_cast<pid_t>(*pid) == ::getpid())
        return std::nullopt;
    return static_cast<WId>(*active);
}

// Whether the event tells that the active window changed.
bool activeWindowChanged(QWidget& panel, const QByteArray& eventType, void* message) {
    if (eventType != "xcb_generic_event_t")
        return false;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    if ((event->response_type & 0x7f) != XCB_PROPERTY_NOTIFY)
        return false;
    xcb_connection_t* connection = connectionFor(panel);
    if (!connection)
        return false;
    const auto* change = static_cast<const xcb_property_notify_event_t*>(message);
    if (change->window != rootOf(connection))
        return false;
    return change->atom == stackingAtoms(connection).activeWindow;
}

// Qt writes the transient parent as a window shows; a shown one is told
// here.
void writeTransientFor(QWidget& panel, WId window) {
    if (xcb_connection_t* connection = connectionFor(panel)) {
        const auto owner = static_cast<xcb_window_t>(window);
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE,
                            static_cast<xcb_window_t>(panel.winId()), XCB_ATOM_WM_TRANSIENT_FOR,
                            XCB_ATOM_WINDOW, 32, 1, &owner);
        xcb_flush(connection);
    }
}

#else

std::optional<WId> othersActiveWindow(QWidget&) {
    return std::nullopt;
}
bool activeWindowChanged(QWidget&, const QByteArray&, void*) {
    return false;
}
void writeTransientFor(QWidget&, WId) {}

#endif

}  // namespace

PanelStacking::PanelStacking() {
    if (QCoreApplication::instance())
        QCoreApplication::instance()->installNativeEventFilter(this);
}

PanelStacking::~PanelStacking() {
    if (QCoreApplication::instance())
        QCoreApplication::instance()->removeNativeEventFilter(this);
}

void PanelStacking::stackAboveActiveWindow(QWidget& panel) {
    panel_ = &panel;
    QWindow* handle = panel.windowHandle();
    if (!handle)
        return;
    const auto active = othersActiveWindow(panel);
    if (activeWindow_ && active && activeWindow_->winId() == *active)
        return;
    handle->setTransientParent(nullptr);
    activeWindow_.reset(active ? QWindow::fromWinId(*active) : nullptr);
    if (activeWindow_)
        handle->setTransientParent(activeWindow_.get());
}

bool PanelStacking::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
    if (panel_ && panel_->isVisible() && activeWindowChanged(*panel_, eventType, message))
        followActiveWindow();
    return false;
}

void PanelStacking::followActiveWindow() {
    const auto before = activeWindow_ ? std::optional(activeWindow_->winId()) : std::nullopt;
    stackAboveActiveWindow(*panel_);
    if (activeWindow_ && activeWindow_->winId() != before)
        writeTransientFor(*panel_, activeWindow_->winId());
}

}  // namespace platform::qt::x11
