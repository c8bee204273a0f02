#include "views/QtWindowExposure.h"

#include <QCoreApplication>
#include <QWidget>

#if defined(__linux__)
#include <xcb/xcb.h>
#endif

namespace platform::qt::x11 {

QtWindowExposure::QtWindowExposure(QWidget& window) : window_(window) {
    if (QCoreApplication::instance())
        QCoreApplication::instance()->installNativeEventFilter(this);
}

QtWindowExposure::~QtWindowExposure() {
    if (QCoreApplication::instance())
        QCoreApplication::instance()->removeNativeEventFilter(this);
}

bool QtWindowExposure::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
#if defined(__linux__)
    if (eventType != "xcb_generic_event_t" || !window_.testAttribute(Qt::WA_WState_Created))
        return false;
    const auto window = static_cast<xcb_window_t>(window_.internalWinId());
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    switch (event->response_type & 0x7f) {
        case XCB_MAP_NOTIFY:
            if (reinterpret_cast<const xcb_map_notify_event_t*>(event)->window == window)
                justMapped_ = true;
            return false;
        case XCB_UNMAP_NOTIFY:
            if (reinterpret_cast<const xcb_unmap_notify_event_t*>(event)->window == window)
                justMapped_ = false;
            return false;
        case XCB_EXPOSE: {
            const auto* exposure = reinterpret_cast<const xcb_expose_event_t*>(event);
            if (exposure->window != window || !justMapped_)
                return false;
            // The last of the exposure's rectangles ends it.
            if (exposure->count == 0)
                justMapped_ = false;
            return true;
        }
        default:
            return false;
    }
#else
    (void)eventType;
    (void)message;
    return false;
#endif
}

}  // namespace platform::qt::x11
