#pragma once

#include <sys/types.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "accessibility/Observer.h"
#include "accessibility/UIElement.h"
#include "platform/Workspace.h"

namespace corvane {

// The root element of one running process: the factory of its windows and
// observers.
class Application : public UIElement {
  public:
    class Window;

    explicit Application(platform::AXUIElementRef element) : UIElement(std::move(element)) {}

    // Nothing for an application that has ended or has no valid process id.
    static std::shared_ptr<Application> fromRunningApplication(
        const platform::RunningApplicationRef& application);
    // Nothing when no application runs as that process.
    static std::shared_ptr<Application> forProcessID(pid_t processID);

    // The running applications that may ever activate, in the workspace's
    // order.
    static std::vector<std::shared_ptr<Application>> all();
    // The running applications with exactly this bundle identifier.
    static std::vector<std::shared_ptr<Application>> allForBundleID(const std::string& bundleID);

    // A running observer of this application's process; nothing when the
    // element is gone.
    std::shared_ptr<Observer> createObserver(Observer::Callback callback) const;
    std::shared_ptr<Observer> createObserver(Observer::CallbackWithInfo callback) const;

    // The windows in the platform's order; nothing when the application has
    // no window list at all.
    std::optional<std::vector<std::shared_ptr<Window>>> windows() const;

    using UIElement::elementAtPosition;
    std::shared_ptr<UIElement> elementAtPosition(float x, float y) const final;

  private:
    template <typename Callback>
    std::shared_ptr<Observer> makeObserver(Callback callback) const;
};

}  // namespace corvane

#include "accessibility/Window.h"
