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
            handler(event);
    });
}

Token X11EventMonitors::addLocalMonitor(EventMask mask, LocalHandler handler) {
    if (!input_ || !handler)
        return Token{};
    return input_->addListener(mask, [this, handler = std::move(handler)](const Event& event) {
        if (ourWindowIsActive_())
            handler(event);
    });
}

void X11EventMonitors::removeMonitor(Token monitor) {
    if (input_ && monitor)
        input_->removeListener(monitor);
}

CGPoint X11EventMonitors::mouseLocation() const {
    return input_ ? input_->mouseLocation() : CGPoint{};
}

ModifierFlags X11EventMonitors::modifierFlags() const {
    return input_ ? input_->modifierFlags() : 0;
}

}  // namespace platform::x11
