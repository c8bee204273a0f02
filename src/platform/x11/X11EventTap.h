#pragma once

#include "platform/EventTap.h"
#include "platform/LifetimeGuard.h"
#include "platform/x11/X11RawInput.h"

namespace platform::x11 {

// A listen-only tap: every raw key and pointer event of the desktop,
// whichever application is active.
class X11EventTap final : public EventTap {
  public:
    // Without raw input every tap is refused.
    explicit X11EventTap(X11RawInput* input) : input_(input) {}
    X11EventTap(const X11EventTap&) = delete;
    X11EventTap& operator=(const X11EventTap&) = delete;

    Subscription tapCreate(EventMask mask, std::function<void(const Event&)> callback) override;

  private:
    X11RawInput* input_;
    LifetimeGuard lifetime_;
};

}  // namespace platform::x11
