#pragma once

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace x11test {

// Environment variables changed for a scope and put back after it, last
// change first.
class ScopedEnvironment {
  public:
    ScopedEnvironment() = default;
    ~ScopedEnvironment() {
        for (auto it = saved_.rbegin(); it != saved_.rend(); ++it) {
            if (it->second)
                ::setenv(it->first.c_str(), it->second->c_str(), 1);
            else
                ::unsetenv(it->first.c_str());
        }
    }
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

    void set(const std::string& name, const std::string& value) {
        const char* before = std::getenv(name.c_str());
        saved_.emplace_back(name, before ? std::optional<std::string>(before) : std::nullopt);
        ::setenv(name.c_str(), value.c_str(), 1);
    }

  private:
    std::vector<std::pair<std::string, std::optional<std::string>>> saved_;
};

// The managed windows as the X server and the window manager publish them,
// read on a connection of its own, apart from the backend under test.
class ServerView {
  public:
    explicit ServerView(const std::string& display)
        : connection_(xcb_connect(display.c_str(), nullptr)) {
        if (!xcb_connection_has_error(connection_))
            root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    }
    ~ServerView() { xcb_disconnect(connection_); }
    ServerView(const ServerView&) = delete;
    ServerView& operator=(const ServerView&) = delete;

    // An EWMH window manager has announced itself.
    bool hasWindowManager() { return !words(root_, "_NET_SUPPORTING_WM_CHECK").empty(); }

    // The managed window of this title; XCB_NONE while there is none.
    xcb_window_t clientTitled(const std::string& title) {
        for (const auto window : words(root_, "_NET_CLIENT_LIST")) {
            if (titleOf(window) == title)
                return window;
        }
        return XCB_NONE;
    }
    bool isManaged(xcb_window_t window) {
        const auto clients = words(root_, "_NET_CLIENT_LIST");
        return std::find(clients.begin(), clients.end(), window) != clients.end();
    }
    xcb_window_t activeWindow() {
        const auto active = words(root_, "_NET_ACTIVE_WINDOW");
        return active.empty() ? XCB_NONE : active.front();
    }
    // Whether the window's _NET_WM_STATE holds the state, such as
    // "_NET_WM_STATE_HIDDEN".
    bool hasState(xcb_window_t window, const char* state) {
        const auto states = words(window, "_NET_WM_STATE");
        return std::find(states.begin(), states.end(), atom(state)) != states.end();
    }

  private:
    xcb_atom_t atom(const char* name) {
        const auto length = static_cast<uint16_t>(std::strlen(name));
        auto* reply =
            xcb_intern_atom_reply(connection_, xcb_intern_atom(connection_, 0, length, name), {});
        const xcb_atom_t found = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
        std::free(reply);
        return found;
    }
    // The property's bytes, whatever its type; empty when it is missing.
    std::string bytes(xcb_window_t window, xcb_atom_t property) {
        const auto cookie =
            xcb_get_property(connection_, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, 4096);
        auto* reply = xcb_get_property_reply(connection_, cookie, nullptr);
        std::string value;
        if (reply) {
            value.assign(static_cast<const char*>(xcb_get_property_value(reply)),
                         static_cast<std::size_t>(xcb_get_property_value_length(reply)));
        }
        std::free(reply);
        return value;
    }
    // A property of 32-bit items: windows, atoms, cardinals.
    std::vector<uint32_t> words(xcb_window_t window, const char* property) {
        const auto value = bytes(window, atom(property));
        std::vector<uint32_t> items(value.size() / sizeof(uint32_t));
        std::memcpy(items.data(), value.data(), items.size() * sizeof(uint32_t));
        return items;
    }
    std::string titleOf(xcb_window_t window) {
        auto title = bytes(window, atom("_NET_WM_NAME"));
        return title.empty() ? bytes(window, XCB_ATOM_WM_NAME) : title;
    }

    xcb_connection_t* connection_;
    xcb_window_t root_ = XCB_NONE;
};

}  // namespace x11test
