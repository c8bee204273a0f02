#include "platform/x11/X11ScreenSaverSuspension.h"

#include <xcb/screensaver.h>

#include <cstdlib>
#include <memory>

namespace platform::x11 {

namespace {

// Suspension came with version 1.1 of the extension.
bool serverCanSuspend(xcb_connection_t* connection) {
    const auto* extension = xcb_get_extension_data(connection, &xcb_screensaver_id);
    if (!extension || !extension->present)
        return false;
    std::unique_ptr<xcb_screensaver_query_version_reply_t, decltype(&std::free)> version(
        xcb_screensaver_query_version_reply(
            connection, xcb_screensaver_query_version(connection, 1, 1), nullptr),
        &std::free);
    return version && (version->server_major_version > 1 ||
                       (version->server_major_version == 1 && version->server_minor_version >= 1));
}

}  // namespace

X11ScreenSaverSuspension::X11ScreenSaverSuspension(xcb_connection_t* connection)
    : connection_(connection), supported_(serverCanSuspend(connection)) {}

std::optional<PowerManagement::AssertionID> X11ScreenSaverSuspension::assertionCreateWithName(
    const std::string&) {
    std::lock_guard lock(mutex_);
    if (!supported_)
        return std::nullopt;
    if (held_.empty() && !suspend(true))
        return std::nullopt;
    held_.insert(++lastID_);
    return lastID_;
}

void X11ScreenSaverSuspension::assertionRelease(AssertionID assertion) {
    std::lock_guard lock(mutex_);
    if (held_.erase(assertion) == 1 && held_.empty())
        suspend(false);
}

// Checked, so that a refusal is known before the assertion is reported as
// held. A display already blanked is lit again when the suspension starts.
bool X11ScreenSaverSuspension::suspend(bool on) {
    auto* error =
        xcb_request_check(connection_, xcb_screensaver_suspend_checked(connection_, on ? 1 : 0));
    if (error) {
        std::free(error);
        return false;
    }
    if (on)
        xcb_force_screen_saver(connection_, XCB_SCREEN_SAVER_RESET);
    xcb_flush(connection_);
    return true;
}

}  // namespace platform::x11
