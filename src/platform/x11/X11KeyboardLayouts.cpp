#include "platform/x11/X11KeyboardLayouts.h"

#include <xkbcommon/xkbcommon-x11.h>

#include <string>

#include "platform/x11/X11InputEventTranslator.h"
#include "platform/x11/XkbProtocol.h"

namespace platform::x11 {

namespace {

constexpr std::uint16_t keymapEvents = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY |
                                       XCB_XKB_EVENT_TYPE_MAP_NOTIFY |
                                       XCB_XKB_EVENT_TYPE_STATE_NOTIFY;

// Tells the server which keyboard events this connection hears: new
// keyboards and keymaps in full, state changes only for the group.
void selectKeyboardEvents(xcb_connection_t* connection, std::int32_t deviceId) {
    xcb_xkb_select_events_details_t details{};
    details.affectNewKeyboard = XCB_XKB_NKN_DETAIL_KEYCODES;
    details.newKeyboardDetails = XCB_XKB_NKN_DETAIL_KEYCODES;
    details.affectState = XCB_XKB_STATE_PART_GROUP_STATE;
    details.stateDetails = XCB_XKB_STATE_PART_GROUP_STATE;
    constexpr std::uint16_t mapParts =
        XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP |
        XCB_XKB_MAP_PART_EXPLICIT_COMPONENTS | XCB_XKB_MAP_PART_KEY_ACTIONS |
        XCB_XKB_MAP_PART_VIRTUAL_MODS | XCB_XKB_MAP_PART_VIRTUAL_MOD_MAP;
    xcb_xkb_select_events_aux(connection, static_cast<xcb_xkb_device_spec_t>(deviceId),
                              keymapEvents, 0, 0, mapParts, mapParts, &details);
}

}  // namespace

std::unique_ptr<X11KeyboardLayouts> X11KeyboardLayouts::create(X11InputEventSource& source) {
    std::uint8_t firstEvent = 0;
    if (!xkb_x11_setup_xkb_extension(
            source.xcb(), XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
            XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &firstEvent, nullptr)) {
        return nullptr;
    }
    const std::int32_t deviceId = xkb_x11_get_core_keyboard_device_id(source.xcb());
    if (deviceId < 0)
        return nullptr;
    std::unique_ptr<X11KeyboardLayouts> layouts(
        new X11KeyboardLayouts(source, deviceId, firstEvent));
    if (!layouts->context_ || !layouts->reload())
        return nullptr;
    return layouts;
}

X11KeyboardLayouts::X11KeyboardLayouts(X11InputEventSource& source, std::int32_t deviceId,
                                       std::uint8_t firstEvent)
    : source_(source),
      deviceId_(deviceId),
      firstEvent_(firstEvent),
      rulesNamesAtom_(source.connection().atom("_XKB_RULES_NAMES")),
      context_(makeXkbContext()) {
    selectKeyboardEvents(source_.xcb(), deviceId_);
    source_.selectRootEvents(XCB_EVENT_MASK_PROPERTY_CHANGE);
    eventHandler_ =
        source_.addEventHandler([this](const xcb_generic_event_t& event) { handleEvent(event); });
}

X11KeyboardLayouts::~X11KeyboardLayouts() {
    source_.removeEventHandler(eventHandler_);
}

std::shared_ptr<InputSource> X11KeyboardLayouts::copyCurrentKeyboardLayoutInputSource() {
    std::lock_guard guard(sourcesLock_);
    return current_;
}

std::shared_ptr<InputSource>
X11KeyboardLayouts::copyCurrentASCIICapableKeyboardLayoutInputSource() {
    std::lock_guard guard(sourcesLock_);
    return asciiCapable_;
}

Subscription X11KeyboardLayouts::observeLayoutChanges(std::function<void()> handler) {
    return observers_.subscribe(std::move(handler));
}

std::optional<Event> X11KeyboardLayouts::eventForNativeKeyEvent(
    const NativeKeyEvent& native) const {
    if (native.keyCode > 255)
        return std::nullopt;
    std::shared_ptr<XkbInputSource> layout;
    {
        std::lock_guard lock(sourcesLock_);
        layout = current_;
    }
    return X11InputEventTranslator::keyEventWithState(
        layout.get(), static_cast<xcb_keycode_t>(native.keyCode), native.pressed,
        static_cast<std::uint16_t>(native.modifierState), native.isARepeat, native.timestamp);
}

void X11KeyboardLayouts::handleEvent(const xcb_generic_event_t& event) {
    const std::uint8_t type = event.response_type & 0x7f;
    if (type == XCB_PROPERTY_NOTIFY) {
        const auto& notify = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        if (notify.window == source_.root() && notify.atom == rulesNamesAtom_)
            reloadSoon();
        return;
    }
    if (type != firstEvent_)
        return;
    // Every keyboard event starts with the same header; its second byte says
    // which one it is.
    const auto& header = reinterpret_cast<const xcb_xkb_state_notify_event_t&>(event);
    if (header.deviceID != deviceId_)
        return;
    switch (header.xkbType) {
        case XCB_XKB_NEW_KEYBOARD_NOTIFY:
        case XCB_XKB_MAP_NOTIFY:
            reloadSoon();
            break;
        case XCB_XKB_STATE_NOTIFY:
            if (header.changed & XCB_XKB_STATE_PART_GROUP_STATE)
                selectGroup(header.group);
            break;
        default:
            break;
    }
}

void X11KeyboardLayouts::reloadSoon() {
    // Loading a keymap sends several notifications in a row; read it once
    // they have all come in.
    if (reloadPosted_)
        return;
    reloadPosted_ = true;
    source_.loop().post(lifetime_.guard([this] {
        reloadPosted_ = false;
        if (reload())
            observers_.call();
        source_.dispatchSoon();
    }));
}

bool X11KeyboardLayouts::reload() {
    xcb_connection_t* connection = source_.xcb();
    XkbKeymapRef keymap = adoptXkbKeymap(xkb_x11_keymap_new_from_device(
        context_.get(), connection, deviceId_, XKB_KEYMAP_COMPILE_NO_FLAGS));
    if (!keymap)
        return false;
    xkb_state* state = xkb_x11_state_new_from_device(keymap.get(), connection, deviceId_);
    const xkb_layout_index_t active =
        state ? xkb_state_serialize_layout(state, XKB_STATE_LAYOUT_EFFECTIVE) : 0;
    if (state)
        xkb_state_unref(state);

    const auto identifiers =
        std::make_shared<const XkbGroupIdentifiers>(namer_, keymap, readRulesNames());
    std::vector<std::shared_ptr<XkbInputSource>> groups;
    std::shared_ptr<XkbInputSource> asciiCapable;
    const xkb_layout_index_t groupCount = xkb_keymap_num_layouts(keymap.get());
    for (xkb_layout_index_t group = 0; group < groupCount; ++group) {
        groups.push_back(std::make_shared<XkbInputSource>(keymap, group, identifiers));
        if (!asciiCapable && XkbInputSource::isLatin(keymap.get(), group))
            asciiCapable = groups.back();
    }
    if (groups.empty())
        return false;
    if (!asciiCapable)
        asciiCapable = builtInUSSource();

    std::lock_guard guard(sourcesLock_);
    groups_ = std::move(groups);
    asciiCapable_ = std::move(asciiCapable);
    current_ = groups_[active < groups_.size() ? active : 0];
    return true;
}

void X11KeyboardLayouts::selectGroup(xkb_layout_index_t group) {
    if (group >= groups_.size() || groups_[group] == current_)
        return;
    {
        std::lock_guard guard(sourcesLock_);
        current_ = groups_[group];
    }
    observers_.call();
}

std::optional<XkbRulesNames> X11KeyboardLayouts::readRulesNames() {
    xcb_connection_t* connection = source_.xcb();
    constexpr std::uint32_t longestNames = 4096;
    auto cookie = xcb_get_property(connection, 0, source_.root(), rulesNamesAtom_, XCB_ATOM_STRING,
                                   0, longestNames / 4);
    const auto reply = awaitReply(connection, xcb_get_property_reply, cookie);
    if (!reply)
        return std::nullopt;
    const auto* text = static_cast<const char*>(xcb_get_property_value(reply.get()));
    const std::string property(
        text, static_cast<std::size_t>(xcb_get_property_value_length(reply.get())));
    return XkbRulesNames::parse(property);
}

std::shared_ptr<XkbInputSource> X11KeyboardLayouts::builtInUSSource() {
    if (!builtInUS_) {
        const xkb_rule_names names{nullptr, nullptr, "us", nullptr, nullptr};
        XkbKeymapRef keymap = adoptXkbKeymap(
            xkb_keymap_new_from_names(context_.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS));
        if (keymap)
            builtInUS_ = std::make_shared<XkbInputSource>(keymap, 0, "xkb:us");
    }
    return builtInUS_;
}

}  // namespace platform::x11
