#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/Event.h"

namespace platform::x11 {

// A key with modifiers as the server sees it: an X keycode and a core
// modifier mask.
struct KeyGrab {
    xcb_keycode_t key = 0;
    std::uint16_t modifiers = 0;
    friend bool operator==(const KeyGrab&, const KeyGrab&) = default;
};

enum class GrabOutcome { granted, heldByAnotherClient, failed };

// Passive key grabs on the root window, in the server's modifier numbering.
// Caps Lock and Num Lock are locks, not chord modifiers: a key is grabbed
// with every combination of them, and they are ignored when matching.
class X11KeyGrabs {
  public:
    explicit X11KeyGrabs(xcb_connection_t* connection, xcb_window_t root);

    // Nothing for a key outside the key table or the server's keycode range,
    // and for the function modifier, which X has no modifier for.
    std::optional<KeyGrab> grabFor(KeyCode keyCode, std::uint32_t carbonModifiers) const;
    std::uint32_t carbonModifiersOf(std::uint16_t modifiers) const;
    // The chord modifiers of an event's state, locks left out.
    std::uint16_t chordModifiersOf(std::uint16_t state) const { return state & 0xff & ~lockMask(); }

    // All or nothing: every lock variant, or none when one is refused.
    GrabOutcome grab(const KeyGrab& grab);
    void ungrab(const KeyGrab& grab);

    // Grabs each key in its plain variant and lets go again, to learn which
    // ones other clients hold. Requests are sent together, so the whole
    // batch costs one round trip.
    std::vector<GrabOutcome> probe(const std::vector<KeyGrab>& grabs);

    // The four chord modifiers in every combination.
    std::vector<std::uint16_t> chordModifierCombinations() const;

  private:
    void waitForServer() const;
    std::uint16_t lockMask() const { return XCB_MOD_MASK_LOCK | numLockMask_; }
    std::vector<std::uint16_t> lockVariants() const;
    void readModifierMapping();

    xcb_connection_t* connection_;
    xcb_window_t root_;
    xcb_keycode_t minKeyCode_;
    xcb_keycode_t maxKeyCode_;
    std::uint16_t optionMask_ = XCB_MOD_MASK_1;
    std::uint16_t commandMask_ = XCB_MOD_MASK_4;
    std::uint16_t numLockMask_ = XCB_MOD_MASK_2;
};

}  // namespace platform::x11
