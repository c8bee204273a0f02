#include "accessibility/Observer.h"

#include "accessibility/Application.h"
#include "platform/Platform.h"
#include "support/Fatal.h"

namespace corvane {

namespace {

namespace ax = platform::axError;

// Keeps the observer alive while its callback runs, when something shares
// it; the callback may drop the last other reference.
std::shared_ptr<Observer> keepAlive(Observer& observer) {
    return observer.weak_from_this().lock();
}

}  // namespace

Observer::Observer(pid_t processID, Callback callback)
    : pid_(processID), callback_(std::move(callback)) {
    const auto code = platform::accessibility().observerCreate(pid_, &plainEntry, axObserver_);
    if (code != ax::success)
        throw AXError(code);
    start();
}

Observer::Observer(pid_t processID, CallbackWithInfo callback)
    : pid_(processID), callbackWithInfo_(std::move(callback)) {
    const auto code =
        platform::accessibility().observerCreateWithInfoCallback(pid_, &entryWithInfo, axObserver_);
    if (code != ax::success)
        throw AXError(code);
    start();
}

Observer::~Observer() {
    if (!axObserver_)
        return;
    platform::accessibility().runLoopRemoveSource(axObserver_);
    axObserver_.reset();
}

void Observer::start() {
    platform::accessibility().runLoopAddSource(requireAXObserver());
}

void Observer::stop() {
    platform::accessibility().runLoopRemoveSource(requireAXObserver());
}

void Observer::addNotification(const UIElement::AXNotification& notification,
                               const UIElement& element) {
    const auto code = platform::accessibility().observerAddNotification(
        requireAXObserver(), element.element(), notification.rawValue, this);
    if (code != ax::success && code != ax::notificationAlreadyRegistered)
        throw AXError(code);
}

void Observer::removeNotification(const UIElement::AXNotification& notification,
                                  const UIElement& element) {
    const auto code = platform::accessibility().observerRemoveNotification(
        requireAXObserver(), element.element(), notification.rawValue);
    if (code != ax::success && code != ax::notificationNotRegistered)
        throw AXError(code);
}

const std::shared_ptr<Application>& Observer::application() {
    if (!application_) {
        if (pid_ < 0) {
            quillbox::fatalError("Observer has no process to make an application of: " +
                                 std::to_string(pid_));
        }
        application_ =
            std::make_shared<Application>(platform::accessibility().createApplication(pid_));
    }
    return application_;
}

const platform::AXObserverRef& Observer::requireAXObserver() const {
    if (!axObserver_)
        quillbox::fatalError("Observer has no platform observer");
    return axObserver_;
}

Observer& Observer::fromUserData(void* userData) {
    if (!userData)
        quillbox::fatalError("userData should be an Corvane.Observer");
    return *static_cast<Observer*>(userData);
}

void Observer::plainEntry(const platform::AXObserverRef&, const platform::AXUIElementRef& element,
                          const std::string& notification, void* userData) {
    auto& observer = fromUserData(userData);
    auto uiElement = std::make_shared<UIElement>(element);
    const auto alive = keepAlive(observer);
    if (!observer.callback_)
        quillbox::fatalError("Observer has no callback for a notification");
    observer.callback_(observer, uiElement, UIElement::AXNotification(notification));
}

void Observer::entryWithInfo(const platform::AXObserverRef&,
                             const platform::AXUIElementRef& element,
                             const std::string& notification,
                             const platform::CFValue::Dictionary& info, void* userData) {
    auto& observer = fromUserData(userData);
    auto uiElement = std::make_shared<UIElement>(element);
    const auto alive = keepAlive(observer);
    if (!observer.callbackWithInfo_) {
        quillbox::fatalError("Observer has no callback with information for a notification");
    }
    observer.callbackWithInfo_(observer, uiElement, UIElement::AXNotification(notification),
                               Info(info));
}

}  // namespace corvane
