#pragma once

#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "accessibility/AXError.h"
#include "accessibility/Application.h"
#include "accessibility/Observer.h"
#include "platform/WindowController.h"

namespace tarnwick {

// Everything that reads or subscribes to another application's windows on
// behalf of the list window.
class InteractionController {
  public:
    using WindowRef = std::shared_ptr<corvane::Application::Window>;
    using OnChange = std::function<void(corvane::Observer& observer,
                                        const std::shared_ptr<corvane::UIElement>& element,
                                        const corvane::UIElement::AXNotification& notification)>;

    // Why the windows couldn't be listed or followed.
    class Error : public std::exception {
      public:
        // In this order; the order gives each case its code.
        enum class Kind { axError, other, needPermission, cannotRetrieveApp, cannotCreateObserver };

        static Error axError(corvane::AXError code) { return Error(Kind::axError, code, nullptr); }
        // Declared for errors from elsewhere; nothing in the program raises it.
        static Error other(std::exception_ptr error) {
            return Error(Kind::other, std::nullopt, std::move(error));
        }
        static Error needPermission() { return Error(Kind::needPermission); }
        static Error cannotRetrieveApp() { return Error(Kind::cannotRetrieveApp); }
        static Error cannotCreateObserver() { return Error(Kind::cannotCreateObserver); }

        Kind kind() const { return kind_; }
        // The accessibility code of an axError.
        const std::optional<corvane::AXError>& code() const { return code_; }
        const std::exception_ptr& underlying() const { return underlying_; }

        // The printed form: the case name, for axError followed by the
        // code's debug text in parentheses ("axError(AXError.cannotComplete)").
        std::string description() const;
        // The text the list window shows. The type has no texts of its own,
        // so this is the platform's generic one for an error of this type and
        // case: "The operation couldn’t be completed.
        // (tarnwick.InteractionController.Error error 0.)", the number being
        // the case's place in Kind.
        std::string localizedDescription() const;
        const char* what() const noexcept override { return printed_.c_str(); }

        friend bool operator==(const Error& a, const Error& b) {
            return a.kind_ == b.kind_ && a.code_ == b.code_;
        }

      private:
        explicit Error(Kind kind, std::optional<corvane::AXError> code = std::nullopt,
                       std::exception_ptr underlying = nullptr);

        Kind kind_;
        std::optional<corvane::AXError> code_;
        std::exception_ptr underlying_;
        std::string printed_;
    };

    // The controller of the list window's panel is only held, for as long as
    // this lives.
    explicit InteractionController(
        std::shared_ptr<platform::WindowController> mainWindowController);

    // The application's windows in the order it reports them; empty when it
    // has no window list. Throws Error: needPermission while the process
    // isn't trusted (asked at every call), axError when the read fails.
    std::vector<WindowRef> windows(const corvane::Application& application) const;

    // A running observer of the application's window creation, main window
    // changes and miniaturisation; every window created from now on is
    // followed too (closing, moving, retitling). onChange hears each
    // notification first. Throws Error: cannotCreateObserver when the
    // application's element is gone, axError when a subscription fails.
    std::shared_ptr<corvane::Observer> observe(const corvane::Application& application,
                                               OnChange onChange) const;

    const std::shared_ptr<platform::WindowController>& mainWindowController() const {
        return mainWindowController_;
    }

  private:
    std::shared_ptr<platform::WindowController> mainWindowController_;
};

}  // namespace tarnwick
