#pragma once

#include <cstddef>

#include "platform/HandlerList.h"
#include "platform/Subscription.h"

namespace quillbox {

// A change signal that views and models subscribe to. Connecting gives a
// subscription that disconnects when it ends; it stays safe to end after the
// signal is gone. The slots follow the rule of platform::HandlerList: one
// disconnected during an emit is not called afterwards, one connected during
// an emit first hears the next. Slots are called with no lock held, so a
// slot may connect, disconnect or emit again; safe to use from any thread,
// slots run on the emitting thread.
template <typename... Args>
class Signal {
  public:
    using Slot = typename platform::HandlerList<const Args&...>::Handler;

    Signal() = default;
    Signal(const Signal&) = delete;
    Signal& operator=(const Signal&) = delete;

    [[nodiscard]] platform::Subscription connect(Slot slot) {
        return slots_.subscribe(std::move(slot));
    }
    void emit(const Args&... args) const { slots_.call(args...); }
    std::size_t slotCount() const { return slots_.size(); }

  private:
    platform::HandlerList<const Args&...> slots_;
};

}  // namespace quillbox
