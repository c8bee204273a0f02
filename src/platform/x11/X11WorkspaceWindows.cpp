// What the workspace reads of windows to tell which application they show.
#include <xcb/xcb_icccm.h>

#include <algorithm>

#include "platform/x11/X11Workspace.h"

namespace platform::x11 {

namespace {

std::string textOf(const xcb_get_property_reply_t* reply) {
    if (!reply || reply->format != 8)
        return {};
    const auto* data = static_cast<const char*>(
        xcb_get_property_value(const_cast<xcb_get_property_reply_t*>(reply)));
    std::string text(data, static_cast<std::size_t>(xcb_get_property_value_length(reply)));
    while (!text.empty() && text.back() == '\0')
        text.pop_back();
    return text;
}

}  // namespace

std::optional<xdg::WindowIdentity> X11Workspace::windowIdentityOf(xcb_window_t window) {
    xcb_connection_t* connection = input_.xcb();
    // Both questions go out before either answer is awaited.
    const auto classCookie = xcb_icccm_get_wm_class(connection, window);
    const auto applicationIdCookie = xcb_get_property(connection, 0, window, applicationIdAtom_,
                                                      XCB_GET_PROPERTY_TYPE_ANY, 0, 256);
    xcb_icccm_get_wm_class_reply_t reply{};
    // A window gone in the meantime answers with an error: no class.
    const bool found = xcb_icccm_get_wm_class_reply(connection, classCookie, &reply, nullptr);
    const auto applicationId = awaitReply(connection, xcb_get_property_reply, applicationIdCookie);
    // Waiting for the replies may have taken events in that the descriptor
    // won't tell of.
    input_.dispatchSoon();
    if (!found)
        return std::nullopt;
    xdg::WindowIdentity identity{reply.instance_name ? reply.instance_name : "",
                                 reply.class_name ? reply.class_name : "",
                                 textOf(applicationId.get())};
    xcb_icccm_get_wm_class_reply_wipe(&reply);
    return identity;
}

bool X11Workspace::isAccessoryWindow(const X11WindowState& state) {
    auto& ewmh = input_.connection().ewmh();
    return state.skipTaskbar || std::any_of(state.types.begin(), state.types.end(), [&](auto type) {
               return type == ewmh._NET_WM_WINDOW_TYPE_DOCK ||
                      type == ewmh._NET_WM_WINDOW_TYPE_DESKTOP;
           });
}

bool X11Workspace::showsOnlyAccessoryWindows(pid_t pid, const X11WindowState* state) {
    const auto& mirror = accessibility_.windowMirror();
    bool any = false;
    const auto accessory = [&](const X11WindowState& window) {
        any = true;
        return isAccessoryWindow(window);
    };
    if (state && !accessory(*state))
        return false;
    for (const auto window : mirror.clientList()) {
        const auto* known = mirror.window(window);
        if (known && known != state && known->processPid() == pid && !accessory(*known))
            return false;
    }
    return any;
}

}  // namespace platform::x11
