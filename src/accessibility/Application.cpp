#include "accessibility/Application.h"

#include <string_view>

#include "platform/Platform.h"
#include "support/Fatal.h"

namespace corvane {

namespace {

namespace ax = platform::axError;

template <typename Keep>
std::vector<std::shared_ptr<Application>> runningApplicationsWhere(Keep keep) {
    std::vector<std::shared_ptr<Application>> result;
    for (const auto& running : platform::workspace().runningApplications()) {
        if (!running || !keep(*running))
            continue;
        if (auto application = Application::fromRunningApplication(running)) {
            result.push_back(std::move(application));
        }
    }
    return result;
}

}  // namespace

std::shared_ptr<Application> Application::fromRunningApplication(
    const platform::RunningApplicationRef& application) {
    if (!application || application->isTerminated())
        return nullptr;
    const auto processID = application->processIdentifier();
    if (processID < 0)
        return nullptr;
    return std::make_shared<Application>(platform::accessibility().createApplication(processID));
}

std::shared_ptr<Application> Application::forProcessID(pid_t processID) {
    return fromRunningApplication(
        platform::workspace().runningApplicationWithProcessIdentifier(processID));
}

std::vector<std::shared_ptr<Application>> Application::all() {
    return runningApplicationsWhere([](const platform::RunningApplication& running) {
        return running.activationPolicy() != platform::ActivationPolicy::prohibited;
    });
}

std::vector<std::shared_ptr<Application>> Application::allForBundleID(const std::string& bundleID) {
    return runningApplicationsWhere([&bundleID](const platform::RunningApplication& running) {
        return running.bundleIdentifier() == bundleID;
    });
}

template <typename Callback>
std::shared_ptr<Observer> Application::makeObserver(Callback callback) const {
    try {
        pid_t processID = -1;
        const auto code = platform::accessibility().getPid(element(), processID);
        if (code != ax::success)
            throw AXError(code);
        return std::make_shared<Observer>(processID, std::move(callback));
    } catch (const AXError& error) {
        if (error == AXError::invalidUIElement)
            return nullptr;
        quillbox::fatalError("Caught unexpected error creating observer: " + error.description());
    }
}

std::shared_ptr<Observer> Application::createObserver(Observer::Callback callback) const {
    return makeObserver(std::move(callback));
}

std::shared_ptr<Observer> Application::createObserver(Observer::CallbackWithInfo callback) const {
    return makeObserver(std::move(callback));
}

// Read in place: the list holds a handle for every window, and each copy of
// it would cost every refresh a step per window.
std::optional<std::vector<std::shared_ptr<Application::Window>>> Application::windows() const {
    auto raw = rawAttribute(Attribute::windows);
    if (!raw)
        return std::nullopt;
    const auto* list = raw->get<platform::CFValue::Array>();
    if (!list)
        throw AXError::illegalArgument;
    std::vector<std::shared_ptr<Window>> result;
    result.reserve(list->size());
    for (const auto& member : *list) {
        const auto* handle = member.get<platform::AXUIElementRef>();
        if (!handle)
            throw AXError::illegalArgument;
        result.push_back(std::make_shared<Window>(*handle));
    }
    return result;
}

std::shared_ptr<UIElement> Application::elementAtPosition(float x, float y) const {
    return UIElement::elementAtPosition(x, y);
}

}  // namespace corvane
