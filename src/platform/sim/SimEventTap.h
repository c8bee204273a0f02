#pragma once

#include <cstddef>
#include <functional>

#include "platform/EventTap.h"
#include "platform/HandlerList.h"

namespace platform::sim {

// Event taps on the simulated desktop: tests post events to the taps whose
// mask takes them; a switch makes creating a tap fail.
class SimEventTap final : public EventTap {
  public:
    Subscription tapCreate(EventMask mask, std::function<void(const Event&)> callback) override;

    void post(const Event& event);
    void setRefusesTaps(bool refuses) { refusesTaps_ = refuses; }
    std::size_t tapCount() const { return taps_.size(); }
    std::size_t createCount() const { return createCount_; }

  private:
    HandlerList<const Event&> taps_;
    std::size_t createCount_ = 0;
    bool refusesTaps_ = false;
};

}  // namespace platform::sim
