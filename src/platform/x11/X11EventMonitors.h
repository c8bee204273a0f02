#pragma once

#include <sys/types.h>

#include <functional>
#include <optional>

#include "platform/EventMonitors.h"
#include "platform/x11/X11ActiveWindowTracker.h"
#include "platform/x11/X11RawInput.h"

namespace platform::x11 {

// Event monitors over the desktop's raw input. Global monitors hear the
// events while another application is active, local ones while one of our
// own windows is, as the platform sorts them. A local monitor's answer can't
// hold an event back here: the window has it already.
class X11EventMonitors final : public EventMonitors {
  public:
    // Whether the active window is one of ours.
    using OurWindowIsActive = std::function<bool()>;

    // Without raw input every monitor is refused.
    X11EventMonitors(X11RawInput* input, OurWindowIsActive ourWindowIsActive);

    // The usual test: the active window's process is this one.
    static OurWindowIsActive activeProcessIs(const X11ActiveWindowTracker& tracker, pid_t pid);

    Token addGlobalMonitor(EventMask mask, GlobalHandler handler) override;
    Token addLocalMonitor(EventMask mask, LocalHandler handler) override;
    void removeMonitor(Token monitor) override;

    CGPoint mouseLocation() const override;
    ModifierFlags modifierFlags() const override;

  private:
    // Runs the handler with the event's place as the pointer's place.
    template <typename Handler>
    void deliver(const Handler& handler, const Event& event);

    X11RawInput* input_;
    OurWindowIsActive ourWindowIsActive_;
    // The place of the mouse-moved event being handed out: the freshest
    // there is, and asking the server again would cost a round trip per
    // move.
    std::optional<CGPoint> movedTo_;
};

}  // namespace platform::x11
