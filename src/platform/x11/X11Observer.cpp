#include "platform/x11/X11Observer.h"

#include <algorithm>

namespace platform::x11 {

bool X11Observer::add(Registration registration) {
    const bool exists = std::any_of(registrations_.begin(), registrations_.end(),
                                    [&](const Registration& existing) {
                                        return existing.element == registration.element &&
                                               existing.notification == registration.notification;
                                    });
    if (exists)
        return false;
    registrations_.push_back(std::move(registration));
    return true;
}

bool X11Observer::remove(const X11ElementKey& element, const std::string& notification) {
    auto it = std::find_if(
        registrations_.begin(), registrations_.end(), [&](const Registration& existing) {
            return existing.element == element && existing.notification == notification;
        });
    if (it == registrations_.end())
        return false;
    registrations_.erase(it);
    return true;
}

void X11Observer::forgetWindow(xcb_window_t window) {
    std::erase_if(registrations_, [&](const Registration& registration) {
        return registration.element.kind != X11ElementKind::application &&
               registration.element.kind != X11ElementKind::systemWide &&
               registration.element.window == window;
    });
}

void X11Observer::call(const AXObserverRef& self, const AXUIElementRef& element,
                       const std::string& notification, void* refcon) const {
    if (callbackWithInfo_) {
        callbackWithInfo_(self, element, notification, CFValue::Dictionary{}, refcon);
    } else if (callback_) {
        callback_(self, element, notification, refcon);
    }
}

}  // namespace platform::x11
