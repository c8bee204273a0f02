#include "DesktopDriver.h"

#include <poll.h>
#include <xcb/xtest.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <thread>

namespace e2e {

namespace {

// Replies of xcb are malloc'd.
template <typename Reply>
using Owned = std::unique_ptr<Reply, decltype(&std::free)>;

template <typename Reply>
Owned<Reply> own(Reply* reply) {
    return Owned<Reply>(reply, &std::free);
}

}  // namespace

bool eventually(const std::function<bool()>& condition, double seconds) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    while (std::chrono::steady_clock::now() < deadline) {
        if (condition())
            return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return condition();
}

xcb_generic_event_t* nextEvent(xcb_connection_t* connection,
                               std::chrono::steady_clock::time_point deadline) {
    for (;;) {
        if (auto* event = xcb_poll_for_event(connection))
            return event;
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now());
        if (left.count() <= 0 || xcb_connection_has_error(connection))
            return nullptr;
        pollfd socket{xcb_get_file_descriptor(connection), POLLIN, 0};
        ::poll(&socket, 1, static_cast<int>(left.count()) + 1);
    }
}

Desktop::Desktop() : connection_(xcb_connect(nullptr, nullptr)) {
    root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
}

Desktop::~Desktop() {
    xcb_disconnect(connection_);
}

void Desktop::key(xcb_keycode_t code, bool down) {
    xcb_test_fake_input(connection_, down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, code, XCB_CURRENT_TIME,
                        XCB_NONE, 0, 0, 0);
    sync();
}

void Desktop::tap(xcb_keycode_t code) {
    key(code, true);
    key(code, false);
}

void Desktop::movePointer(int x, int y) {
    xcb_test_fake_input(connection_, XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, root_,
                        static_cast<int16_t>(x), static_cast<int16_t>(y), 0);
    sync();
}

void Desktop::pressAndRelease(std::uint8_t button) {
    for (const auto type : {XCB_BUTTON_PRESS, XCB_BUTTON_RELEASE}) {
        xcb_test_fake_input(connection_, static_cast<uint8_t>(type), button, XCB_CURRENT_TIME,
                            XCB_NONE, 0, 0, 0);
        sync();
    }
}

void Desktop::click(Point point) {
    movePointer(point.x, point.y);
    pressAndRelease(1);
}

// The X server's buttons 4 and 5 are the wheel turned up and down.
void Desktop::turnWheel(Point point, int steps) {
    movePointer(point.x, point.y);
    for (int step = 0; step < std::abs(steps); ++step)
        pressAndRelease(steps > 0 ? 5 : 4);
}

void Desktop::pressChord() {
    for (auto code : {controlKey, altKey, shiftKey})
        key(code, true);
    for (auto code : {shiftKey, altKey, controlKey})
        key(code, false);
}

void Desktop::activate(xcb_window_t window) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atom("_NET_ACTIVE_WINDOW");
    message.data.data32[0] = 2;  // from a pager
    xcb_send_event(connection_, 0, root_,
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
    sync();
}

bool Desktop::activateWindowOf(pid_t pid) {
    const auto windows = clientWindowsOf(pid);
    if (windows.empty())
        return false;
    activate(windows.front().id);
    return true;
}

bool Desktop::windowManagerRuns() {
    return !property(root_, "_NET_SUPPORTING_WM_CHECK", XCB_ATOM_WINDOW).empty();
}

