#include "platform/sim/SimEventMonitors.h"

#include <vector>

namespace platform::sim {

namespace {

bool isMouseEvent(EventType type) {
    return type != EventType::keyDown && type != EventType::keyUp &&
           type != EventType::flagsChanged;
}

bool matches(EventMask mask, const Event& event) {
    return (mask & eventMaskFor(event.type)) != 0;
}

// The ids present now: monitors added by a handler wait for the next event,
// and removed ones are skipped by looking them up again.
template <typename Map>
std::vector<std::uint64_t> idsOf(const Map& monitors) {
    std::vector<std::uint64_t> ids;
    ids.reserve(monitors.size());
    for (const auto& entry : monitors)
        ids.push_back(entry.first);
    return ids;
}

Event keyEvent(EventType type, KeyCode keyCode, ModifierFlags flags, std::string characters,
               std::string charactersIgnoringModifiers, bool isARepeat) {
    Event event;
    event.type = type;
    event.keyCode = keyCode;
    event.modifierFlags = flags;
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
    const auto id = ++lastId_;
    globalMonitors_.emplace(id, Monitor<GlobalHandler>{mask, std::move(handler)});
    return Token{id};
}

Token SimEventMonitors::addLocalMonitor(EventMask mask, LocalHandler handler) {
    if (refusesMonitors_ || !handler)
        return Token{};
    const auto id = ++lastId_;
    localMonitors_.emplace(id, Monitor<LocalHandler>{mask, std::move(handler)});
    return Token{id};
}

void SimEventMonitors::removeMonitor(Token monitor) {
    globalMonitors_.erase(monitor.id);
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
    Event event;
    event.type = EventType::flagsChanged;
    event.keyCode = keyCode;
    event.modifierFlags = flags;
    return dispatch(event);
}

std::optional<Event> SimEventMonitors::mouseMoved(CGPoint location) {
    Event event;
    event.type = EventType::mouseMoved;
    event.modifierFlags = modifierFlags_;
    event.locationInScreen = location;
    return dispatch(event);
}

std::optional<Event> SimEventMonitors::dispatch(Event event) {
    event.timestamp = loop_.now();
    if (!isMouseEvent(event.type))
        event.locationInScreen = mouseLocation_;
    track(event);
    if (isOurApplicationActive_ && isOurApplicationActive_()) {
        return deliverToLocalMonitors(std::move(event));
    }
    deliverToGlobalMonitors(event);
    return event;
}

void SimEventMonitors::track(const Event& event) {
    if (isMouseEvent(event.type)) {
        mouseLocation_ = event.locationInScreen;
    } else {
        modifierFlags_ = event.modifierFlags & modifier::deviceIndependentMask;
    }
}

void SimEventMonitors::deliverToGlobalMonitors(const Event& event) {
    for (auto id : idsOf(globalMonitors_)) {
        auto it = globalMonitors_.find(id);
        if (it == globalMonitors_.end() || !matches(it->second.mask, event))
            continue;
        auto handler = it->second.handler;  // the handler may remove its monitor
        handler(event);
    }
}

std::optional<Event> SimEventMonitors::deliverToLocalMonitors(Event event) {
    for (auto id : idsOf(localMonitors_)) {
        auto it = localMonitors_.find(id);
        if (it == localMonitors_.end() || !matches(it->second.mask, event))
            continue;
        auto handler = it->second.handler;
        auto passed = handler(event);
        if (!passed)
            return std::nullopt;
        event = std::move(*passed);
    }
    return event;
}

}  // namespace platform::sim
