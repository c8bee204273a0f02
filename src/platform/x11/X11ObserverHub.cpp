#include "platform/x11/X11ObserverHub.h"

#include <algorithm>
#include <array>

namespace platform::x11 {

namespace {

constexpr std::array<const char*, 4> windowNotifications = {
    "AXUIElementDestroyed", "AXMoved", "AXTitleChanged", "AXWindowMiniaturized"};
constexpr std::array<const char*, 2> applicationOnlyNotifications = {"AXWindowCreated",
                                                                     "AXMainWindowChanged"};

bool listed(const auto& names, const std::string& notification) {
    return std::find(names.begin(), names.end(), notification) != names.end();
}

// The notifications an element can be subscribed to. An application hears
// those of its windows as well as its own.
bool supports(X11ElementKind kind, const std::string& notification) {
    switch (kind) {
        case X11ElementKind::application:
            return listed(windowNotifications, notification) ||
                   listed(applicationOnlyNotifications, notification);
        case X11ElementKind::window:
            return listed(windowNotifications, notification);
        case X11ElementKind::button:
        case X11ElementKind::systemWide:
            return false;
    }
    return false;
}

std::shared_ptr<X11Observer> ours(const AXObserverRef& observer) {
    return std::dynamic_pointer_cast<X11Observer>(observer);
}

}  // namespace

X11ObserverHub::X11ObserverHub(MainLoop& loop, const X11ElementAttributes& attributes)
    : loop_(loop), attributes_(attributes) {}

AXErrorCode X11ObserverHub::create(pid_t pid, AXObserverCallback callback,
                                   AXObserverCallbackWithInfo callbackWithInfo,
                                   AXObserverRef& observer) {
    if (pid <= 0 || (!callback && !callbackWithInfo))
        return axError::illegalArgument;
    std::erase_if(observers_, [](const auto& weak) { return weak.expired(); });
    auto created = std::make_shared<X11Observer>(pid, callback, callbackWithInfo);
    observers_.push_back(created);
    observer = std::move(created);
    return axError::success;
}

AXErrorCode X11ObserverHub::add(const AXObserverRef& observer, const AXUIElementRef& element,
                                const std::string& notification, void* refcon) {
    auto target = ours(observer);
    const auto* x11Element = X11Element::from(element);
    if (!target || !x11Element || notification.empty())
        return axError::illegalArgument;
    const auto& key = x11Element->key();
    if (!attributes_.isAlive(key))
        return axError::invalidUIElement;
    if (!supports(key.kind, notification))
        return axError::notificationUnsupported;
    if (attributes_.pidOf(key) != target->pid())
        return axError::illegalArgument;
    if (!target->add({key, notification, refcon}))
        return axError::notificationAlreadyRegistered;
    return axError::success;
}

AXErrorCode X11ObserverHub::remove(const AXObserverRef& observer, const AXUIElementRef& element,
                                   const std::string& notification) {
    auto target = ours(observer);
    const auto* x11Element = X11Element::from(element);
    if (!target || !x11Element || notification.empty())
        return axError::illegalArgument;
    if (target->remove(x11Element->key(), notification))
        return axError::success;
    if (!attributes_.isAlive(x11Element->key()))
        return axError::invalidUIElement;
    return axError::notificationNotRegistered;
}

void X11ObserverHub::setOnMainLoop(const AXObserverRef& observer, bool on) {
    if (auto target = ours(observer))
        target->setOnMainLoop(on);
}

void X11ObserverHub::windowJoined(xcb_window_t window, pid_t pid) {
    notify("AXWindowCreated", window, pid);
}

void X11ObserverHub::windowLeft(xcb_window_t window, pid_t pid) {
    notify("AXUIElementDestroyed", window, pid);
    // A gone window's subscriptions go with it.
    for (const auto& weak : observers_) {
        if (auto observer = weak.lock())
            observer->forgetWindow(window);
    }
}

void X11ObserverHub::windowMoved(xcb_window_t window, pid_t pid) {
    notify("AXMoved", window, pid);
}

void X11ObserverHub::windowRetitled(xcb_window_t window, pid_t pid) {
    notify("AXTitleChanged", window, pid);
}

void X11ObserverHub::windowMiniaturized(xcb_window_t window, pid_t pid) {
    notify("AXWindowMiniaturized", window, pid);
}

void X11ObserverHub::mainWindowChanged(pid_t pid, xcb_window_t window) {
    notify("AXMainWindowChanged", window, pid);
}

void X11ObserverHub::notify(const std::string& notification, xcb_window_t window, pid_t pid) {
    if (pid <= 0)
        return;
    const auto windowKey = X11ElementKey::forWindow(window);
    const auto applicationKey = X11ElementKey::forApplication(pid);
    AXUIElementRef element;
    for (const auto& weak : observers_) {
        auto observer = weak.lock();
        if (!observer || !observer->isOnMainLoop())
            continue;
        for (const auto& registration : observer->registrations()) {
            if (registration.notification != notification)
                continue;
            if (!(registration.element == windowKey) && !(registration.element == applicationKey)) {
                continue;
            }
            if (!element)
                element = X11Element::make(windowKey, pid);
            loop_.post([weak, element, notification, refcon = registration.refcon] {
                // An observer dropped or taken off the loop since hears nothing.
                auto target = weak.lock();
                if (target && target->isOnMainLoop()) {
                    target->call(target, element, notification, refcon);
                }
            });
        }
    }
}

}  // namespace platform::x11
