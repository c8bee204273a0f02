#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <utility>
#include <vector>

#include "platform/HandlerList.h"
#include "platform/HotKeys.h"

namespace platform::sim {

// The hot key service of the simulated desktop: registrations that a test
// can trigger, system shortcuts that a test scripts, and switches for the
// failures of the real service.
class SimHotKeys final : public HotKeys {
  public:
    // The statuses the real service answers with.
    static constexpr OSStatus hotKeyExistsStatus = -9878;
    static constexpr OSStatus hotKeyInvalidStatus = -9879;

    // Starts with the system shortcuts of defaultSymbolicHotKeys().
    SimHotKeys();

    OSStatus registerEventHotKey(KeyCode keyCode, std::uint32_t carbonModifiers, Handler handler,
                                 Token& hotKey) override;
    OSStatus unregisterEventHotKey(Token hotKey) override;
    OSStatus copySymbolicHotKeys(std::vector<SymbolicHotKey>& hotKeys) override;

    // Command-Space (enabled) and Control-Space (disabled), as a fresh
    // desktop has them.
    static std::vector<SymbolicHotKey> defaultSymbolicHotKeys();
    void setSymbolicHotKeys(std::vector<SymbolicHotKey> hotKeys) {
        symbolicHotKeys_ = std::move(hotKeys);
    }
    // A non-zero status makes reading the system shortcuts fail with it.
    void setCopySymbolicHotKeysStatus(OSStatus status) { copyStatus_ = status; }
    // Another program holds this chord: registering it is refused.
    void takeByAnotherProgram(KeyCode keyCode, std::uint32_t carbonModifiers) {
        takenElsewhere_.insert({keyCode, carbonModifiers});
    }

    // The user presses or releases a chord. True when a registered hot key
    // took it (its handler ran).
    bool press(KeyCode keyCode, std::uint32_t carbonModifiers);
    bool release(KeyCode keyCode, std::uint32_t carbonModifiers);

    std::size_t registeredCount() const { return chords_.size(); }

  private:
    using Chord = std::pair<KeyCode, std::uint32_t>;

    bool deliver(Chord chord, bool pressed);

    // The handler of the chord pressed or released takes it, and the rest
    // are left alone.
    HandlerList<Chord, bool, bool&> handlers_;
    std::map<std::uint64_t, Chord> chords_;
    std::set<Chord> takenElsewhere_;
    std::vector<SymbolicHotKey> symbolicHotKeys_;
    OSStatus copyStatus_ = 0;
};

}  // namespace platform::sim
