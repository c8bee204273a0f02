#include "shortcuts/SRAXGlobalShortcutMonitor.h"

#include "platform/Platform.h"
#include "shortcuts/SRKeyEventType.h"
#include "support/Log.h"

namespace lirixkro {

using platform::Event;
using platform::EventType;
using quillbox::formatText;
using quillbox::Log;

std::shared_ptr<SRAXGlobalShortcutMonitor> SRAXGlobalShortcutMonitor::make() {
    return makeWithTapOptions(SREventTapOptions::defaultTap);
}

std::shared_ptr<SRAXGlobalShortcutMonitor> SRAXGlobalShortcutMonitor::makeWithTapOptions(
    SREventTapOptions options) {
    std::shared_ptr<SRAXGlobalShortcutMonitor> monitor(new SRAXGlobalShortcutMonitor(options));
    if (!monitor->createTap()) {
        Log::fault("#Critical Unable to create event tap: make sure Accessibility is enabled");
        return nullptr;
    }
    return monitor;
}

SRAXGlobalShortcutMonitor::SRAXGlobalShortcutMonitor(SREventTapOptions options)
    : options_(options) {}

SRAXGlobalShortcutMonitor::~SRAXGlobalShortcutMonitor() {
    *alive_ = false;
}

bool SRAXGlobalShortcutMonitor::createTap() {
    auto* tap = platform::installed().eventTap;
    if (!tap)
        return false;
    eventTap_ =
        tap->tapCreate(eventMask, [this, alive = std::weak_ptr<bool>(alive_)](const Event& event) {
            if (alive.lock())
                tapCallback(static_cast<std::int64_t>(event.type), event);
        });
    // The seam's taps listen only; see the class comment.
    activelyFiltering_ = false;
    return static_cast<bool>(eventTap_);
}

bool SRAXGlobalShortcutMonitor::isTapEnabled() const {
    std::lock_guard guard(lock());
    return tapEnabled_;
}

void SRAXGlobalShortcutMonitor::setTapEnabled(bool enabled) {
    tapEnabled_ = enabled;
}

void SRAXGlobalShortcutMonitor::didAddShortcut(const SRShortcutRef& /*shortcut*/) {
    if (distinctShortcutCount() > 0)
        setTapEnabled(true);
}

void SRAXGlobalShortcutMonitor::willRemoveShortcut(const SRShortcutRef& shortcut) {
    if (distinctShortcutCount() == 1 && countOfShortcut(*shortcut) == 1)
        setTapEnabled(false);
}

std::optional<Event> SRAXGlobalShortcutMonitor::tapCallback(std::int64_t type, const Event& event) {
    if (type == tapDisabledByTimeout || type == tapDisabledByUserInput) {
        Log::error(formatText("#Error #Developer The system disabled event tap due to %u",
                              static_cast<unsigned>(type)));
        std::lock_guard guard(lock());
        setTapEnabled(true);
        return event;
    }
    if (type < static_cast<std::int64_t>(EventType::keyDown) ||
        type > static_cast<std::int64_t>(EventType::flagsChanged)) {
        Log::error(formatText("#Error #Developer Unexpected event of type %u",
                              static_cast<unsigned>(type)));
        return event;
    }
    {
        std::lock_guard guard(lock());
        if (!tapEnabled_)
            return event;
    }
    return handleEvent(event);
}

std::optional<Event> SRAXGlobalShortcutMonitor::handleEvent(const Event& event) {
    quillbox::LogActivity activity("-[SRAXGlobalShortcutMonitor handleEvent:]");
    const SRKeyCode keyCode = event.type == EventType::flagsChanged ? SRKeyCodeNone : event.keyCode;
    const auto shortcut =
        SRShortcut::shortcutWithCode(keyCode, event.modifierFlags & SRCocoaModifierFlagsMask);
    const EventType keyEvent =
        SR_keyEventTypeForEventType(event.type, event.keyCode, event.modifierFlags);
    std::lock_guard guard(lock());
    if (!performActions(*shortcut, keyEvent, nullptr))
        return event;
    if (activelyFiltering_)
        return std::nullopt;
    if (options_ == SREventTapOptions::listenOnly) {
        Log::error("#Developer #Error The monitor is not configured to actively filter events");
    }
    return event;
}

}  // namespace lirixkro
