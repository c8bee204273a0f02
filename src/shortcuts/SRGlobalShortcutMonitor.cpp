#include "shortcuts/SRGlobalShortcutMonitor.h"

#include "platform/Platform.h"
#include "support/Log.h"

namespace lirixkro {

using platform::OSStatus;
using quillbox::formatText;
using quillbox::Log;

namespace {

// The hot key service's answer when an event lacks the asked-for parameter.
constexpr OSStatus eventParameterNotFoundErr = -9870;

// One counter for the whole process, so that ids are never reused. Only
// touched under a monitor's lock, and there is one monitor in practice.
std::uint32_t lastHotKeyId = 0;

std::pair<SRKeyCode, SRModifierFlags> hotKeyKeyOf(const SRShortcut& shortcut) {
    return {shortcut.keyCode(), shortcut.modifierFlags()};
}

}  // namespace

SRGlobalShortcutMonitor& SRGlobalShortcutMonitor::sharedMonitor() {
    // Never destroyed: it may outlive the services it would unregister from.
    static auto* shared = new SRGlobalShortcutMonitor();
    return *shared;
}

SRGlobalShortcutMonitor::SRGlobalShortcutMonitor() = default;

SRGlobalShortcutMonitor::~SRGlobalShortcutMonitor() {
    *alive_ = false;
    std::lock_guard guard(lock());
    auto* hotKeys = platform::installed().hotKeys;
    for (const auto& [key, registration] : shortcutToHotKey_) {
        if (hotKeys)
            hotKeys->unregisterEventHotKey(registration.hotKeyRef);
    }
    shortcutToHotKey_.clear();
    hotKeyIdToShortcut_.clear();
    carbonEventHandlerInstalled_ = false;
}

void SRGlobalShortcutMonitor::pause() {
    std::lock_guard guard(lock());
    Log::debug(formatText("Global Shortcut Monitor counter: %ld -> %ld", disableCounter_,
                          disableCounter_ + 1));
    if (++disableCounter_ != 1)
        return;
    for (const auto& shortcut : shortcuts())
        unregisterHotKeyForShortcutIfNeeded(shortcut);
    removeEventHandlerIfNeeded();
}

void SRGlobalShortcutMonitor::resume() {
    std::lock_guard guard(lock());
    Log::debug(formatText("Global Shortcut Monitor counter: %ld -> %ld", disableCounter_,
                          disableCounter_ - 1));
    if (--disableCounter_ != 0)
        return;
    for (const auto& shortcut : shortcuts())
        registerHotKeyForShortcutIfNeeded(shortcut);
    installEventHandlerIfNeeded();
}

SRGlobalShortcutMonitor::State SRGlobalShortcutMonitor::state() const {
    std::lock_guard guard(lock());
    if (disableCounter_ > 0)
        return State::paused;
    return carbonEventHandlerInstalled_ ? State::active : State::idle;
}

void SRGlobalShortcutMonitor::didAddShortcut(const SRShortcutRef& shortcut) {
    registerHotKeyForShortcutIfNeeded(shortcut);
    installEventHandlerIfNeeded();
}

void SRGlobalShortcutMonitor::willRemoveShortcut(const SRShortcutRef& shortcut) {
    unregisterHotKeyForShortcutIfNeeded(shortcut);
    removeEventHandlerIfNeeded();
}

void SRGlobalShortcutMonitor::registerHotKeyForShortcutIfNeeded(const SRShortcutRef& shortcut) {
    if (shortcutToHotKey_.count(hotKeyKeyOf(*shortcut)))
        return;
    if (shortcut->keyCode() == SRKeyCodeNone) {
        Log::error("#Error Shortcut without a key code cannot be registered as Carbon hot key");
        return;
    }
    const std::uint32_t hotKeyId = ++lastHotKeyId;
    Log::debug("Registering Carbon hot key");
    platform::Token hotKeyRef;
    const OSStatus status = platform::hotKeys().registerEventHotKey(
        static_cast<platform::KeyCode>(shortcut->carbonKeyCode()), shortcut->carbonModifierFlags(),
        [this, alive = std::weak_ptr<bool>(alive_), hotKeyId](bool pressed) {
            if (alive.lock())
                hotKeyEvent(hotKeyId, pressed);
        },
        hotKeyRef);
    if (status != 0 || !hotKeyRef) {
        Log::fault(formatText("#Critical Failed to register Carbon hot key: %d", status));
        return;
    }
    Log::debug(formatText("Registered Carbon hot key %u", hotKeyId));
    shortcutToHotKey_[hotKeyKeyOf(*shortcut)] = Registration{hotKeyRef, hotKeyId};
    hotKeyIdToShortcut_[hotKeyId] = shortcut;
}

void SRGlobalShortcutMonitor::unregisterHotKeyForShortcutIfNeeded(const SRShortcutRef& shortcut) {
    auto found = shortcutToHotKey_.find(hotKeyKeyOf(*shortcut));
    if (found == shortcutToHotKey_.end())
        return;
    const Registration registration = found->second;
    Log::debug(formatText("Removing Carbon hot key %u", registration.hotKeyId));
    const OSStatus status = platform::hotKeys().unregisterEventHotKey(registration.hotKeyRef);
    if (status != 0) {
        Log::fault(formatText("#Critical Failed to unregister Carbon hot key %u: %d",
                              registration.hotKeyId, status));
    } else {
        Log::debug(formatText("Unregistered Carbon hot key %u", registration.hotKeyId));
    }
    shortcutToHotKey_.erase(found);
    hotKeyIdToShortcut_.erase(registration.hotKeyId);
}

// The hot key service has one dispatcher for the process; the handler is
// this monitor's turn on it, so installing and removing it can't fail here.
void SRGlobalShortcutMonitor::installEventHandlerIfNeeded() {
    if (carbonEventHandlerInstalled_ || disableCounter_ >= 1 || shortcutToHotKey_.empty())
        return;
    Log::debug("Installing Carbon hot key event handler");
    carbonEventHandlerInstalled_ = true;
    didAddEventHandler();
}

void SRGlobalShortcutMonitor::removeEventHandlerIfNeeded() {
    if (!carbonEventHandlerInstalled_ || (disableCounter_ < 1 && !shortcutToHotKey_.empty()))
        return;
    Log::debug("Removing Carbon hot key event handler");
    carbonEventHandlerInstalled_ = false;
    didRemoveEventHandler();
}

void SRGlobalShortcutMonitor::didAddEventHandler() {
    Log::debug("Added Carbon HotKey Event Handler");
}

void SRGlobalShortcutMonitor::didRemoveEventHandler() {
    Log::debug("Removed Carbon HotKey Event Handler");
}

void SRGlobalShortcutMonitor::hotKeyEvent(std::uint32_t hotKeyId, bool pressed) {
    {
        std::lock_guard guard(lock());
        // Without the handler the service has no one to deliver to.
        if (!carbonEventHandlerInstalled_)
            return;
    }
    SRHotKeyEvent event;
    event.eventKind =
        pressed ? SRHotKeyEvent::hotKeyPressedKind : SRHotKeyEvent::hotKeyReleasedKind;
    event.hotKeyID = SREventHotKeyID{signature, hotKeyId};
    eventHandler(&event, this);
}

OSStatus SRGlobalShortcutMonitor::eventHandler(const SRHotKeyEvent* event, void* monitor) {
    if (!event) {
        Log::error("#Error Event is NULL");
        return eventNotHandledErr;
    }
    if (event->eventClass != SRHotKeyEvent::keyboardClass) {
        Log::error("#Error Not a keyboard event");
        return eventNotHandledErr;
    }
    return static_cast<SRGlobalShortcutMonitor*>(monitor)->handleEvent(*event);
}

OSStatus SRGlobalShortcutMonitor::handleEvent(const SRHotKeyEvent& event) {
    quillbox::LogActivity activity("-[SRGlobalShortcutMonitor handleEvent:]");
    std::lock_guard guard(lock());
    if (disableCounter_ >= 1) {
        Log::debug("Monitoring is currently disabled");
        return eventNotHandledErr;
    }
    if (!event.hotKeyID) {
        Log::fault(formatText("#Critical Failed to get hot key ID: %d", eventParameterNotFoundErr));
        return eventNotHandledErr;
    }
    const SREventHotKeyID hotKeyID = *event.hotKeyID;
    if (hotKeyID.id == 0 || hotKeyID.signature != signature) {
        Log::error(formatText("#Error Unexpected hot key with id %u and signature: %u", hotKeyID.id,
                              hotKeyID.signature));
        return eventNotHandledErr;
    }
    auto found = hotKeyIdToShortcut_.find(hotKeyID.id);
    if (found == hotKeyIdToShortcut_.end()) {
        Log::debug(formatText("Unregistered hot key with id %u and signature %u", hotKeyID.id,
                              hotKeyID.signature));
        return eventNotHandledErr;
    }
    KeyEvent keyEvent;
    if (event.eventKind == SRHotKeyEvent::hotKeyPressedKind) {
        keyEvent = KeyEvent::keyDown;
    } else if (event.eventKind == SRHotKeyEvent::hotKeyReleasedKind) {
        keyEvent = KeyEvent::keyUp;
    } else {
        Log::error(formatText("#Error Unexpected key event of type %u", event.eventKind));
        return eventNotHandledErr;
    }
    const SRShortcutRef shortcut = found->second;
    if (enabledActionsForShortcut(*shortcut, keyEvent).empty()) {
        Log::debug("No actions for the shortcut");
        return eventNotHandledErr;
    }
    return performActions(*shortcut, keyEvent, nullptr) ? 0 : eventNotHandledErr;
}

}  // namespace lirixkro
