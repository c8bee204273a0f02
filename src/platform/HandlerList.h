#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

#include "platform/Subscription.h"

namespace platform {

// Handlers called in the order they were added: observers, monitors,
// listeners, the slots of a signal. Every list of callbacks in the program
// is one of these, so that they all keep one rule for changes made while the
// handlers are being called:
//
//   a handler removed during a call is not called afterwards, not even later
//   in the same round; a handler added during a call is first called in the
//   next round.
//
// A handler may remove itself, add handlers, call the list again (the inner
// round follows the same rule) or destroy the list with its owner, which
// ends the round.
// Handlers are called with no lock held; adding, removing and calling are
// safe from any thread, and handlers run on the calling thread. A call
// allocates nothing.
template <typename... Args>
class HandlerList {
  public:
    using Handler = std::function<void(Args...)>;

    HandlerList() = default;
    // A round under way when the list goes calls no further handler.
    ~HandlerList() { state_->clear(); }
    HandlerList(const HandlerList&) = delete;
    HandlerList& operator=(const HandlerList&) = delete;

    // An empty handler adds nothing and gives the empty token.
    Token add(Handler handler) {
        if (!handler)
            return Token{};
        std::lock_guard lock(state_->mutex);
        const std::uint64_t id = ++state_->lastId;
        state_->handlers.emplace(id, std::make_shared<Handler>(std::move(handler)));
        return Token{id};
    }

    // Adds a handler that is removed when the subscription ends, which is
    // harmless after the list is gone.
    [[nodiscard]] Subscription subscribe(Handler handler) {
        const Token token = add(std::move(handler));
        return Subscription([weak = std::weak_ptr<State>(state_), token] {
            if (auto state = weak.lock())
                state->remove(token);
        });
    }

    // True when the token named a handler of this list.
    bool remove(Token token) { return state_->remove(token); }
    // Removes every handler; a round under way calls no further one.
    void clear() { state_->clear(); }

    bool contains(Token token) const {
        std::lock_guard lock(state_->mutex);
        return state_->handlers.contains(token.id);
    }
    std::size_t size() const {
        std::lock_guard lock(state_->mutex);
        return state_->handlers.size();
    }
    bool empty() const { return size() == 0; }

    // Each handler is looked up again just before it is called, which is
    // what keeps a removed one from being called; the handlers present when
    // the round began are the newest it calls.
    void call(Args... args) const {
        const std::shared_ptr<State> state = state_;  // the owner may go during the round
        std::uint64_t last;
        {
            std::lock_guard lock(state->mutex);
            last = state->lastId;
        }
        std::uint64_t previous = 0;
        while (auto handler = state->next(previous, last))
            (*handler)(args...);
    }

  private:
    struct State {
        bool remove(Token token) {
            std::shared_ptr<Handler> removed;  // destroyed after the lock is released
            std::lock_guard lock(mutex);
            const auto it = handlers.find(token.id);
            if (it == handlers.end())
                return false;
            removed = std::move(it->second);
            handlers.erase(it);
            return true;
        }

        void clear() {
            std::map<std::uint64_t, std::shared_ptr<Handler>> cleared;  // destroyed unlocked
            std::lock_guard lock(mutex);
            cleared.swap(handlers);
        }

        // The handler after `previous` and no later than `last`; `previous`
        // moves to it.
        std::shared_ptr<Handler> next(std::uint64_t& previous, std::uint64_t last) {
            std::lock_guard lock(mutex);
            const auto it = handlers.upper_bound(previous);
            if (it == handlers.end() || it->first > last)
                return nullptr;
            previous = it->first;
            return it->second;
        }

        mutable std::mutex mutex;
        std::uint64_t lastId = 0;
        std::map<std::uint64_t, std::shared_ptr<Handler>> handlers;
    };

    std::shared_ptr<State> state_ = std::make_shared<State>();
};

}  // namespace platform
