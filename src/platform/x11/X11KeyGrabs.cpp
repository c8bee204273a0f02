#include "platform/x11/X11KeyGrabs.h"

#include "platform/HotKeys.h"
#include "platform/x11/KeyCodeTable.h"
#include "platform/x11/X11Connection.h"

namespace platform::x11 {

namespace {

constexpr std::uint8_t badAccess = 10;

GrabOutcome outcomeOf(const ErrorReply& error) {
    if (!error)
        return GrabOutcome::granted;
    return error->error_code == badAccess ? GrabOutcome::heldByAnotherClient : GrabOutcome::failed;
}

xcb_void_cookie_t sendGrab(xcb_connection_t* connection, xcb_window_t root, xcb_keycode_t key,
                           std::uint16_t modifiers) {
    return xcb_grab_key_checked(connection, 1, root, modifiers, key, XCB_GRAB_MODE_ASYNC,
                                XCB_GRAB_MODE_ASYNC);
}

}  // namespace

X11KeyGrabs::X11KeyGrabs(xcb_connection_t* connection, xcb_window_t root)
    : connection_(connection),
      root_(root),
      minKeyCode_(xcb_get_setup(connection)->min_keycode),
      maxKeyCode_(xcb_get_setup(connection)->max_keycode) {
    readModifierMapping();
}

void X11KeyGrabs::readModifierMapping() {
    // Option, Command and Num Lock are whichever modifiers the keys at
    // those positions are bound to.
    const auto reply = awaitReply(connection_, xcb_get_modifier_mapping_reply,
                                  xcb_get_modifier_mapping(connection_));
    if (!reply)
        return;
    const xcb_keycode_t* keys = xcb_get_modifier_mapping_keycodes(reply.get());
    const int perModifier = reply->keycodes_per_modifier;
    const auto maskOfKey = [&](KeyCode keyCode, std::uint16_t fallback) -> std::uint16_t {
        const auto xKeyCode = KeyCodeTable::xKeyCodeFor(keyCode);
        for (int modifier = 0; xKeyCode && modifier < 8; ++modifier) {
            for (int i = 0; i < perModifier; ++i) {
                if (keys[modifier * perModifier + i] == *xKeyCode)
                    return 1u << modifier;
            }
        }
        return fallback;
    };
    optionMask_ = maskOfKey(keycode::option, XCB_MOD_MASK_1);
    commandMask_ = maskOfKey(keycode::command, XCB_MOD_MASK_4);
    numLockMask_ = maskOfKey(71, XCB_MOD_MASK_2);  // Num Lock sits where Clear is
}

std::optional<KeyGrab> X11KeyGrabs::grabFor(KeyCode keyCode, std::uint32_t carbonModifiers) const {
    if (carbonModifiers & carbonModifier::function)
        return std::nullopt;
    const auto xKeyCode = KeyCodeTable::xKeyCodeFor(keyCode);
    if (!xKeyCode || *xKeyCode < minKeyCode_ || *xKeyCode > maxKeyCode_)
        return std::nullopt;
    std::uint16_t modifiers = 0;
    if (carbonModifiers & carbonModifier::shift)
        modifiers |= XCB_MOD_MASK_SHIFT;
    if (carbonModifiers & carbonModifier::control)
        modifiers |= XCB_MOD_MASK_CONTROL;
    if (carbonModifiers & carbonModifier::option)
        modifiers |= optionMask_;
    if (carbonModifiers & carbonModifier::command)
        modifiers |= commandMask_;
    return KeyGrab{*xKeyCode, modifiers};
}

std::uint32_t X11KeyGrabs::carbonModifiersOf(std::uint16_t modifiers) const {
    std::uint32_t carbon = 0;
    if (modifiers & XCB_MOD_MASK_SHIFT)
        carbon |= carbonModifier::shift;
    if (modifiers & XCB_MOD_MASK_CONTROL)
        carbon |= carbonModifier::control;
    if (modifiers & optionMask_)
        carbon |= carbonModifier::option;
    if (modifiers & commandMask_)
        carbon |= carbonModifier::command;
    return carbon;
}

std::vector<std::uint16_t> X11KeyGrabs::lockVariants() const {
    if (numLockMask_ == XCB_MOD_MASK_LOCK)
        return {0, XCB_MOD_MASK_LOCK};
    return {0, XCB_MOD_MASK_LOCK, numLockMask_,
            static_cast<std::uint16_t>(XCB_MOD_MASK_LOCK | numLockMask_)};
}

std::vector<std::uint16_t> X11KeyGrabs::chordModifierCombinations() const {
    const std::uint16_t chord[] = {XCB_MOD_MASK_SHIFT, XCB_MOD_MASK_CONTROL, optionMask_,
                                   commandMask_};
    std::vector<std::uint16_t> combinations;
    for (unsigned set = 0; set < 16; ++set) {
        std::uint16_t modifiers = 0;
        for (unsigned bit = 0; bit < 4; ++bit) {
            if (set & (1u << bit))
                modifiers |= chord[bit];
        }
        combinations.push_back(modifiers);
    }
    return combinations;
}

GrabOutcome X11KeyGrabs::grab(const KeyGrab& grab) {
    std::vector<xcb_void_cookie_t> cookies;
    for (std::uint16_t lock : lockVariants()) {
        cookies.push_back(sendGrab(connection_, root_, grab.key, grab.modifiers | lock));
    }
    GrabOutcome outcome = GrabOutcome::granted;
    for (const xcb_void_cookie_t& cookie : cookies) {
        const GrabOutcome one = outcomeOf(ErrorReply(xcb_request_check(connection_, cookie)));
        if (outcome == GrabOutcome::granted ||
            (outcome == GrabOutcome::heldByAnotherClient && one == GrabOutcome::failed)) {
            outcome = one;
        }
    }
    if (outcome != GrabOutcome::granted)
        ungrab(grab);
    return outcome;
}

void X11KeyGrabs::ungrab(const KeyGrab& grab) {
    // Letting go of a variant that was never held is harmless: the server
    // only removes this client's grabs.
    for (std::uint16_t lock : lockVariants()) {
        xcb_ungrab_key(connection_, grab.key, root_, grab.modifiers | lock);
    }
    waitForServer();
}

// Another client may ask for the key right after we let go: wait until the
// server has taken our release, so that it finds the key free.
void X11KeyGrabs::waitForServer() const {
    awaitReply(connection_, xcb_get_input_focus_reply, xcb_get_input_focus(connection_));
}

std::vector<GrabOutcome> X11KeyGrabs::probe(const std::vector<KeyGrab>& grabs) {
    std::vector<xcb_void_cookie_t> cookies;
    cookies.reserve(grabs.size());
    for (const KeyGrab& grab : grabs) {
        cookies.push_back(sendGrab(connection_, root_, grab.key, grab.modifiers));
    }
    std::vector<GrabOutcome> outcomes;
    outcomes.reserve(grabs.size());
    for (std::size_t i = 0; i < grabs.size(); ++i) {
        outcomes.push_back(outcomeOf(ErrorReply(xcb_request_check(connection_, cookies[i]))));
        if (outcomes.back() == GrabOutcome::granted) {
            xcb_ungrab_key(connection_, grabs[i].key, root_, grabs[i].modifiers);
        }
    }
    waitForServer();
    return outcomes;
}

}  // namespace platform::x11
