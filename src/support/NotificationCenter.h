#pragma once

#include <any>
#include <functional>
#include <string>

#include "platform/Subscription.h"
#include "support/Signal.h"

namespace quillbox {

// A named broadcast with an optional object that says what it is about.
struct Notification {
    std::string name;
    std::any object;
};

// Named notifications within the process. Observers run on the posting
// thread, with no lock held.
class NotificationCenter {
  public:
    static NotificationCenter& defaultCenter();

    [[nodiscard]] platform::Subscription addObserver(
        std::string name, std::function<void(const Notification&)> observer);
    void post(const Notification& notification) const { posted_.emit(notification); }

  private:
    Signal<Notification> posted_;
};

}  // namespace quillbox
