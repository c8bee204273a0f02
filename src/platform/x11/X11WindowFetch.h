#pragma once

#include <sys/types.h>
#include <xcb/res.h>
#include <xcb/xcb.h>

#include <array>
#include <optional>

#include "platform/x11/X11Connection.h"
#include "platform/x11/X11WindowState.h"

namespace platform::x11 {

// The client properties the backend mirrors.
enum class X11WindowProperty {
    claimedPid,
    netName,
    wmName,
    types,
    state,
    allowedActions,
    frameExtents,
};
inline constexpr std::size_t x11WindowPropertyCount = 7;

// The mirrored property an atom names, if any.
std::optional<X11WindowProperty> x11WindowPropertyNamed(X11Connection& connection, xcb_atom_t atom);

// Asks the server which process's connection made the window; the answer
// is read with x11ConnectionPidOf, 0 when the server doesn't say.
xcb_res_query_client_ids_cookie_t askX11ConnectionPid(xcb_connection_t* connection,
                                                      xcb_window_t window);
pid_t x11ConnectionPidOf(const xcb_res_query_client_ids_reply_t* reply);

// Reads one property afresh into the state. False when the window is gone.
bool readX11WindowProperty(X11Connection& connection, xcb_window_t window,
                           X11WindowProperty property, X11WindowState& state);
// Reads the client area's place in root coordinates. False when the window
// is gone.
bool readX11WindowOrigin(X11Connection& connection, xcb_window_t window, X11WindowState& state);
// Reads the client area's size. False when the window is gone.
bool readX11WindowSize(X11Connection& connection, xcb_window_t window, X11WindowState& state);

// Reads a window's whole state in one batch: every request goes out before
// the first reply is awaited, so that loading many windows costs one round
// trip, not one per property. A window that vanished on the way yields
// nothing; its errors are taken from the replies and never escape.
class X11WindowFetch {
  public:
    // askOwner: whether the server's resource extension may be asked for
    // the process behind the window's connection.
    X11WindowFetch(X11Connection& connection, xcb_window_t window, bool askOwner);
    X11WindowFetch(const X11WindowFetch&) = delete;
    X11WindowFetch& operator=(const X11WindowFetch&) = delete;
    X11WindowFetch(X11WindowFetch&& other) noexcept;
    X11WindowFetch& operator=(X11WindowFetch&&) = delete;
    // Replies never collected are discarded, so that none piles up.
    ~X11WindowFetch();

    xcb_window_t window() const { return window_; }
    std::optional<X11WindowState> receive();

  private:
    void discard();

    X11Connection* connection_;
    xcb_window_t window_;
    bool pending_ = true;
    bool askOwner_;
    std::array<xcb_get_property_cookie_t, x11WindowPropertyCount> properties_{};
    xcb_get_geometry_cookie_t geometry_{};
    xcb_translate_coordinates_cookie_t origin_{};
    xcb_res_query_client_ids_cookie_t owner_{};
};

}  // namespace platform::x11
