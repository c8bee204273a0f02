#include "listwindow/InteractionController.h"

#include "support/StandardOutput.h"

namespace tarnwick {

namespace {

using corvane::AXError;
using corvane::UIElement;
using Notification = UIElement::AXNotification;

const char* caseName(InteractionController::Error::Kind kind) {
    using Kind = InteractionController::Error::Kind;
    switch (kind) {
        case Kind::axError:
            return "axError";
        case Kind::other:
            return "other";
        case Kind::needPermission:
            return "needPermission";
        case Kind::cannotRetrieveApp:
            return "cannotRetrieveApp";
        case Kind::cannotCreateObserver:
            return "cannotCreateObserver";
    }
    return "unknown";
}

// A window created after the subscription is followed on its own: its
// closing, moving and retitling. Windows that existed before aren't.
void followNewWindow(corvane::Observer& observer, const UIElement& window) {
    try {
        for (const auto* notification :
             {&Notification::uiElementDestroyed, &Notification::moved, &Notification::titleChanged})
            observer.addNotification(*notification, window);
    } catch (const AXError& error) {
        quillbox::printLine("Error observing " + window.description() + ": " + error.description());
    }
}

}  // namespace

InteractionController::Error::Error(Kind kind, std::optional<AXError> code,
                                    std::exception_ptr underlying)
    : kind_(kind), code_(std::move(code)), underlying_(std::move(underlying)) {
    printed_ = caseName(kind_);
    if (code_)
        printed_ += "(" + code_->debugDescription() + ")";
}

std::string InteractionController::Error::description() const {
    return printed_;
}

std::string InteractionController::Error::localizedDescription() const {
    return "The operation couldn\u2019t be completed. (tarnwick.InteractionController.Error "
           "error " +
           std::to_string(static_cast<int>(kind_)) + ".)";
}

InteractionController::InteractionController(
    std::shared_ptr<platform::WindowController> mainWindowController)
    : mainWindowController_(std::move(mainWindowController)) {}

std::vector<InteractionController::WindowRef> InteractionController::windows(
    const corvane::Application& application) const {
    if (!UIElement::isProcessTrusted(false))
        throw Error::needPermission();
    try {
        return application.windows().value_or(std::vector<WindowRef>{});
    } catch (const AXError& error) {
        throw Error::axError(error);
    }
}

std::shared_ptr<corvane::Observer> InteractionController::observe(
    const corvane::Application& application, OnChange onChange) const {
    auto observer = application.createObserver(corvane::Observer::Callback(
        [onChange = std::move(onChange)](corvane::Observer& source,
                                         const std::shared_ptr<UIElement>& element,
                                         const Notification& notification) {
            // The list is refreshed before the new window's subscriptions.
            onChange(source, element, notification);
            if (notification == Notification::windowCreated && element)
                followNewWindow(source, *element);
        }));
    if (!observer)
        throw Error::cannotCreateObserver();
    try {
        for (const auto* notification :
             {&Notification::windowCreated, &Notification::mainWindowChanged,
              &Notification::windowMiniaturized})
            observer->addNotification(*notification, application);
    } catch (const AXError& error) {
        // The observer goes, and with it what was already subscribed.
        throw Error::axError(error);
    }
    return observer;
}

}  // namespace tarnwick
