#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "platform/Event.h"
#include "platform/Subscription.h"

namespace platform {

using OSStatus = std::int32_t;

// Modifier bits of the hot key service (an older numbering than the event
// flags).
namespace carbonModifier {
inline constexpr std::uint32_t command = 0x100;
inline constexpr std::uint32_t shift = 0x200;
inline constexpr std::uint32_t option = 0x800;
inline constexpr std::uint32_t control = 0x1000;
inline constexpr std::uint32_t function = 0x800000;
}  // namespace carbonModifier

// One of the system's own keyboard shortcuts.
struct SymbolicHotKey {
    bool enabled = false;
    KeyCode keyCode = 0;
    std::uint32_t modifiers = 0;  // hot key service numbering
};

// Whether another program holds a key with modifiers for the whole desktop.
enum class ShortcutAvailability { free, taken, cannotRead };

// System-wide hot keys, and the system's own shortcuts.
class HotKeys {
  public:
    using Handler = std::function<void(bool pressed)>;

    virtual ~HotKeys() = default;
    // Registers a key with modifiers for the whole desktop. A non-zero status
    // means the system refused it (taken by another program, or an error).
    virtual OSStatus registerEventHotKey(KeyCode keyCode, std::uint32_t carbonModifiers,
                                         Handler handler, Token& hotKey) = 0;
    virtual OSStatus unregisterEventHotKey(Token hotKey) = 0;
    // The system's shortcuts; a non-zero status when they can't be read.
    virtual OSStatus copySymbolicHotKeys(std::vector<SymbolicHotKey>& hotKeys) = 0;
    // Asks the desktop about one key with modifiers (hot key service
    // numbering). A platform that can't tell answers cannotRead.
    virtual ShortcutAvailability isShortcutTaken(KeyCode /*keyCode*/,
                                                 std::uint32_t /*carbonModifiers*/) {
        return ShortcutAvailability::cannotRead;
    }
};

}  // namespace platform
