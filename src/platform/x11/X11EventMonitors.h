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
    // Device pixels per point, asked afresh each time (a display's scale
    // may change while the program runs); none means one.
    using PixelsPerPoint = std::function<double()>;

    // Without raw input every monitor is refused.
    X11EventMonitors(X11RawInput* input, OurWindowIsActive ourWindowIsActive,
                     PixelsPerPoint pixelsPerPoint = {});

    // The usual test: the active window's process is this one.
    static OurWindowIsActive activeProcessIs(const X11ActiveWindowTracker& tracker, pid_t pid);

    Token addGlobalMonitor(EventMask mask, GlobalHandler handler) override;
    Token addLocalMonitor(EventMask mask, LocalHandler handler) override;
    void removeMonitor(Token monitor) override;

    CGPoint mouseLocation() const override;
    ModifierFlags modifierFlags() const override;

  private:
    CGPoint inPoints(CGPoint devicePixels) const;
    template <typename Handler>
    void deliver(const Handler& handler, const Event& event);

    X11RawInput* input_;
    OurWindowIsActive ourWindowIsActive_;
    PixelsPerPoint pixelsPerPoint_;
    // The place, in points, of the mouse-moved event being handed out.
    std::optional<CGPoint> movedTo_;
};

}  // namespace platform::x11
