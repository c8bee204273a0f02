#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <utility>

#include "platform/Subscription.h"

namespace platform::x11 {

// Handlers of input events, in the order they were added. A handler may add
// or remove handlers, itself included, while it is being called: removal
// takes effect at once, and a handler added during a call first hears the
// next call. Calls allocate nothing.
template <typename... Args>
class InputHandlerList {
  public:
    using Handler = std::function<void(Args...)>;

    Token add(Handler handler) {
        const std::uint64_t id = ++lastId_;
        entries_.emplace(id, Entry{std::move(handler), false});
        return Token{id};
    }

    // True when the token named a handler of this list.
    bool remove(Token token) {
        auto it = entries_.find(token.id);
        if (it == entries_.end() || it->second.removed)
            return false;
        if (depth_ > 0) {
            it->second.removed = true;
            hasRemoved_ = true;
        } else {
            entries_.erase(it);
        }
        return true;
    }

    bool empty() const {
        for (const auto& [id, entry] : entries_) {
            if (!entry.removed)
                return false;
        }
        return true;
    }

    void call(Args... args) {
        const std::uint64_t newest = lastId_;
        ++depth_;
        for (auto& [id, entry] : entries_) {
            if (id > newest)
                break;
            if (!entry.removed)
                entry.handler(args...);
        }
        if (--depth_ == 0 && hasRemoved_)
            eraseRemoved();
    }

  private:
    struct Entry {
        Handler handler;
        bool removed;
    };

    void eraseRemoved() {
        std::erase_if(entries_, [](const auto& item) { return item.second.removed; });
        hasRemoved_ = false;
    }

    std::map<std::uint64_t, Entry> entries_;
    std::uint64_t lastId_ = 0;
    int depth_ = 0;
    bool hasRemoved_ = false;
};

}  // namespace platform::x11
