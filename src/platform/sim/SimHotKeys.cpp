#include "platform/sim/SimHotKeys.h"

namespace platform::sim {

SimHotKeys::SimHotKeys() : symbolicHotKeys_(defaultSymbolicHotKeys()) {}

std::vector<SymbolicHotKey> SimHotKeys::defaultSymbolicHotKeys() {
    return {
        {true, keycode::space, carbonModifier::command},
        {false, keycode::space, carbonModifier::control},
    };
}

OSStatus SimHotKeys::registerEventHotKey(KeyCode keyCode, std::uint32_t carbonModifiers,
                                         Handler handler, Token& hotKey) {
    const Chord chord{keyCode, carbonModifiers};
    if (takenElsewhere_.count(chord))
        return hotKeyExistsStatus;
    for (const auto& [id, registration] : registrations_) {
        if (registration.chord == chord)
            return hotKeyExistsStatus;
    }
    const auto id = ++lastId_;
    registrations_[id] = {chord, std::move(handler)};
    hotKey = Token{id};
    return 0;
}

OSStatus SimHotKeys::unregisterEventHotKey(Token hotKey) {
    return registrations_.erase(hotKey.id) ? 0 : hotKeyInvalidStatus;
}

OSStatus SimHotKeys::copySymbolicHotKeys(std::vector<SymbolicHotKey>& hotKeys) {
    if (copyStatus_ != 0)
        return copyStatus_;
    hotKeys = symbolicHotKeys_;
    return 0;
}

bool SimHotKeys::press(KeyCode keyCode, std::uint32_t carbonModifiers) {
    return deliver({keyCode, carbonModifiers}, true);
}

bool SimHotKeys::release(KeyCode keyCode, std::uint32_t carbonModifiers) {
    return deliver({keyCode, carbonModifiers}, false);
}

bool SimHotKeys::deliver(Chord chord, bool pressed) {
    for (const auto& [id, registration] : registrations_) {
        if (registration.chord != chord)
            continue;
        // A copy: the handler may unregister itself.
        auto handler = registration.handler;
        if (handler)
            handler(pressed);
        return true;
    }
    return false;
}

}  // namespace platform::sim
