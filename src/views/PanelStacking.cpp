#include "views/PanelStacking.h"

#include <QCoreApplication>
#include <QWidget>
#include <QWindow>

#if defined(__linux__)
#include "platform/x11/X11Connection.h"
#include "views/QtX11Connection.h"
#endif

namespace platform::qt::x11 {

namespace {

#if defined(__linux__)

using platform::x11::internAtom;
using platform::x11::Reply;

xcb_atom_t activeWindowAtom(xcb_connection_t* connection) {
    static const xcb_atom_t atom = internAtom(connection, "_NET_ACTIVE_WINDOW");
    return atom;
}

// Our own windows are made through Qt's connection, and the server names
// them from that connection's range of resource ids.
bool isOurs(xcb_connection_t* connection, std::uint32_t window) {
    const xcb_setup_t* setup = xcb_get_setup(connection);
    return (window & ~setup->resource_id_mask) == setup->resource_id_base;
}

// Whether the event tells that the active window changed.
bool activeWindowChanged(xcb_connection_t* connection, const QByteArray& eventType, void* message) {
    if (eventType != "xcb_generic_event_t")
        return false;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    if ((event->response_type & 0x7f) != XCB_PROPERTY_NOTIFY)
        return false;
    const auto* change = static_cast<const xcb_property_notify_event_t*>(message);
    return change->window == rootOf(connection) && change->atom == activeWindowAtom(connection);
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

void writeTransientFor(QWidget&, WId) {}

#endif

}  // namespace

PanelStacking::PanelStacking() : follow_([this] { followActiveWindow(); }) {
    if (!QCoreApplication::instance())
        return;
    QCoreApplication::instance()->installNativeEventFilter(this);
    askForActiveWindow();
}

PanelStacking::~PanelStacking() {
    if (QCoreApplication::instance())
        QCoreApplication::instance()->removeNativeEventFilter(this);
#if defined(__linux__)
    if (xcb_connection_t* connection = qtConnection(); connection && pendingRead_)
        xcb_discard_reply(connection, *pendingRead_);
#endif
}

// The answer is collected when it is needed, by which time Qt's reader has
// long had it.
void PanelStacking::askForActiveWindow() {
#if defined(__linux__)
    xcb_connection_t* connection = qtConnection();
    if (!connection)
        return;
    if (pendingRead_)
        xcb_discard_reply(connection, *pendingRead_);
    pendingRead_ = xcb_get_property(connection, 0, rootOf(connection), activeWindowAtom(connection),
                                    XCB_ATOM_WINDOW, 0, 1)
                       .sequence;
    xcb_flush(connection);
#endif
}

std::optional<std::uintptr_t> PanelStacking::othersActiveWindow() {
#if defined(__linux__)
    xcb_connection_t* connection = qtConnection();
    if (!connection)
        return std::nullopt;
    if (pendingRead_) {
        const Reply<xcb_get_property_reply_t> reply(
            xcb_get_property_reply(connection, {*pendingRead_}, nullptr));
        pendingRead_.reset();
        active_ = reply && reply->format == 32 && xcb_get_property_value_length(reply.get()) == 4
                      ? *static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()))
                      : XCB_NONE;
    }
    if (active_ == XCB_NONE || isOurs(connection, active_))
        return std::nullopt;
    return active_;
#else
    return std::nullopt;
#endif
}

void PanelStacking::stackAboveActiveWindow(QWidget& panel) {
    panel_ = &panel;
    QWindow* handle = panel.windowHandle();
    if (!handle)
        return;
    const auto active = othersActiveWindow();
    if (activeWindow_ && active && activeWindow_->winId() == *active)
        return;
    handle->setTransientParent(nullptr);
    activeWindow_.reset(active ? QWindow::fromWinId(*active) : nullptr);
    if (activeWindow_)
        handle->setTransientParent(activeWindow_.get());
}

bool PanelStacking::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
#if defined(__linux__)
    xcb_connection_t* connection = qtConnection();
    if (!connection || !activeWindowChanged(connection, eventType, message))
        return false;
    askForActiveWindow();
    // A shown panel follows once the answer had a turn to come.
    if (panel_ && panel_->isVisible())
        follow_.request();
#else
    (void)eventType;
    (void)message;
#endif
    return false;
}

void PanelStacking::followActiveWindow() {
    if (!panel_ || !panel_->isVisible())
        return;
    const auto before = activeWindow_ ? std::optional(activeWindow_->winId()) : std::nullopt;
    stackAboveActiveWindow(*panel_);
    if (activeWindow_ && activeWindow_->winId() != before)
        writeTransientFor(*panel_, activeWindow_->winId());
}

}  // namespace platform::qt::x11
