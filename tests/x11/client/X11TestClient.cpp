// A scriptable X client for the tests. It reads one command a line on its
// standard input and answers each with one line on its standard output,
// "ok ..." or "error ...":
//
//   create NAME [TITLE...]   a mapped top-level window; answers its id
//   title NAME TITLE...      sets both of its names
//   move NAME X Y            asks for a new place
//   pid NAME PID             sets its _NET_WM_PID
//   destroy NAME
//   churn SECONDS            creates and destroys windows as fast as it can
//   class INSTANCE CLASS     the WM_CLASS of the windows created from now on
//   appid ID                 their _GTK_APPLICATION_ID ("-": none)
//   kind KIND                what they are: normal, dock, desktop, skip-taskbar
//
// Windows close themselves when the window manager asks them to. None takes
// the focus when it appears, so tests running side by side don't disturb
// each other's active window.
#include <poll.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <iostream>
#include <map>
#include <sstream>
#include <string>

namespace {

struct Atoms {
    xcb_atom_t netWmName, utf8String, netWmPid, netWmUserTime, wmProtocols, wmDeleteWindow;
    xcb_atom_t applicationId, windowType, dockType, desktopType, netWmState, skipTaskbar;
};

// What the windows created next say of themselves.
struct WindowTraits {
    std::string instanceName, className, applicationId;
    std::string kind = "normal";
};

xcb_atom_t intern(xcb_connection_t* connection, const char* name) {
    auto* reply = xcb_intern_atom_reply(
        connection, xcb_intern_atom(connection, 0, static_cast<uint16_t>(std::strlen(name)), name),
        nullptr);
    const xcb_atom_t atom = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    std::free(reply);
    return atom;
}

class Client {
  public:
    Client(xcb_connection_t* connection, xcb_screen_t* screen)
        : connection_(connection), screen_(screen) {
        atoms_ = {intern(connection, "_NET_WM_NAME"),
                  intern(connection, "UTF8_STRING"),
                  intern(connection, "_NET_WM_PID"),
                  intern(connection, "_NET_WM_USER_TIME"),
                  intern(connection, "WM_PROTOCOLS"),
                  intern(connection, "WM_DELETE_WINDOW"),
                  intern(connection, "_GTK_APPLICATION_ID"),
                  intern(connection, "_NET_WM_WINDOW_TYPE"),
                  intern(connection, "_NET_WM_WINDOW_TYPE_DOCK"),
                  intern(connection, "_NET_WM_WINDOW_TYPE_DESKTOP"),
                  intern(connection, "_NET_WM_STATE"),
                  intern(connection, "_NET_WM_STATE_SKIP_TASKBAR")};
    }

    std::string run(const std::string& line) {
        std::istringstream in(line);
        std::string command, name;
        in >> command >> name;
        std::string rest;
        std::getline(in >> std::ws, rest);
        if (command == "create")
            return "ok " + hex(create(name, rest));
        if (command == "churn")
            return "ok " + std::to_string(churn(std::atof(name.c_str())));
        if (command == "class") {
            traits_.instanceName = name;
            traits_.className = rest;
            return "ok";
        }
        if (command == "appid") {
            traits_.applicationId = name == "-" ? "" : name;
            return "ok";
        }
        if (command == "kind") {
            traits_.kind = name;
            return "ok";
        }
        auto it = windows_.find(name);
        if (it == windows_.end())
            return "error no window " + name;
        const xcb_window_t window = it->second;
        if (command == "title") {
            setTitle(window, rest);
        } else if (command == "move") {
            std::istringstream place(rest);
            int32_t x = 0, y = 0;
            place >> x >> y;
            const uint32_t values[] = {static_cast<uint32_t>(x), static_cast<uint32_t>(y)};
            xcb_configure_window(connection_, window, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y,
                                 values);
        } else if (command == "pid") {
            const uint32_t pid = static_cast<uint32_t>(std::atol(rest.c_str()));
            setCardinal(window, atoms_.netWmPid, pid);
        } else if (command == "destroy") {
            xcb_destroy_window(connection_, window);
            windows_.erase(it);
        } else {
            return "error unknown command " + command;
        }
        return sync();
    }

    // Answers the window manager's requests to close a window.
    void handleEvents() {
        while (auto* event = xcb_poll_for_event(connection_)) {
            if ((event->response_type & 0x7F) == XCB_REPARENT_NOTIFY) {
                managed_.emplace(reinterpret_cast<xcb_reparent_notify_event_t*>(event)->window,
                                 std::chrono::steady_clock::now());
            }
            if ((event->response_type & 0x7F) == XCB_CLIENT_MESSAGE) {
                auto* message = reinterpret_cast<xcb_client_message_event_t*>(event);
                if (message->type == atoms_.wmProtocols &&
                    message->data.data32[0] == atoms_.wmDeleteWindow) {
                    close(message->window);
                }
            }
            std::free(event);
        }
        xcb_flush(connection_);
    }

  private:
    static std::string hex(xcb_window_t window) {
        char text[16];
        std::snprintf(text, sizeof text, "0x%x", window);
        return text;
    }

    std::string sync() {
        std::free(
            xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
        return "ok";
    }

    xcb_window_t create(const std::string& name, const std::string& title) {
        const xcb_window_t window = xcb_generate_id(connection_);
        const uint32_t values[] = {screen_->white_pixel, XCB_EVENT_MASK_STRUCTURE_NOTIFY};
        xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, screen_->root, 100, 100, 240,
                          160, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, screen_->root_visual,
                          XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values);
        setTitle(window, title.empty() ? name : title);
        setCardinal(window, atoms_.netWmUserTime, 0);
        xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atoms_.wmProtocols,
                            XCB_ATOM_ATOM, 32, 1, &atoms_.wmDeleteWindow);
        applyTraits(window);
        xcb_map_window(connection_, window);
        if (!name.empty())
            windows_[name] = window;
        sync();
        return window;
    }

