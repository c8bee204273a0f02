#include "views/QtX11Connection.h"

#if defined(__linux__)
#include <QGuiApplication>
#include <QWidget>

namespace platform::qt::x11 {

xcb_connection_t* qtConnection() {
    auto* x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return x11 ? x11->connection() : nullptr;
}

xcb_connection_t* connectionFor(const QWidget& window) {
    return window.isWindow() ? qtConnection() : nullptr;
}

xcb_window_t rootOf(xcb_connection_t* connection) {
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    return screen ? screen->root : xcb_window_t{XCB_NONE};
}

}  // namespace platform::qt::x11
#endif
