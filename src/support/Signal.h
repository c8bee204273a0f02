#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

#include "platform/Subscription.h"

namespace quillbox {

// A change signal that views and models subscribe to. Connecting gives a
// subscription that disconnects when it ends; it stays safe to end after the
// signal is gone. emit() calls the slots connected when it starts, with no
// lock held, so a slot may connect, disconnect or emit again. Safe to use
// from any thread; slots run on the emitting thread.
template <typename... Args>
class Signal {
  public:
    using Slot = std::function<void(Args...)>;

    Signal() = default;
    Signal(const Signal&) = delete;
    Signal& operator=(const Signal&) = delete;

    [[nodiscard]] platform::Subscription connect(Slot slot) {
        std::uint64_t id;
        {
            std::lock_guard lock(state_->mutex);
            id = ++state_->lastId;
            state_->slots.emplace(id, std::make_shared<const Slot>(std::move(slot)));
        }
        return platform::Subscription([weak = std::weak_ptr<State>(state_), id] {
            if (auto state = weak.lock()) {
                std::lock_guard lock(state->mutex);
                state->slots.erase(id);
            }
        });
    }

    void emit(const Args&... args) const {
        for (const auto& slot : snapshot())
            (*slot)(args...);
    }

    std::size_t slotCount() const {
        std::lock_guard lock(state_->mutex);
        return state_->slots.size();
    }

  private:
    struct State {
        std::mutex mutex;
        std::uint64_t lastId = 0;
        std::map<std::uint64_t, std::shared_ptr<const Slot>> slots;
    };

    std::vector<std::shared_ptr<const Slot>> snapshot() const {
        std::lock_guard lock(state_->mutex);
        std::vector<std::shared_ptr<const Slot>> slots;
        slots.reserve(state_->slots.size());
        for (const auto& entry : state_->slots)
            slots.push_back(entry.second);
        return slots;
    }

    std::shared_ptr<State> state_ = std::make_shared<State>();
};

}  // namespace quillbox
