#include <algorithm>

#include "platform/sim/SimAccessibility.h"

// Observers of the simulated processes and the delivery of notifications.

namespace platform::sim {

namespace ax = axError;

class SimAccessibility::Observer final : public AXObserverHandle {
  public:
    pid_t pid = 0;
    AXObserverCallback callback = nullptr;
    AXObserverCallbackWithInfo callbackWithInfo = nullptr;
    bool sourceOnLoop = false;
    // What is registered, on which element, with the user data to hand back.
    std::map<std::pair<SimAXElementKey, std::string>, void*> registrations;
};

std::shared_ptr<SimAccessibility::Observer> SimAccessibility::observerOf(
    const AXObserverRef& observer) const {
    return std::dynamic_pointer_cast<Observer>(observer);
}

AXErrorCode SimAccessibility::makeObserver(pid_t pid, AXObserverCallback callback,
                                           AXObserverCallbackWithInfo callbackWithInfo,
                                           AXObserverRef& out) {
    if (auto answer = intercept(SimAXCall::observerCreate, nullptr))
        return answer->code;
    if (pid <= 0)
        return ax::illegalArgument;
    auto observer = std::make_shared<Observer>();
    observer->pid = pid;
    observer->callback = callback;
    observer->callbackWithInfo = callbackWithInfo;
    std::erase_if(observers_, [](const auto& weak) { return weak.expired(); });
    observers_.push_back(observer);
    out = std::move(observer);
    return ax::success;
}

AXErrorCode SimAccessibility::observerCreate(pid_t pid, AXObserverCallback callback,
                                             AXObserverRef& observer) {
    return makeObserver(pid, callback, nullptr, observer);
}

AXErrorCode SimAccessibility::observerCreateWithInfoCallback(pid_t pid,
                                                             AXObserverCallbackWithInfo callback,
                                                             AXObserverRef& observer) {
    return makeObserver(pid, nullptr, callback, observer);
}

SimAccessibility::Registration SimAccessibility::registration(SimAXCall call,
                                                              const AXObserverRef& observer,
                                                              const AXUIElementRef& element,
                                                              const std::string& notification) {
    if (auto answer = intercept(call, element, notification))
        return {answer->code, nullptr, {}};
    auto simulated = observerOf(observer);
    if (!simulated)
        return {ax::invalidUIElementObserver, nullptr, {}};
    const auto* found = find(element);
    if (!found)
        return {ax::invalidUIElement, nullptr, {}};
    return {ax::success, simulated, dynamic_cast<const SimAXUIElement&>(*found->handle).key()};
}

AXErrorCode SimAccessibility::observerAddNotification(const AXObserverRef& observer,
                                                      const AXUIElementRef& element,
                                                      const std::string& notification,
                                                      void* refcon) {
    auto [code, simulated, key] =
        registration(SimAXCall::observerAddNotification, observer, element, notification);
    if (code != ax::success)
        return code;
    if (key.pid != simulated->pid)
        return ax::illegalArgument;
    if (!notification.starts_with("AX") || refusedNotifications_.count(notification)) {
        return ax::notificationUnsupported;
    }
    const bool added =
        simulated->registrations.emplace(std::pair{key, notification}, refcon).second;
    return added ? ax::success : ax::notificationAlreadyRegistered;
}

AXErrorCode SimAccessibility::observerRemoveNotification(const AXObserverRef& observer,
                                                         const AXUIElementRef& element,
                                                         const std::string& notification) {
    auto [code, simulated, key] =
        registration(SimAXCall::observerRemoveNotification, observer, element, notification);
    if (code != ax::success)
        return code;
    const bool removed = simulated->registrations.erase({key, notification}) > 0;
    return removed ? ax::success : ax::notificationNotRegistered;
}

void SimAccessibility::runLoopAddSource(const AXObserverRef& observer) {
    if (auto simulated = observerOf(observer))
        simulated->sourceOnLoop = true;
}

void SimAccessibility::runLoopRemoveSource(const AXObserverRef& observer) {
    if (auto simulated = observerOf(observer))
        simulated->sourceOnLoop = false;
}

std::size_t SimAccessibility::liveObserverCount() const {
    return static_cast<std::size_t>(std::count_if(
        observers_.begin(), observers_.end(), [](const auto& weak) { return !weak.expired(); }));
}

void SimAccessibility::refuseNotification(const std::string& notification) {
    refusedNotifications_.insert(notification);
}

void SimAccessibility::postNotification(const AXUIElementRef& element,
                                        const std::string& notification, CFValue::Dictionary info) {
    const auto* simulated = dynamic_cast<const SimAXUIElement*>(element.get());
    if (simulated)
        notify(simulated->key(), notification, std::move(info));
}

// A notification reaches the observers registered for it on the element or
// on any element above it, once per observer. Which observers is decided
// now; they get it one turn later, if their source is still on the loop.
void SimAccessibility::notify(const SimAXElementKey& source, const std::string& notification,
                              CFValue::Dictionary info) {
    std::vector<SimAXElementKey> chain;
    AXUIElementRef handle;
    for (std::optional<SimAXElementKey> key = source; key;) {
        chain.push_back(*key);
        const auto* element = find(*key);
        if (!handle)
            handle = element ? element->handle : std::make_shared<SimAXUIElement>(*key);
        key = element ? element->parent : std::nullopt;
    }

    struct Target {
        std::weak_ptr<Observer> observer;
        void* refcon;
    };
    std::vector<Target> targets;
    for (const auto& weak : observers_) {
        auto observer = weak.lock();
        if (!observer || observer->pid != source.pid)
            continue;
        for (const auto& key : chain) {
            auto it = observer->registrations.find({key, notification});
            if (it == observer->registrations.end())
                continue;
            targets.push_back({observer, it->second});
            break;
        }
    }
    if (targets.empty())
        return;

    loop_.post([targets = std::move(targets), handle, notification, info = std::move(info)] {
        for (const auto& target : targets) {
            auto observer = target.observer.lock();
            if (!observer || !observer->sourceOnLoop)
                continue;
            const AXObserverRef platformObserver = observer;
            if (observer->callback) {
                observer->callback(platformObserver, handle, notification, target.refcon);
            } else if (observer->callbackWithInfo) {
                observer->callbackWithInfo(platformObserver, handle, notification, info,
                                           target.refcon);
            }
        }
    });
}

}  // namespace platform::sim