    void applyTraits(xcb_window_t window) {
        if (!traits_.className.empty()) {
            // Two strings, each ending in a zero byte.
            const std::string value = traits_.instanceName + '\0' + traits_.className + '\0';
            xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS,
                                XCB_ATOM_STRING, 8, static_cast<uint32_t>(value.size()),
                                value.data());
        }
        if (!traits_.applicationId.empty()) {
            xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atoms_.applicationId,
                                atoms_.utf8String, 8,
                                static_cast<uint32_t>(traits_.applicationId.size()),
                                traits_.applicationId.data());
        }
        const xcb_atom_t type = traits_.kind == "dock"      ? atoms_.dockType
                                : traits_.kind == "desktop" ? atoms_.desktopType
                                                            : xcb_atom_t{XCB_ATOM_NONE};
        if (type != XCB_ATOM_NONE) {
            xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atoms_.windowType,
                                XCB_ATOM_ATOM, 32, 1, &type);
        }
        if (traits_.kind == "skip-taskbar") {
            xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atoms_.netWmState,
                                XCB_ATOM_ATOM, 32, 1, &atoms_.skipTaskbar);
        }
    }

    void setTitle(xcb_window_t window, const std::string& title) {
        const auto length = static_cast<uint32_t>(title.size());
        xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, atoms_.netWmName,
                            atoms_.utf8String, 8, length, title.data());
        xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME,
                            XCB_ATOM_STRING, 8, length, title.data());
    }

    void setCardinal(xcb_window_t window, xcb_atom_t property, uint32_t value) {
        xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, property, XCB_ATOM_CARDINAL,
                            32, 1, &value);
    }

    void close(xcb_window_t window) {
        for (auto it = windows_.begin(); it != windows_.end(); ++it) {
            if (it->second == window) {
                windows_.erase(it);
                break;
            }
        }
        xcb_destroy_window(connection_, window);
    }

    // Whether the window manager took the window on at least this long ago.
    bool lived(xcb_window_t window, std::chrono::steady_clock::duration time) const {
        auto it = managed_.find(window);
        return it != managed_.end() && std::chrono::steady_clock::now() - it->second >= time;
    }

    // Keeps a handful of windows alive and replaces the oldest soon after
    // the window manager has taken it on (or given up on it), so that the
    // churn goes as fast as the window manager can follow and each window
    // is seen managed for a moment.
    long churn(double seconds) {
        using Clock = std::chrono::steady_clock;
        const auto deadline = Clock::now() + std::chrono::duration<double>(seconds);
        std::deque<std::pair<xcb_window_t, Clock::time_point>> alive;
        long created = 0;
        const uint32_t pid = static_cast<uint32_t>(getpid());
        while (Clock::now() < deadline) {
            if (alive.size() < 16) {
                const xcb_window_t window = create("", "churn " + std::to_string(created));
                if (created % 2 == 0)
                    setCardinal(window, atoms_.netWmPid, pid);
                alive.emplace_back(window, Clock::now());
                ++created;
            } else if (lived(alive.front().first, std::chrono::milliseconds(20)) ||
                       Clock::now() - alive.front().second > std::chrono::milliseconds(500)) {
                managed_.erase(alive.front().first);
                xcb_destroy_window(connection_, alive.front().first);
                alive.pop_front();
            } else {
                pollfd fd{xcb_get_file_descriptor(connection_), POLLIN, 0};
                ::poll(&fd, 1, 5);
            }
            handleEvents();
        }
        for (const auto& entry : alive)
            xcb_destroy_window(connection_, entry.first);
        managed_.clear();
        sync();
        return created;
    }

    xcb_connection_t* connection_;
    xcb_screen_t* screen_;
    Atoms atoms_{};
    WindowTraits traits_;
    std::map<std::string, xcb_window_t> windows_;
    // When each window was reparented into a frame.
    std::map<xcb_window_t, std::chrono::steady_clock::time_point> managed_;
};

}  // namespace

int main() {
    int screenNumber = 0;
    xcb_connection_t* connection = xcb_connect(nullptr, &screenNumber);
    if (xcb_connection_has_error(connection)) {
        std::fprintf(stderr, "x11_test_client: cannot open the display\n");
        return 1;
    }
    auto roots = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (int i = 0; i < screenNumber; ++i)
        xcb_screen_next(&roots);
    Client client(connection, roots.data);

    std::cout << "ready" << std::endl;
    // Commands are read straight from the descriptor, so that poll() sees
    // every line that has not been handled yet.
    std::string pending;
    pollfd fds[2] = {{STDIN_FILENO, POLLIN, 0}, {xcb_get_file_descriptor(connection), POLLIN, 0}};
    for (;;) {
        client.handleEvents();
        if (::poll(fds, 2, -1) < 0)
            break;
        if (fds[1].revents)
            client.handleEvents();
        if (!fds[0].revents)
            continue;
        char buffer[4096];
        const ssize_t count = ::read(STDIN_FILENO, buffer, sizeof buffer);
        if (count <= 0)
            break;
        pending.append(buffer, static_cast<std::size_t>(count));
        for (auto end = pending.find('\n'); end != std::string::npos; end = pending.find('\n')) {
            const std::string line = pending.substr(0, end);
            pending.erase(0, end + 1);
            std::cout << client.run(line) << std::endl;
        }
    }
    xcb_disconnect(connection);
    return 0;
}
