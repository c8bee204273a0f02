#pragma once

#include <cstdint>
#include <functional>
#include <utility>

namespace platform {

// The id of a registration with a platform service (a monitor, a
// notification observer, a timer). Zero is the empty token: removing it is
// harmless.
struct Token {
    std::uint64_t id = 0;
    explicit operator bool() const { return id != 0; }
    friend bool operator==(const Token&, const Token&) = default;
};

// A registration that ends when this object is destroyed or cancelled, like a
// cancellable subscription.
class Subscription {
  public:
    Subscription() = default;
    explicit Subscription(std::function<void()> cancel) : cancel_(std::move(cancel)) {}
    Subscription(Subscription&& other) noexcept : cancel_(std::exchange(other.cancel_, {})) {}
    Subscription& operator=(Subscription&& other) noexcept {
        if (this != &other) {
            cancel();
            cancel_ = std::exchange(other.cancel_, {});
        }
        return *this;
    }
    Subscription(const Subscription&) = delete;
    Subscription& operator=(const Subscription&) = delete;
    ~Subscription() { cancel(); }

    void cancel() {
        if (auto cancel = std::exchange(cancel_, {}))
            cancel();
    }
    explicit operator bool() const { return static_cast<bool>(cancel_); }

  private:
    std::function<void()> cancel_;
};

}  // namespace platform
