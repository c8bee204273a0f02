#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/Event.h"
#include "platform/Subscription.h"

namespace platform {

// The modifier state a key translation applies, in the layout service's
// numbering.
namespace keyModifierState {
inline constexpr std::uint32_t command = 1;
inline constexpr std::uint32_t shift = 2;
inline constexpr std::uint32_t capsLock = 4;
inline constexpr std::uint32_t option = 8;
inline constexpr std::uint32_t control = 16;
}  // namespace keyModifierState

struct KeyTranslation {
    std::int32_t status = 0;  // non-zero: the layout could not translate
    std::string text;         // UTF-8; empty when the key gives nothing
};

// A key event as the window system delivered it to one of our windows, in
// its own numbering: on X11 the keycode and the core modifier state of the
// event, which holds the modifiers as they were before it.
struct NativeKeyEvent {
    std::uint32_t keyCode = 0;
    std::uint32_t modifierState = 0;
    bool pressed = true;
    bool isARepeat = false;
    double timestamp = 0;  // seconds
};

// A keyboard layout: an identity, and what a key gives under a modifier state.
class InputSource {
  public:
    virtual ~InputSource() = default;
    // The input source's identifier; absent for a source that has none.
    virtual std::optional<std::string> identifier() const = 0;
    // What the key gives when displayed (no dead-key state), under the
    // modifier state.
    virtual KeyTranslation translate(KeyCode keyCode, std::uint32_t modifierState) const = 0;
};

// The two copies may be asked for from any thread.
class KeyboardLayouts {
  public:
    virtual ~KeyboardLayouts() = default;
    // The layout the user types with now; null if none can be had.
    virtual std::shared_ptr<InputSource> copyCurrentKeyboardLayoutInputSource() = 0;
    // The layout that gives stable Latin text; null if none can be had.
    virtual std::shared_ptr<InputSource> copyCurrentASCIICapableKeyboardLayoutInputSource() = 0;
    // Told on the main loop whenever the current layout changes.
    virtual Subscription observeLayoutChanges(std::function<void()> handler) = 0;
    // A key event of our own windows in the platform's numbering: a key down
    // or up with the characters of the current layout, or a flags change for
    // a modifier key. Nothing for a key the platform has no code for, and on
    // a platform whose toolkit delivers its events numbered so already.
    virtual std::optional<Event> eventForNativeKeyEvent(const NativeKeyEvent& /*native*/) const {
        return std::nullopt;
    }
};

}  // namespace platform
