#include "DesktopDriver.h"

#include <chrono>
#include <thread>

namespace e2e {

bool eventually(const std::function<bool()>& condition, double seconds) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    while (std::chrono::steady_clock::now() < deadline) {
        if (condition())
            return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return condition();
}

bool Desktop::waitForMapping(xcb_window_t window, bool mapped, double seconds) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    const uint8_t wanted = mapped ? XCB_MAP_NOTIFY : XCB_UNMAP_NOTIFY;
    while (std::chrono::steady_clock::now() < deadline) {
        xcb_generic_event_t* event = xcb_poll_for_event(connection_);
        if (!event) {
            std::this_thread::sleep_for(std::chrono::microseconds(50));
            continue;
        }
        const bool seen =
            (event->response_type & 0x7f) == wanted &&
            (mapped ? reinterpret_cast<xcb_map_notify_event_t*>(event)->window
                    : reinterpret_cast<xcb_unmap_notify_event_t*>(event)->window) == window;
        std::free(event);
        if (seen)
            return true;
    }
    return false;
}

}  // namespace e2e
