#pragma once

#include <xcb/xcb.h>
#include <xcb/xcb_ewmh.h>

#include <memory>
#include <optional>
#include <string>

namespace platform::x11 {

// One connection to the X server, with the EWMH atoms ready. Everything in
// the backend talks to the server through it.
class X11Connection {
public:
    // Nothing when the display can't be opened.
    static std::unique_ptr<X11Connection> open(const char* displayName = nullptr);
    ~X11Connection();
    X11Connection(const X11Connection&) = delete;
    X11Connection& operator=(const X11Connection&) = delete;

    xcb_connection_t* connection() const { return connection_; }
    xcb_screen_t* screen() const { return screen_; }
    xcb_window_t root() const { return screen_->root; }
    xcb_ewmh_connection_t& ewmh() { return ewmh_; }
    int screenNumber() const { return screenNumber_; }
    int fileDescriptor() const { return xcb_get_file_descriptor(connection_); }

    // The name the window manager gives itself, when an EWMH window manager
    // runs.
    std::optional<std::string> windowManagerName();

    xcb_atom_t atom(const std::string& name);

private:
    X11Connection(xcb_connection_t* connection, int screenNumber);

    xcb_connection_t* connection_;
    xcb_screen_t* screen_ = nullptr;
    int screenNumber_;
    xcb_ewmh_connection_t ewmh_{};
};

}  // namespace platform::x11
