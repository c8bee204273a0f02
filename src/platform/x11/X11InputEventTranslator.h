#pragma once

#include <xcb/xcb.h>

#include <bitset>
#include <cstdint>
#include <functional>
#include <optional>

#include "platform/Event.h"
#include "platform/x11/XkbInputSource.h"

namespace platform::x11 {

// Turns the keys and pointer positions of raw X input into the program's
// events: virtual key codes, modifier flags kept from the keys seen going
// down and up, characters from the current layout, bottom-left points.
class X11InputEventTranslator {
  public:
    // The layout whose characters key events carry; may give null.
    using LayoutProvider = std::function<const XkbInputSource*()>;

    explicit X11InputEventTranslator(LayoutProvider layout) : layout_(std::move(layout)) {}

    // The held keys (the server's 32-byte key vector) and the Caps Lock
    // state, for a start while keys are already down.
    void seed(const std::uint8_t (&heldKeys)[32], bool capsLockOn);

    // A key going down or up; nothing for a key outside the key table and
    // for a modifier key whose state didn't change.
    std::optional<Event> keyEvent(xcb_keycode_t xKeyCode, bool pressed, xcb_timestamp_t time);
    // A key event of one of our own windows, whose core modifier state holds
    // the modifiers as they were before it: the translator's own record of
    // held keys plays no part. Alt and Super stand for Option and Command,
    // on Mod1 and Mod4 as X keymaps have them.
    static std::optional<Event> keyEventWithState(const XkbInputSource* layout,
                                                  xcb_keycode_t xKeyCode, bool pressed,
                                                  std::uint16_t state, bool isARepeat,
                                                  double timestamp);
    // The pointer at a position of the root window, whose height flips it.
    Event mouseMovedEvent(CGPoint topLeft, double rootHeight, xcb_timestamp_t time) const;

    ModifierFlags modifierFlags() const { return flags_; }
    static CGPoint bottomLeft(CGPoint topLeft, double rootHeight) {
        return CGPoint{topLeft.x, rootHeight - topLeft.y};
    }

  private:
    std::optional<Event> modifierKeyEvent(KeyCode keyCode, bool pressed, bool wasHeld,
                                          xcb_timestamp_t time);
    void recomputeFlags();
    // The texts of a key under the event's flags.
    static void addCharacters(Event& event, const XkbInputSource* layout, xcb_keycode_t xKeyCode);

    LayoutProvider layout_;
    std::bitset<256> held_;
    bool capsLockOn_ = false;
    ModifierFlags flags_ = 0;
};

}  // namespace platform::x11
