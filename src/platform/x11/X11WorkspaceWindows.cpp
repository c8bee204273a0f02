// What the workspace reads of windows to tell which application they show.
#include <xcb/xcb_icccm.h>

#include <algorithm>

#include "platform/x11/X11Workspace.h"

namespace platform::x11 {

std::optional<xdg::WindowIdentity> X11Workspace::windowIdentityOf(xcb_window_t window) {
    xcb_connection_t* connection = input_.xcb();
    // Both questions go out before either answer is awaited.
    const auto classCookie = xcb_icccm_get_wm_class(connection, window);
    const auto applicationIdCookie =
        xcb_icccm_get_text_property(connection, window, applicationIdAtom_);
    xcb_icccm_get_wm_class_reply_t reply{};
    // A window gone in the meantime answers with errors: nothing.
    const bool found = xcb_icccm_get_wm_class_reply(connection, classCookie, &reply, nullptr);
    xcb_icccm_get_text_property_reply_t applicationId{};
    const bool hasApplicationId =
        xcb_icccm_get_text_property_reply(connection, applicationIdCookie, &applicationId, nullptr);
    // Waiting for the replies may have taken events in that the descriptor
    // won't tell of.
    input_.dispatchSoon();
    std::string id;
    if (hasApplicationId) {
        id.assign(applicationId.name, applicationId.name_len);
        xcb_icccm_get_text_property_reply_wipe(&applicationId);
    }
    if (!found)
        return id.empty() ? std::nullopt : std::optional(xdg::WindowIdentity{{}, {}, id});
    xdg::WindowIdentity identity{reply.instance_name ? reply.instance_name : "",
                                 reply.class_name ? reply.class_name : "", std::move(id)};
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
