#include "platform/x11/X11HotKeys.h"

#include "platform/x11/KeyCodeTable.h"
#include "platform/x11/XkbProtocol.h"

namespace platform::x11 {

namespace {

// Without this the server reports a held key as a release and a press for
// every repeat; with it, as presses only.
void askForDetectableAutoRepeat(xcb_connection_t* connection) {
    xcb_discard_reply(connection, xcb_xkb_use_extension(connection, 1, 0).sequence);
    xcb_discard_reply(connection, xcb_xkb_per_client_flags(
                                      connection, XCB_XKB_ID_USE_CORE_KBD,
                                      XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT,
                                      XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT, 0, 0, 0)
                                      .sequence);
}

}  // namespace

X11HotKeys::X11HotKeys(X11InputEventSource& source)
    : source_(source), grabs_(source.xcb(), source.root()) {
    askForDetectableAutoRepeat(source_.xcb());
    eventHandler_ =
        source_.addEventHandler([this](const xcb_generic_event_t& event) { handleEvent(event); });
    source_.dispatchSoon();
}

X11HotKeys::~X11HotKeys() {
    source_.removeEventHandler(eventHandler_);
    for (const auto& [id, grab] : grabbed_)
        grabs_.ungrab(grab);
}

OSStatus X11HotKeys::registerEventHotKey(KeyCode keyCode, std::uint32_t carbonModifiers,
                                         Handler handler, Token& hotKey) {
    hotKey = Token{};
    const auto grab = grabs_.grabFor(keyCode, carbonModifiers);
    if (!grab || !handler)
        return paramErr;
    if (isOurs(*grab))
        return eventHotKeyExistsErr;
    const GrabOutcome outcome = grabs_.grab(*grab);
    source_.dispatchSoon();
    if (outcome == GrabOutcome::heldByAnotherClient)
        return eventHotKeyExistsErr;
    if (outcome == GrabOutcome::failed)
        return eventInternalErr;
    hotKey = handlers_.add([grab = *grab, handler = std::move(handler), held = false](
                               const KeyGrab& key, bool down, bool& taken) mutable {
        // A release counts whatever modifiers were let go of first.
        const bool matches = down ? grab == key : grab.key == key.key && held;
        if (taken || !matches || held == down)
            return;
        held = down;
        taken = true;
        handler(down);
    });
    grabbed_.emplace(hotKey.id, *grab);
    return 0;
}

OSStatus X11HotKeys::unregisterEventHotKey(Token hotKey) {
    auto it = grabbed_.find(hotKey.id);
    if (it == grabbed_.end())
        return eventHotKeyInvalidErr;
    grabs_.ungrab(it->second);
    grabbed_.erase(it);
    handlers_.remove(hotKey);
    return 0;
}

bool X11HotKeys::isOurs(const KeyGrab& grab) const {
    for (const auto& [id, held] : grabbed_) {
        if (held == grab)
            return true;
    }
    return false;
}

ShortcutAvailability X11HotKeys::isShortcutTaken(KeyCode keyCode, std::uint32_t carbonModifiers) {
    const auto grab = grabs_.grabFor(keyCode, carbonModifiers);
    if (!grab)
        return ShortcutAvailability::cannotRead;
    // Our own hot key is not another program's; probing it would let go of it.
    if (isOurs(*grab))
        return ShortcutAvailability::free;
    const GrabOutcome outcome = grabs_.probe({*grab}).front();
    source_.dispatchSoon();
    switch (outcome) {
        case GrabOutcome::granted:
            return ShortcutAvailability::free;
        case GrabOutcome::heldByAnotherClient:
            return ShortcutAvailability::taken;
        case GrabOutcome::failed:
            break;
    }
    return ShortcutAvailability::cannotRead;
}

OSStatus X11HotKeys::copySymbolicHotKeys(std::vector<SymbolicHotKey>& hotKeys) {
    hotKeys.clear();
    std::vector<KeyGrab> candidates;
    std::vector<KeyCode> keyCodes;
    for (const KeyCode* key = KeyCodeTable::begin(); key != KeyCodeTable::end(); ++key) {
        const auto plain = grabs_.grabFor(*key, 0);
        if (!plain)
            continue;
        for (std::uint16_t modifiers : grabs_.chordModifierCombinations()) {
            const KeyGrab grab{plain->key, modifiers};
            if (isOurs(grab))
                continue;
            candidates.push_back(grab);
            keyCodes.push_back(*key);
        }
    }
    const std::vector<GrabOutcome> outcomes = grabs_.probe(candidates);
    source_.dispatchSoon();
    for (std::size_t i = 0; i < outcomes.size(); ++i) {
        if (outcomes[i] == GrabOutcome::failed) {
            hotKeys.clear();
            return eventInternalErr;
        }
        if (outcomes[i] == GrabOutcome::heldByAnotherClient) {
            hotKeys.push_back(SymbolicHotKey{true, keyCodes[i],
                                             grabs_.carbonModifiersOf(candidates[i].modifiers)});
        }
    }
    return 0;
}

void X11HotKeys::handleEvent(const xcb_generic_event_t& event) {
    const std::uint8_t type = event.response_type & 0x7f;
    if (type != XCB_KEY_PRESS && type != XCB_KEY_RELEASE)
        return;
    const auto& key = reinterpret_cast<const xcb_key_press_event_t&>(event);
    const KeyGrab pressed{key.detail, grabs_.chordModifiersOf(key.state)};
    bool taken = false;
    handlers_.call(pressed, type == XCB_KEY_PRESS, taken);
}

}  // namespace platform::x11
