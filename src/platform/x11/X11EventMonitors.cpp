#include "platform/x11/X11EventMonitors.h"

namespace platform::x11 {

X11EventMonitors::X11EventMonitors(X11RawInput* input, OurWindowIsActive ourWindowIsActive)
    : input_(input), ourWindowIsActive_(std::move(ourWindowIsActive)) {}

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

template <typename Handler>
void X11EventMonitors::deliver(const Handler& handler, const Event& event) {
    if (event.type != EventType::mouseMoved) {
        handler(event);
        return;
    }
    const auto outer = movedTo_;
    movedTo_ = event.locationInScreen;
    handler(event);
    movedTo_ = outer;
}

void X11EventMonitors::removeMonitor(Token monitor) {
    if (input_ && monitor)
        input_->removeListener(monitor);
}

CGPoint X11EventMonitors::mouseLocation() const {
    if (movedTo_)
        return *movedTo_;
    return input_ ? input_->mouseLocation() : CGPoint{};
}

ModifierFlags X11EventMonitors::modifierFlags() const {
    return input_ ? input_->modifierFlags() : 0;
}

}  // namespace platform::x11
