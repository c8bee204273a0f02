#pragma once

// Drives the test display as a person would (keys and pointer through the
// server's test extension) and reads back what the server shows.
#include <sys/types.h>
#include <xcb/xcb.h>
#include <xcb/xtest.h>

#include <cstdlib>
#include <cstring>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace e2e {

// Key codes of the evdev keymap the test server uses.
constexpr xcb_keycode_t controlKey = 37, altKey = 64, shiftKey = 50, escapeKey = 9;

struct Geometry {
    int x = 0, y = 0, width = 0, height = 0;
};

class Desktop {
  public:
    Desktop() : connection_(xcb_connect(nullptr, nullptr)) {
        root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    }
    ~Desktop() { xcb_disconnect(connection_); }

    void key(xcb_keycode_t code, bool down) {
        xcb_test_fake_input(connection_, down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, code,
                            XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
        sync();
    }
    void movePointer(int x, int y) {
        xcb_test_fake_input(connection_, XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, root_,
                            static_cast<int16_t>(x), static_cast<int16_t>(y), 0);
        sync();
    }
    void pressChord() {
        for (auto code : {controlKey, altKey, shiftKey})
            key(code, true);
        for (auto code : {shiftKey, altKey, controlKey})
            key(code, false);
    }

    // Asks the window manager to activate the process's first managed
    // window, as a pager would.
    bool activateWindowOf(pid_t pid) {
        auto clients = property(root_, "_NET_CLIENT_LIST", XCB_ATOM_WINDOW, 1024);
        for (auto window : clients) {
            auto owner = property(window, "_NET_WM_PID", XCB_ATOM_CARDINAL);
            if (owner.empty() || static_cast<pid_t>(owner[0]) != pid)
                continue;
            xcb_client_message_event_t message{};
            message.response_type = XCB_CLIENT_MESSAGE;
            message.format = 32;
            message.window = window;
            message.type = atom("_NET_ACTIVE_WINDOW");
            message.data.data32[0] = 2;  // from a pager
            xcb_send_event(
                connection_, 0, root_,
                XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                reinterpret_cast<const char*>(&message));
            sync();
            return true;
        }
        return false;
    }

    pid_t activeProcess() {
        auto owner = property(activeWindow(), "_NET_WM_PID", XCB_ATOM_CARDINAL);
        return owner.empty() ? -1 : static_cast<pid_t>(owner[0]);
    }

    xcb_window_t activeWindow() {
        auto value = property(root_, "_NET_ACTIVE_WINDOW", XCB_ATOM_WINDOW);
        return value.empty() ? XCB_NONE : value[0];
    }

    // The client window of the panel while it is shown.
    std::optional<xcb_window_t> panelClient(pid_t pid) {
        auto tree = xcb_query_tree_reply(connection_, xcb_query_tree(connection_, root_), nullptr);
        std::optional<xcb_window_t> found;
        for (int i = 0; tree && i < xcb_query_tree_children_length(tree) && !found; ++i) {
            const auto frame = xcb_query_tree_children(tree)[i];
            auto inner =
                xcb_query_tree_reply(connection_, xcb_query_tree(connection_, frame), nullptr);
            for (int j = 0; inner && j < xcb_query_tree_children_length(inner) && !found; ++j) {
                const auto child = xcb_query_tree_children(inner)[j];
                if (isOurPanel(child, pid))
                    found = child;
            }
            std::free(inner);
        }
        std::free(tree);
        return found;
    }

    // Reports the window's mapping and unmapping from now on.
    void watchMapping(xcb_window_t window) {
        const uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
        xcb_change_window_attributes(connection_, window, XCB_CW_EVENT_MASK, &mask);
        sync();
    }

    // Waits for the window to be mapped (or unmapped); false when the time
    // ran out.
    bool waitForMapping(xcb_window_t window, bool mapped, double seconds);

    // The viewable top-level window named "Tarnwick" of the process, with its
    // decorated frame in root coordinates.
    std::optional<Geometry> shownPanel(pid_t pid) {
        auto tree = xcb_query_tree_reply(connection_, xcb_query_tree(connection_, root_), nullptr);
        std::optional<Geometry> found;
        if (!tree)
            return found;
        const auto* children = xcb_query_tree_children(tree);
        for (int i = 0; i < xcb_query_tree_children_length(tree) && !found; ++i) {
            found = panelUnder(children[i], pid);
        }
        std::free(tree);
        return found;
    }

  private:
    std::optional<Geometry> panelUnder(xcb_window_t frame, pid_t pid) {
        auto tree = xcb_query_tree_reply(connection_, xcb_query_tree(connection_, frame), nullptr);
        std::optional<Geometry> found;
        if (isOurPanel(frame, pid))
            found = geometry(frame);
        for (int i = 0; tree && i < xcb_query_tree_children_length(tree) && !found; ++i) {
            const auto child = xcb_query_tree_children(tree)[i];
            if (isOurPanel(child, pid))
                found = geometry(frame);
        }
        std::free(tree);
        return found;
    }

    bool isOurPanel(xcb_window_t window, pid_t pid) {
        auto attributes = xcb_get_window_attributes_reply(
            connection_, xcb_get_window_attributes(connection_, window), nullptr);
        const bool viewable = attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
        std::free(attributes);
        if (!viewable)
            return false;
        auto owner = property(window, "_NET_WM_PID", XCB_ATOM_CARDINAL);
        return !owner.empty() && static_cast<pid_t>(owner[0]) == pid && title(window) == "Tarnwick";
    }

    Geometry geometry(xcb_window_t window) {
        Geometry result;
        auto g =
            xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, window), nullptr);
        auto t = xcb_translate_coordinates_reply(
            connection_, xcb_translate_coordinates(connection_, window, root_, 0, 0), nullptr);
        if (g && t)
            result = {t->dst_x, t->dst_y, g->width, g->height};
        std::free(g);
        std::free(t);
        return result;
    }

    std::string title(xcb_window_t window) {
        auto reply = xcb_get_property_reply(
            connection_,
            xcb_get_property(connection_, 0, window, XCB_ATOM_WM_NAME, XCB_ATOM_ANY, 0, 256),
            nullptr);
        std::string text;
        if (reply) {
            text.assign(static_cast<const char*>(xcb_get_property_value(reply)),
                        static_cast<std::size_t>(xcb_get_property_value_length(reply)));
        }
        std::free(reply);
        return text;
    }

    xcb_atom_t atom(const char* name) {
        auto reply = xcb_intern_atom_reply(
            connection_, xcb_intern_atom(connection_, 0, std::strlen(name), name), nullptr);
        const xcb_atom_t result = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
        std::free(reply);
        return result;
    }

    std::vector<uint32_t> property(xcb_window_t window, const char* name, xcb_atom_t type,
                                   uint32_t length = 1) {
        auto reply = xcb_get_property_reply(
            connection_, xcb_get_property(connection_, 0, window, atom(name), type, 0, length),
            nullptr);
        std::vector<uint32_t> values;
        if (reply) {
            const auto* data = static_cast<const uint32_t*>(xcb_get_property_value(reply));
            values.assign(data, data + xcb_get_property_value_length(reply) / 4);
        }
        std::free(reply);
        return values;
    }

    void sync() {
        std::free(
            xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    }

    xcb_connection_t* connection_;
    xcb_window_t root_ = XCB_NONE;
};

// Polls the condition until it holds or the time runs out.
bool eventually(const std::function<bool()>& condition, double seconds = 5);

}  // namespace e2e
