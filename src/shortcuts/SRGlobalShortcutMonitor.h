#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>

#include "platform/HotKeys.h"
#include "shortcuts/SRShortcutMonitor.h"

namespace lirixkro {

// The identity of a hot key: the registering program's signature and a
// number.
struct SREventHotKeyID {
    std::uint32_t signature = 0;
    std::uint32_t id = 0;
};

// A hot key event as the event handler receives it. The hot key's identity
// is absent when it can't be read from the event.
struct SRHotKeyEvent {
    static constexpr std::uint32_t keyboardClass = 0x6B657962;  // 'keyb'
    static constexpr std::uint32_t hotKeyPressedKind = 5;
    static constexpr std::uint32_t hotKeyReleasedKind = 6;

    std::uint32_t eventClass = keyboardClass;
    std::uint32_t eventKind = hotKeyPressedKind;
    std::optional<SREventHotKeyID> hotKeyID;
};

// Shortcuts for the whole desktop, through the system's hot key service:
// each shortcut in use is registered as a hot key, and the monitor's event
// handler turns hot key events into actions.
//
// Idle: no hot keys, no handler. Active: hot keys and the handler. Paused
// (pause called more often than resume): hot keys unregistered and the
// handler removed, the actions kept. A shortcut added while paused is
// registered at once; only the handler waits for the resume.
class SRGlobalShortcutMonitor : public SRShortcutMonitor {
  public:
    enum class State { idle, active, paused };

    // The signature of this library's hot keys.
    static constexpr std::uint32_t signature = 0x53525352;
    // The event handler's answer for an event it didn't take.
    static constexpr platform::OSStatus eventNotHandledErr = -9874;

    // The one monitor of the process, made on first use and never destroyed.
    static SRGlobalShortcutMonitor& sharedMonitor();

    SRGlobalShortcutMonitor();
    ~SRGlobalShortcutMonitor() override;

    // Calls nest; a resume without a pause is not guarded against.
    void pause();
    void resume();
    State state() const;

    // Performs the actions of the event's hot key: noErr (0) when one
    // performed, eventNotHandledErr otherwise.
    platform::OSStatus handleEvent(const SRHotKeyEvent& event);
    // The installed handler: checks the event, then handleEvent.
    static platform::OSStatus eventHandler(const SRHotKeyEvent* event, void* monitor);

  protected:
    void didAddShortcut(const SRShortcutRef& shortcut) override;
    void willRemoveShortcut(const SRShortcutRef& shortcut) override;
    virtual void didAddEventHandler();
    virtual void didRemoveEventHandler();

  private:
    struct Registration {
        platform::Token hotKeyRef;
        std::uint32_t hotKeyId = 0;
    };

    void registerHotKeyForShortcutIfNeeded(const SRShortcutRef& shortcut);
    void unregisterHotKeyForShortcutIfNeeded(const SRShortcutRef& shortcut);
    void installEventHandlerIfNeeded();
    void removeEventHandlerIfNeeded();
    // What the hot key service calls for one of our hot keys.
    void hotKeyEvent(std::uint32_t hotKeyId, bool pressed);

    std::map<std::uint32_t, SRShortcutRef> hotKeyIdToShortcut_;
    std::map<std::pair<SRKeyCode, SRModifierFlags>, Registration> shortcutToHotKey_;
    bool carbonEventHandlerInstalled_ = false;
    long disableCounter_ = 0;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace lirixkro
