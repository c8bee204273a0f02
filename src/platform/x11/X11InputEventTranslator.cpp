#include "platform/x11/X11InputEventTranslator.h"

#include "platform/x11/KeyCodeTable.h"

namespace platform::x11 {

namespace {

constexpr KeyCode heldModifierKeys[] = {
    keycode::shift,        keycode::rightShift,   keycode::control,
    keycode::rightControl, keycode::option,       keycode::rightOption,
    keycode::command,      keycode::rightCommand, keycode::function,
};

double secondsOf(xcb_timestamp_t time) {
    return static_cast<double>(time) / 1000.0;
}

std::uint32_t layoutStateFor(ModifierFlags flags) {
    std::uint32_t state = 0;
    if (flags & modifier::shift)
        state |= keyModifierState::shift;
    if (flags & modifier::option)
        state |= keyModifierState::option;
    if (flags & modifier::capsLock)
        state |= keyModifierState::capsLock;
    return state;
}

// With Control held, a key of the ASCII range from '@' to '~' types the
// control character of its column, as terminals have it.
void applyControl(std::string& text) {
    if (text.size() != 1)
        return;
    const char c = text[0];
    if (c >= '@' && c <= '~')
        text[0] = static_cast<char>(c & 0x1f);
}

}  // namespace

void X11InputEventTranslator::seed(const std::uint8_t (&heldKeys)[32], bool capsLockOn) {
    held_.reset();
    for (std::size_t key = 0; key < 256; ++key) {
        if (heldKeys[key / 8] & (1u << (key % 8)))
            held_.set(key);
    }
    capsLockOn_ = capsLockOn;
    recomputeFlags();
}

std::optional<Event> X11InputEventTranslator::keyEvent(xcb_keycode_t xKeyCode, bool pressed,
                                                       xcb_timestamp_t time) {
    const bool wasHeld = held_.test(xKeyCode);
    held_.set(xKeyCode, pressed);
    const auto keyCode = KeyCodeTable::keyCodeFor(xKeyCode);
    if (!keyCode)
        return std::nullopt;
    if (KeyCodeTable::modifierFlagOf(*keyCode) != 0) {
        return modifierKeyEvent(*keyCode, pressed, wasHeld, time);
    }
    Event event;
    event.type = pressed ? EventType::keyDown : EventType::keyUp;
    event.keyCode = *keyCode;
    event.modifierFlags = flags_ | KeyCodeTable::deviceFlagsOf(*keyCode);
    event.isARepeat = pressed && wasHeld;
    event.timestamp = secondsOf(time);
    addCharacters(event, layout_ ? layout_() : nullptr, xKeyCode);
    return event;
}

std::optional<Event> X11InputEventTranslator::keyEventWithState(const XkbInputSource* layout,
                                                                xcb_keycode_t xKeyCode,
                                                                bool pressed, std::uint16_t state,
                                                                bool isARepeat, double timestamp) {
    const auto keyCode = KeyCodeTable::keyCodeFor(xKeyCode);
    if (!keyCode)
        return std::nullopt;
    ModifierFlags flags = 0;
    if (state & XCB_MOD_MASK_SHIFT)
        flags |= modifier::shift;
    if (state & XCB_MOD_MASK_LOCK)
        flags |= modifier::capsLock;
    if (state & XCB_MOD_MASK_CONTROL)
        flags |= modifier::control;
    if (state & XCB_MOD_MASK_1)
        flags |= modifier::option;
    if (state & XCB_MOD_MASK_4)
        flags |= modifier::command;

    Event event;
    event.keyCode = *keyCode;
    event.timestamp = timestamp;
    if (const ModifierFlags own = KeyCodeTable::modifierFlagOf(*keyCode); own != 0) {
        // Caps Lock turns over on the way down; letting go changes nothing.
        if (*keyCode == keycode::capsLock && !pressed)
            return std::nullopt;
        event.type = EventType::flagsChanged;
        if (*keyCode == keycode::capsLock)
            event.modifierFlags = flags ^ own;
        else
            event.modifierFlags = pressed ? flags | own : flags & ~own;
        return event;
    }
    event.type = pressed ? EventType::keyDown : EventType::keyUp;
    event.modifierFlags = flags | KeyCodeTable::deviceFlagsOf(*keyCode);
    event.isARepeat = isARepeat;
    addCharacters(event, layout, xKeyCode);
    return event;
}

std::optional<Event> X11InputEventTranslator::modifierKeyEvent(KeyCode keyCode, bool pressed,
                                                               bool wasHeld, xcb_timestamp_t time) {
    if (pressed == wasHeld)
        return std::nullopt;
    if (keyCode == keycode::capsLock) {
        // The lock turns over on the way down; letting go changes nothing.
        if (!pressed)
            return std::nullopt;
        capsLockOn_ = !capsLockOn_;
    }
    recomputeFlags();
    Event event;
    event.type = EventType::flagsChanged;
    event.keyCode = keyCode;
    event.modifierFlags = flags_;
    event.timestamp = secondsOf(time);
    return event;
}

void X11InputEventTranslator::recomputeFlags() {
    ModifierFlags flags = capsLockOn_ ? modifier::capsLock : 0;
    for (KeyCode key : heldModifierKeys) {
        const auto xKeyCode = KeyCodeTable::xKeyCodeFor(key);
        if (xKeyCode && held_.test(*xKeyCode))
            flags |= KeyCodeTable::modifierFlagOf(key);
    }
    flags_ = flags;
}

void X11InputEventTranslator::addCharacters(Event& event, const XkbInputSource* layout,
                                            xcb_keycode_t xKeyCode) {
    if (!layout)
        return;
    const ModifierFlags flags = event.modifierFlags;
    KeyTranslation typed = layout->translateXKeyCode(xKeyCode, layoutStateFor(flags));
    if (typed.status != 0)
        return;
    if (flags & modifier::control)
        applyControl(typed.text);
    KeyTranslation plain = layout->translateXKeyCode(
        xKeyCode, (flags & modifier::shift) ? keyModifierState::shift : 0);
    event.characters = std::move(typed.text);
    event.charactersIgnoringModifiers = std::move(plain.text);
}

Event X11InputEventTranslator::mouseMovedEvent(CGPoint topLeft, double rootHeight,
                                               xcb_timestamp_t time) const {
    Event event;
    event.type = EventType::mouseMoved;
    event.modifierFlags = flags_;
    event.locationInScreen = bottomLeft(topLeft, rootHeight);
    event.timestamp = secondsOf(time);
    return event;
}

}  // namespace platform::x11