bool Desktop::keyboardIsGrabbed() {
    const auto cookie = xcb_grab_keyboard(connection_, 0, root_, XCB_CURRENT_TIME,
                                          XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    auto* reply = xcb_grab_keyboard_reply(connection_, cookie, nullptr);
    const bool ours = reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
    const bool grabbed = reply && reply->status == XCB_GRAB_STATUS_ALREADY_GRABBED;
    std::free(reply);
    if (ours) {
        xcb_ungrab_keyboard(connection_, XCB_CURRENT_TIME);
        xcb_flush(connection_);
    }
    return grabbed;
}

pid_t Desktop::activeProcess() {
    return ownerOf(activeWindow());
}

xcb_window_t Desktop::activeWindow() {
    auto value = property(root_, "_NET_ACTIVE_WINDOW", XCB_ATOM_WINDOW);
    return value.empty() ? XCB_NONE : value[0];
}

std::vector<ClientWindow> Desktop::clientWindowsOf(pid_t pid) {
    std::vector<ClientWindow> windows;
    for (auto window : property(root_, "_NET_CLIENT_LIST", XCB_ATOM_WINDOW, 1024)) {
        if (ownerOf(window) == pid)
            windows.push_back({window, title(window)});
    }
    return windows;
}

bool Desktop::hasState(xcb_window_t window, const char* state) {
    return listsAtom(window, "_NET_WM_STATE", state);
}

bool Desktop::listsAtom(xcb_window_t window, const char* property, const char* name) {
    const xcb_atom_t wanted = atom(name);
    for (auto present : this->property(window, property, XCB_ATOM_ATOM, 32)) {
        if (present == wanted)
            return true;
    }
    return false;
}

// The panel passes the window manager by: it is one of the root's own
// children, not a client the window manager lists, and it is only there
// while it is shown.
std::optional<xcb_window_t> Desktop::panelClient(pid_t pid) {
    for (auto window : children(root_)) {
        if (isOurPanel(window, pid))
            return window;
    }
    return std::nullopt;
}

// Window managers nest the client in their frame as deep as they like; the
// frame is its ancestor just below the root.
std::optional<Geometry> Desktop::shownPanel(pid_t pid) {
    const auto client = panelClient(pid);
    return client ? std::optional(geometry(frameOf(*client))) : std::nullopt;
}

xcb_window_t Desktop::frameOf(xcb_window_t client) {
    auto window = client;
    for (auto parent = parentOf(window); parent && *parent != root_; parent = parentOf(*parent))
        window = *parent;
    return window;
}

// The root's children come bottom first. Some window managers make their
// frames override-redirect, so those count like any other.
std::optional<xcb_window_t> Desktop::topmostFrameAt(Point point) {
    const auto frames = children(root_);
    for (auto it = frames.rbegin(); it != frames.rend(); ++it) {
        if (!isViewable(*it))
            continue;
        const auto area = geometry(*it);
        if (point.x >= area.x && point.x < area.x + area.width && point.y >= area.y &&
            point.y < area.y + area.height) {
            return *it;
        }
    }
    return std::nullopt;
}

std::optional<Geometry> Desktop::panelContent(pid_t pid) {
    const auto client = panelClient(pid);
    return client ? std::optional(geometry(*client)) : std::nullopt;
}

std::vector<Geometry> Desktop::popupsOf(pid_t pid) {
    std::vector<Geometry> popups;
    for (const auto window : children(root_)) {
        bool overrideRedirect = false;
        if (isViewable(window, &overrideRedirect) && overrideRedirect && ownerOf(window) == pid &&
            !isOurPanel(window, pid)) {
            popups.push_back(geometry(window));
        }
    }
    return popups;
}

void Desktop::watchMapping(xcb_window_t window) {
    const uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection_, window, XCB_CW_EVENT_MASK, &mask);
    sync();
}

bool Desktop::waitForMapping(xcb_window_t window, bool mapped, double seconds) {
    const auto deadline = std::chrono::steady_clock::now() +
                          std::chrono::duration_cast<std::chrono::steady_clock::duration>(
                              std::chrono::duration<double>(seconds));
    const uint8_t wanted = mapped ? XCB_MAP_NOTIFY : XCB_UNMAP_NOTIFY;
    while (auto event = own(nextEvent(connection_, deadline))) {
        const bool seen =
            (event->response_type & 0x7f) == wanted &&
            (mapped ? reinterpret_cast<xcb_map_notify_event_t*>(event.get())->window
                    : reinterpret_cast<xcb_unmap_notify_event_t*>(event.get())->window) == window;
        if (seen)
            return true;
    }
    return false;
}

// The test server's screen is 24 bits deep, kept as 32-bit pixels.
Screenshot Desktop::capture(Geometry region) {
    auto image = own(xcb_get_image_reply(
        connection_,
        xcb_get_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, root_, static_cast<int16_t>(region.x),
                      static_cast<int16_t>(region.y), static_cast<uint16_t>(region.width),
                      static_cast<uint16_t>(region.height), ~0u),
        nullptr));
    std::vector<uint32_t> pixels(static_cast<std::size_t>(region.width * region.height), 0xffffff);
    if (image && xcb_get_image_data_length(image.get()) >= static_cast<int>(pixels.size() * 4))
        std::memcpy(pixels.data(), xcb_get_image_data(image.get()), pixels.size() * 4);
    return Screenshot(region, std::move(pixels));
}

std::optional<xcb_window_t> Desktop::parentOf(xcb_window_t window) {
    auto tree =
        own(xcb_query_tree_reply(connection_, xcb_query_tree(connection_, window), nullptr));
    return tree ? std::optional(tree->parent) : std::nullopt;
}

