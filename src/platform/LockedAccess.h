#pragma once

#include <mutex>
#include <utility>

namespace platform {

// The plain accessors of a type whose fields several threads share: each
// takes the type's lock for the one read or write, so a caller never sees a
// field half written.
template <typename Lockable, typename Field>
Field readLocked(Lockable& lock, const Field& field) {
    std::lock_guard hold(lock);
    return field;
}

template <typename Lockable, typename Field, typename Value>
void writeLocked(Lockable& lock, Field& field, Value&& value) {
    std::lock_guard hold(lock);
    field = std::forward<Value>(value);
}

}  // namespace platform
