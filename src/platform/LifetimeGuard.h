#pragma once

#include <memory>
#include <type_traits>
#include <utility>

namespace platform {

// Lets callbacks that may run after their object is gone (tasks posted to
// the main loop, handlers kept by another object's list) find out whether it
// still lives. The object keeps the guard as its last member, so that the
// guard ends first when the object is destroyed:
//
//     loop.post(lifetime_.guard([this] { refresh(); }));
//
// The guard only tells; it doesn't keep the object alive.
class LifetimeGuard {
  public:
    LifetimeGuard() = default;
    LifetimeGuard(const LifetimeGuard&) = delete;
    LifetimeGuard& operator=(const LifetimeGuard&) = delete;

    // A promise that the object still lives, checked where the callback runs.
    class Watch {
      public:
        Watch() = default;
        bool alive() const { return !token_.expired(); }

      private:
        friend class LifetimeGuard;
        explicit Watch(std::weak_ptr<const void> token) : token_(std::move(token)) {}
        std::weak_ptr<const void> token_;
    };

    Watch watch() const { return Watch(token_); }

    // The callback, made to do nothing once the object is gone. It returns
    // nothing: a callback whose answer matters decides itself what to
    // answer for a gone object, through watch().
    template <typename Callback>
    auto guard(Callback callback) const {
        return [watch = watch(), callback = std::move(callback)](auto&&... args) mutable {
            static_assert(std::is_void_v<decltype(callback(std::forward<decltype(args)>(args)...))>,
                          "a guarded callback returns nothing");
            if (watch.alive())
                callback(std::forward<decltype(args)>(args)...);
        };
    }

  private:
    std::shared_ptr<const void> token_ = std::make_shared<char>(0);
};

}  // namespace platform
