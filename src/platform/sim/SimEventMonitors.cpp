#include "platform/sim/SimEventMonitors.h"

namespace platform::sim {

namespace {

bool isMouseEvent(EventType type) {
    return type != EventType::keyDown && type != EventType::keyUp &&
           type != EventType::flagsChanged;
}

bool matches(EventMask mask, const Event& event) {
    return (mask & eventMaskFor(event.type)) != 0;
}

// What every simulated event carries; the rest stays at its default.
Event baseEvent(EventType type, ModifierFlags flags, KeyCode keyCode = 0) {
    Event event;
    event.type = type;
    event.keyCode = keyCode;
    event.modifierFlags = flags;
    return event;
}

Event keyEvent(EventType type, KeyCode keyCode, ModifierFlags flags, std::string characters,
               std::string charactersIgnoringModifiers, bool isARepeat) {
    Event event = baseEvent(type, flags, keyCode);
    event.characters = std::move(characters);
    event.charactersIgnoringModifiers = std::move(charactersIgnoringModifiers);
    event.isARepeat = isARepeat;
    return event;
}

}  // namespace

SimEventMonitors::SimEventMonitors(MainLoop& loop, std::function<bool()> isOurApplicationActive)
    : loop_(loop), isOurApplicationActive_(std::move(isOurApplicationActive)) {}

Token SimEventMonitors::addGlobalMonitor(EventMask mask, GlobalHandler handler) {
    if (refusesMonitors_ || !handler)
        return Token{};
    return monitors_.add(
        [mask, handler = std::move(handler)](bool toOurApplication, std::optional<Event>& event) {
            if (!toOurApplication && matches(mask, *event))
                handler(*event);
        });
}

Token SimEventMonitors::addLocalMonitor(EventMask mask, LocalHandler handler) {
    if (refusesMonitors_ || !handler)
        return Token{};
    const Token token = monitors_.add(
        [mask, handler = std::move(handler)](bool toOurApplication, std::optional<Event>& event) {
            if (toOurApplication && event && matches(mask, *event))
                event = handler(*event);
        });
    localMonitors_.insert(token.id);
    return token;
}

void SimEventMonitors::removeMonitor(Token monitor) {
    monitors_.remove(monitor);
    localMonitors_.erase(monitor.id);
}

std::optional<Event> SimEventMonitors::keyDown(KeyCode keyCode, ModifierFlags flags,
                                               std::string characters,
                                               std::string charactersIgnoringModifiers,
                                               bool isARepeat) {
    return dispatch(keyEvent(EventType::keyDown, keyCode, flags, std::move(characters),
                             std::move(charactersIgnoringModifiers), isARepeat));
}

std::optional<Event> SimEventMonitors::keyUp(KeyCode keyCode, ModifierFlags flags,
                                             std::string characters,
                                             std::string charactersIgnoringModifiers) {
    return dispatch(keyEvent(EventType::keyUp, keyCode, flags, std::move(characters),
                             std::move(charactersIgnoringModifiers), false));
}

std::optional<Event> SimEventMonitors::flagsChanged(ModifierFlags flags, KeyCode keyCode) {
    return dispatch(baseEvent(EventType::flagsChanged, flags, keyCode));
}

std::optional<Event> SimEventMonitors::mouseMoved(CGPoint location) {
    Event event = baseEvent(EventType::mouseMoved, modifierFlags_);
    event.locationInScreen = location;
    return dispatch(event);
}

std::optional<Event> SimEventMonitors::dispatch(Event event) {
    event.timestamp = loop_.now();
    if (!isMouseEvent(event.type))
        event.locationInScreen = mouseLocation_;
    track(event);
    const bool toOurApplication = isOurApplicationActive_ && isOurApplicationActive_();
    std::optional<Event> passed = std::move(event);
    monitors_.call(toOurApplication, passed);
    return passed;
}

void SimEventMonitors::track(const Event& event) {
    if (isMouseEvent(event.type)) {
        mouseLocation_ = event.locationInScreen;
    } else {
        modifierFlags_ = event.modifierFlags & modifier::deviceIndependentMask;
    }
}

}  // namespace platform::sim