// Qt names its menus after the program too; the panel is the utility window.
bool Desktop::isOurPanel(xcb_window_t window, pid_t pid) {
    return isViewable(window) && ownerOf(window) == pid && title(window) == "Tarnwick" &&
           listsAtom(window, "_NET_WM_WINDOW_TYPE", "_NET_WM_WINDOW_TYPE_UTILITY");
}

bool Desktop::isViewable(xcb_window_t window, bool* overrideRedirect) {
    auto attributes = own(xcb_get_window_attributes_reply(
        connection_, xcb_get_window_attributes(connection_, window), nullptr));
    if (attributes && overrideRedirect)
        *overrideRedirect = attributes->override_redirect;
    return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
}

pid_t Desktop::ownerOf(xcb_window_t window) {
    auto owner = property(window, "_NET_WM_PID", XCB_ATOM_CARDINAL);
    return owner.empty() ? -1 : static_cast<pid_t>(owner[0]);
}

std::vector<xcb_window_t> Desktop::children(xcb_window_t window) {
    auto tree =
        own(xcb_query_tree_reply(connection_, xcb_query_tree(connection_, window), nullptr));
    if (!tree)
        return {};
    const auto* first = xcb_query_tree_children(tree.get());
    return {first, first + xcb_query_tree_children_length(tree.get())};
}

Geometry Desktop::geometry(xcb_window_t window) {
    auto g =
        own(xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, window), nullptr));
    auto t = own(xcb_translate_coordinates_reply(
        connection_, xcb_translate_coordinates(connection_, window, root_, 0, 0), nullptr));
    if (!g || !t)
        return {};
    return {t->dst_x, t->dst_y, g->width, g->height};
}

// The UTF-8 name where there is one, as the window manager shows it.
std::string Desktop::title(xcb_window_t window) {
    std::string text;
    for (const xcb_atom_t name : {atom("_NET_WM_NAME"), xcb_atom_t{XCB_ATOM_WM_NAME}}) {
        auto reply = own(xcb_get_property_reply(
            connection_, xcb_get_property(connection_, 0, window, name, XCB_ATOM_ANY, 0, 256),
            nullptr));
        if (reply && xcb_get_property_value_length(reply.get()) > 0) {
            text.assign(static_cast<const char*>(xcb_get_property_value(reply.get())),
                        static_cast<std::size_t>(xcb_get_property_value_length(reply.get())));
            break;
        }
    }
    return text;
}

std::optional<Geometry> Desktop::trayIconOf(const std::string& windowClass) {
    auto icon = windowOfClass(root_, windowClass, false);
    return icon ? std::optional{geometry(*icon)} : std::nullopt;
}

// The first window of the class below the window, searched only inside the
// tray host once one was passed.
std::optional<xcb_window_t> Desktop::windowOfClass(xcb_window_t window, const std::string& name,
                                                   bool insideTrayHost) {
    for (const auto child : children(window)) {
        const auto childClass = className(child);
        if (insideTrayHost && childClass == name)
            return child;
        if (auto found = windowOfClass(child, name, insideTrayHost || childClass == "tint2"))
            return found;
    }
    return std::nullopt;
}

// The instance name of WM_CLASS, the first of its two strings.
std::string Desktop::className(xcb_window_t window) {
    auto reply = own(xcb_get_property_reply(
        connection_,
        xcb_get_property(connection_, 0, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 0, 64),
        nullptr));
    if (!reply)
        return {};
    const std::string both(static_cast<const char*>(xcb_get_property_value(reply.get())),
                           static_cast<std::size_t>(xcb_get_property_value_length(reply.get())));
    return both.substr(0, both.find('\0'));
}

xcb_atom_t Desktop::atom(const char* name) {
    auto reply = own(xcb_intern_atom_reply(
        connection_,
        xcb_intern_atom(connection_, 0, static_cast<uint16_t>(std::strlen(name)), name), nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

std::vector<uint32_t> Desktop::property(xcb_window_t window, const char* name, xcb_atom_t type,
                                        uint32_t length) {
    auto reply = own(xcb_get_property_reply(
        connection_, xcb_get_property(connection_, 0, window, atom(name), type, 0, length),
        nullptr));
    if (!reply)
        return {};
    const auto* data = static_cast<const uint32_t*>(xcb_get_property_value(reply.get()));
    return {data, data + xcb_get_property_value_length(reply.get()) / 4};
}

void Desktop::sync() {
    std::free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
}

}  // namespace e2e
