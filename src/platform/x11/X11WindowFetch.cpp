#include "platform/x11/X11WindowFetch.h"

#include <cstring>
#include <memory>
#include <utility>

namespace platform::x11 {

namespace {

// Titles longer than this many 32-bit units are cut; nobody reads them whole.
constexpr std::uint32_t maxPropertyLength = 4096;

xcb_atom_t atomOf(X11Connection& connection, X11WindowProperty property) {
    auto& ewmh = connection.ewmh();
    switch (property) {
        case X11WindowProperty::claimedPid:
            return ewmh._NET_WM_PID;
        case X11WindowProperty::netName:
            return ewmh._NET_WM_NAME;
        case X11WindowProperty::wmName:
            return XCB_ATOM_WM_NAME;
        case X11WindowProperty::types:
            return ewmh._NET_WM_WINDOW_TYPE;
        case X11WindowProperty::state:
            return ewmh._NET_WM_STATE;
        case X11WindowProperty::allowedActions:
            return ewmh._NET_WM_ALLOWED_ACTIONS;
        case X11WindowProperty::frameExtents:
            return ewmh._NET_FRAME_EXTENTS;
    }
    return XCB_ATOM_NONE;
}

xcb_get_property_cookie_t requestProperty(X11Connection& connection, xcb_window_t window,
                                          X11WindowProperty property) {
    return xcb_get_property(connection.connection(), 0, window, atomOf(connection, property),
                            XCB_GET_PROPERTY_TYPE_ANY, 0, maxPropertyLength);
}

bool isSet(const xcb_get_property_reply_t* reply) {
    return reply->type != XCB_ATOM_NONE;
}

std::vector<std::uint32_t> values32(const xcb_get_property_reply_t* reply) {
    if (reply->format != 32)
        return {};
    const auto* data = static_cast<const std::uint32_t*>(
        xcb_get_property_value(const_cast<xcb_get_property_reply_t*>(reply)));
    const int count = xcb_get_property_value_length(reply) / 4;
    return std::vector<std::uint32_t>(data, data + count);
}

std::string bytes(const xcb_get_property_reply_t* reply) {
    const auto* data = static_cast<const char*>(
        xcb_get_property_value(const_cast<xcb_get_property_reply_t*>(reply)));
    std::string text(data, static_cast<std::size_t>(xcb_get_property_value_length(reply)));
    // Some clients count the terminating zero in the length.
    while (!text.empty() && text.back() == '\0')
        text.pop_back();
    return text;
}

std::string latin1ToUtf8(const std::string& latin1) {
    std::string utf8;
    utf8.reserve(latin1.size());
    for (unsigned char c : latin1) {
        if (c < 0x80) {
            utf8.push_back(static_cast<char>(c));
        } else {
            utf8.push_back(static_cast<char>(0xC0 | (c >> 6)));
            utf8.push_back(static_cast<char>(0x80 | (c & 0x3F)));
        }
    }
    return utf8;
}

std::optional<std::string> decodeName(const xcb_get_property_reply_t* reply) {
    if (!isSet(reply) || reply->format != 8)
        return std::nullopt;
    // STRING is Latin-1; UTF8_STRING and the rest are taken as they come.
    return reply->type == XCB_ATOM_STRING ? latin1ToUtf8(bytes(reply)) : bytes(reply);
}

void applyState(X11Connection& connection, const std::vector<std::uint32_t>& atoms,
                X11WindowState& state) {
    auto& ewmh = connection.ewmh();
    state.hidden = false;
    state.fullScreen = false;
    state.skipTaskbar = false;
    for (auto atom : atoms) {
        if (atom == ewmh._NET_WM_STATE_SKIP_TASKBAR)
            state.skipTaskbar = true;
        if (atom == ewmh._NET_WM_STATE_HIDDEN)
            state.hidden = true;
        if (atom == ewmh._NET_WM_STATE_FULLSCREEN)
            state.fullScreen = true;
    }
}

void applyProperty(X11Connection& connection, X11WindowProperty property,
                   const xcb_get_property_reply_t* reply, X11WindowState& state) {
    switch (property) {
        case X11WindowProperty::claimedPid: {
            const auto values = values32(reply);
            state.claimedPid = values.empty() ? 0 : static_cast<pid_t>(values.front());
            state.settlePid();
            break;
        }
        case X11WindowProperty::netName:
            state.netName = decodeName(reply);
            break;
        case X11WindowProperty::wmName:
            state.wmName = decodeName(reply);
            break;
        case X11WindowProperty::types: {
            const auto values = values32(reply);
            state.types.assign(values.begin(), values.end());
            break;
        }
        case X11WindowProperty::state:
            applyState(connection, values32(reply), state);
            break;
        case X11WindowProperty::allowedActions:
            if (isSet(reply)) {
                const auto values = values32(reply);
                state.allowedActions.emplace(values.begin(), values.end());
            } else {
                state.allowedActions.reset();
            }
            break;
        case X11WindowProperty::frameExtents: {
            const auto values = values32(reply);
            state.extents = values.size() >= 4
                                ? X11FrameExtents{values[0], values[1], values[2], values[3]}
                                : X11FrameExtents{};
            break;
        }
    }
}

Reply<xcb_get_property_reply_t> takeProperty(xcb_connection_t* connection,
                                             xcb_get_property_cookie_t cookie) {
    return awaitReply(connection, xcb_get_property_reply, cookie);
}

bool applyOrigin(const xcb_translate_coordinates_reply_t* reply, X11WindowState& state) {
    if (!reply)
        return false;
    state.x = reply->dst_x;
    state.y = reply->dst_y;
    return true;
}

}  // namespace

xcb_res_query_client_ids_cookie_t askX11ConnectionPid(xcb_connection_t* connection,
                                                      xcb_window_t window) {
    xcb_res_client_id_spec_t clientId{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    return xcb_res_query_client_ids(connection, 1, &clientId);
}

pid_t x11ConnectionPidOf(const xcb_res_query_client_ids_reply_t* reply) {
    if (!reply)
        return 0;
    auto ids = xcb_res_query_client_ids_ids_iterator(reply);
    for (; ids.rem; xcb_res_client_id_value_next(&ids)) {
        if (!(reinterpret_cast<const xcb_res_client_id_spec_t*>(ids.data)->mask &
              XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID))
            continue;
        if (xcb_res_client_id_value_value_length(ids.data) < 1)
            continue;
        return static_cast<pid_t>(*xcb_res_client_id_value_value(ids.data));
    }
    return 0;
}

std::optional<X11WindowProperty> x11WindowPropertyNamed(X11Connection& connection,
                                                        xcb_atom_t atom) {
    for (std::size_t i = 0; i < x11WindowPropertyCount; ++i) {
        const auto property = static_cast<X11WindowProperty>(i);
        if (atomOf(connection, property) == atom)
            return property;
    }
    return std::nullopt;
}

bool readX11WindowProperty(X11Connection& connection, xcb_window_t window,
                           X11WindowProperty property, X11WindowState& state) {
    auto reply =
        takeProperty(connection.connection(), requestProperty(connection, window, property));
    if (!reply)
        return false;
    applyProperty(connection, property, reply.get(), state);
    return true;
}

bool readX11WindowOrigin(X11Connection& connection, xcb_window_t window, X11WindowState& state) {
    auto* c = connection.connection();
    auto reply = awaitReply(c, xcb_translate_coordinates_reply,
                            xcb_translate_coordinates(c, window, connection.root(), 0, 0));
    return applyOrigin(reply.get(), state);
}

bool readX11WindowSize(X11Connection& connection, xcb_window_t window, X11WindowState& state) {
    auto* c = connection.connection();
    auto geometry = awaitReply(c, xcb_get_geometry_reply, xcb_get_geometry(c, window));
    if (!geometry)
        return false;
    state.width = geometry->width;
    state.height = geometry->height;
    return true;
}

X11WindowFetch::X11WindowFetch(X11Connection& connection, xcb_window_t window, bool askOwner)
    : connection_(&connection), window_(window), askOwner_(askOwner) {
    auto* c = connection.connection();
    for (std::size_t i = 0; i < x11WindowPropertyCount; ++i) {
        properties_[i] = requestProperty(connection, window, static_cast<X11WindowProperty>(i));
    }
    geometry_ = xcb_get_geometry(c, window);
    origin_ = xcb_translate_coordinates(c, window, connection.root(), 0, 0);
    if (askOwner_)
        owner_ = askX11ConnectionPid(c, window);
}

X11WindowFetch::X11WindowFetch(X11WindowFetch&& other) noexcept
    : connection_(other.connection_),
      window_(other.window_),
      pending_(std::exchange(other.pending_, false)),
      askOwner_(other.askOwner_),
      properties_(other.properties_),
      geometry_(other.geometry_),
      origin_(other.origin_),
      owner_(other.owner_) {}

X11WindowFetch::~X11WindowFetch() {
    discard();
}

void X11WindowFetch::discard() {
    if (!pending_)
        return;
    pending_ = false;
    auto* c = connection_->connection();
    for (auto cookie : properties_)
        xcb_discard_reply(c, cookie.sequence);
    xcb_discard_reply(c, geometry_.sequence);
    xcb_discard_reply(c, origin_.sequence);
    if (askOwner_)
        xcb_discard_reply(c, owner_.sequence);
}

std::optional<X11WindowState> X11WindowFetch::receive() {
    if (!pending_)
        return std::nullopt;
    pending_ = false;
    auto* c = connection_->connection();
    // Every reply is collected, even after the first failure, so that none
    // stays behind in the connection.
    bool vanished = false;
    X11WindowState state;
    for (std::size_t i = 0; i < x11WindowPropertyCount; ++i) {
        auto reply = takeProperty(c, properties_[i]);
        if (!reply) {
            vanished = true;
            continue;
        }
        applyProperty(*connection_, static_cast<X11WindowProperty>(i), reply.get(), state);
    }
    auto geometry = awaitReply(c, xcb_get_geometry_reply, geometry_);
    auto origin = awaitReply(c, xcb_translate_coordinates_reply, origin_);
    Reply<xcb_res_query_client_ids_reply_t> owner;
    if (askOwner_)
        owner = awaitReply(c, xcb_res_query_client_ids_reply, owner_);
    if (vanished || !geometry || !applyOrigin(origin.get(), state))
        return std::nullopt;
    state.width = geometry->width;
    state.height = geometry->height;
    state.connectionPid = x11ConnectionPidOf(owner.get());
    state.settlePid();
    return state;
}

}  // namespace platform::x11
