#pragma once

#include <sys/types.h>

#include <functional>
#include <memory>
#include <optional>

#include "accessibility/UIElement.h"
#include "platform/Accessibility.h"

namespace corvane {

class Application;

// Delivers the accessibility notifications of one process to a callback on
// the main loop. A new observer is running: its source is on the loop.
// Dropping it stops it; registrations live on in the platform until then.
class Observer : public std::enable_shared_from_this<Observer> {
  public:
    using Callback =
        std::function<void(Observer& observer, const std::shared_ptr<UIElement>& element,
                           const UIElement::AXNotification& notification)>;
    using Info = std::optional<platform::CFValue::Dictionary>;
    using CallbackWithInfo =
        std::function<void(Observer& observer, const std::shared_ptr<UIElement>& element,
                           const UIElement::AXNotification& notification, const Info& info)>;

    // Throw the platform's code when it can't make an observer.
    Observer(pid_t processID, Callback callback);
    Observer(pid_t processID, CallbackWithInfo callback);
    ~Observer();
    Observer(const Observer&) = delete;
    Observer& operator=(const Observer&) = delete;

    pid_t pid() const { return pid_; }
    const platform::AXObserverRef& axObserver() const { return axObserver_; }

    void start();
    void stop();

    // Adding what is already there and removing what isn't are no errors.
    void addNotification(const UIElement::AXNotification& notification, const UIElement& element);
    void removeNotification(const UIElement::AXNotification& notification,
                            const UIElement& element);

    // The observed process's application element, made once.
    const std::shared_ptr<Application>& application();

  private:
    static void plainEntry(const platform::AXObserverRef& observer,
                           const platform::AXUIElementRef& element, const std::string& notification,
                           void* userData);
    static void entryWithInfo(const platform::AXObserverRef& observer,
                              const platform::AXUIElementRef& element,
                              const std::string& notification,
                              const platform::CFValue::Dictionary& info, void* userData);
    static Observer& fromUserData(void* userData);
    const platform::AXObserverRef& requireAXObserver() const;

    pid_t pid_;
    platform::AXObserverRef axObserver_;
    Callback callback_;
    CallbackWithInfo callbackWithInfo_;
    std::shared_ptr<Application> application_;
};

}  // namespace corvane
