#include "platform/x11/X11EventMonitors.h"

namespace platform::x11 {

X11EventMonitors::X11EventMonitors(X11RawInput* input, OurWindowIsActive ourWindowIsActive,
                                   PixelsPerPoint pixelsPerPoint)
    : input_(input),
      ourWindowIsActive_(std::move(ourWindowIsActive)),
      pixelsPerPoint_(std::move(pixelsPerPoint)) {}

CGPoint X11EventMonitors::inPoints(CGPoint devicePixels) const {
    const double scale = pixelsPerPoint_ ? pixelsPerPoint_() : 1.0;
    if (!(scale > 0) || scale == 1.0)
        return devicePixels;
    return CGPoint{devicePixels.x / scale, devicePixels.y / scale};
}

// Only mouse events carry a location, handed out in points; key events
// pass as they came. While a move is handed out, its place is also the
// pointer's: the freshest there is, where asking the server again would
// cost a round trip per move.
template <typename Handler>
void X11EventMonitors::deliver(const Handler& handler, const Event& event) {
    if (event.type == EventType::keyDown || event.type == EventType::keyUp ||
        event.type == EventType::flagsChanged) {
        handler(event);
        return;
    }
    Event inPointsEvent = event;
    inPointsEvent.locationInScreen = inPoints(event.locationInScreen);
    if (event.type != EventType::mouseMoved) {
        handler(inPointsEvent);
        return;
    }
    const auto outer = movedTo_;
    movedTo_ = inPointsEvent.locationInScreen;
    handler(inPointsEvent);
    movedTo_ = outer;
}

X11EventMonitors::OurWindowIsActive X11EventMonitors::activeProcessIs(
    const X11ActiveWindowTracker& tracker, pid_t pid) {
    return [&tracker, pid] { return tracker.activeProcess() == pid; };
}

Token X11EventMonitors::addGlobalMonitor(EventMask mask, GlobalHandler handler) {
    if (!input_ || !handler)
        return Token{};
    return input_->addListener(mask, [this, handler = std::move(handler)](const Event& event) {
        if (!ourWindowIsActive_())
            deliver(handler, event);
    });
}

Token X11EventMonitors::addLocalMonitor(EventMask mask, LocalHandler handler) {
    if (!input_ || !handler)
        return Token{};
    return input_->addListener(mask, [this, handler = std::move(handler)](const Event& event) {
        if (ourWindowIsActive_())
            deliver(handler, event);
    });
}

void X11EventMonitors::removeMonitor(Token monitor) {
    if (input_ && monitor)
        input_->removeListener(monitor);
}

CGPoint X11EventMonitors::mouseLocation() const {
    if (movedTo_)
        return *movedTo_;
    return input_ ? inPoints(input_->mouseLocation()) : CGPoint{};
}

ModifierFlags X11EventMonitors::modifierFlags() const {
    return input_ ? input_->modifierFlags() : 0;
}

}  // namespace platform::x11
