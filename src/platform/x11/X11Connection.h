#pragma once

#include <xcb/xcb.h>
#include <xcb/xcb_ewmh.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <type_traits>

namespace platform::x11 {

// What the server sends back, a reply or an error, as xcb hands it over:
// allocated for the caller, who frees it. Every reply and error is held in
// one of these, never freed by hand.
struct XcbFree {
    void operator()(void* pointer) const { std::free(pointer); }
};
template <typename T>
using Reply = std::unique_ptr<T, XcbFree>;
using ErrorReply = Reply<xcb_generic_error_t>;

// Waits for the reply to a request, e.g.
//   awaitReply(c, xcb_get_geometry_reply, xcb_get_geometry(c, window))
// Null when the server answered with an error (a vanished window, say),
// which is dropped; pass `error` to keep it.
template <typename Receive, typename Cookie>
auto awaitReply(xcb_connection_t* connection, Receive receive, Cookie cookie,
                ErrorReply* error = nullptr) {
    xcb_generic_error_t* raw = nullptr;
    auto* answer = receive(connection, cookie, &raw);
    ErrorReply owned(raw);
    if (error)
        *error = std::move(owned);
    return Reply<std::remove_pointer_t<decltype(answer)>>(answer);
}

// Whether a checked request failed; its error, if any, is dropped.
inline bool failed(xcb_connection_t* connection, xcb_void_cookie_t cookie) {
    return ErrorReply(xcb_request_check(connection, cookie)) != nullptr;
}

// The atom with the name; XCB_ATOM_NONE when the server doesn't answer.
xcb_atom_t internAtom(xcb_connection_t* connection, std::string_view name);
// The atoms with the names, in their order, asked for together: one round
// trip for all of them.
template <std::size_t N>
std::array<xcb_atom_t, N> internAtoms(xcb_connection_t* connection,
                                      const std::array<std::string_view, N>& names) {
    std::array<xcb_intern_atom_cookie_t, N> cookies{};
    for (std::size_t i = 0; i < N; ++i) {
        cookies[i] = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(names[i].size()),
                                     names[i].data());
    }
    std::array<xcb_atom_t, N> atoms{};
    for (std::size_t i = 0; i < N; ++i) {
        const auto answer = awaitReply(connection, xcb_intern_atom_reply, cookies[i]);
        atoms[i] = answer ? answer->atom : xcb_atom_t{XCB_ATOM_NONE};
    }
    return atoms;
}

// Sends a client message to the window manager through the root window of
// the connection's first screen, as EWMH and ICCCM requests go.
void sendToWindowManager(xcb_connection_t* connection, xcb_window_t root,
                         const xcb_client_message_event_t& message);

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

    xcb_atom_t atom(std::string_view name) { return internAtom(connection_, name); }
    void sendToWindowManager(const xcb_client_message_event_t& message) {
        x11::sendToWindowManager(connection_, root(), message);
    }

  private:
    X11Connection(xcb_connection_t* connection, int screenNumber);

    xcb_connection_t* connection_;
    xcb_screen_t* screen_ = nullptr;
    int screenNumber_;
    xcb_ewmh_connection_t ewmh_{};
};

}  // namespace platform::x11
