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
    for (const auto& [id, registered] : chords_) {
        if (registered == chord)
            return hotKeyExistsStatus;
    }
    hotKey =
        handlers_.add([chord, handler = std::move(handler)](Chord pressed, bool down, bool& taken) {
            if (taken || pressed != chord)
                return;
            taken = true;
            if (handler)
                handler(down);
        });
    chords_.emplace(hotKey.id, chord);
    return 0;
}

OSStatus SimHotKeys::unregisterEventHotKey(Token hotKey) {
    if (!chords_.erase(hotKey.id))
        return hotKeyInvalidStatus;
    handlers_.remove(hotKey);
    return 0;
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
    bool taken = false;
    handlers_.call(chord, pressed, taken);
    return taken;
}

}  // namespace platform::sim
