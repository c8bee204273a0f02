#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace lirixkro {

class SRShortcutAction;

// The name of an operation a target may respond to, such as "copy:".
using SRSelector = std::string;

// What a shortcut action performs on. A target responds to the selectors
// whose methods it registered; it may also take the action as a whole
// (performShortcutAction) and veto it (validateUserInterfaceItem, whose
// answer is std::nullopt where the target doesn't offer it).
class SRShortcutActionTarget {
  public:
    // A method as the platform's signatures count its arguments: the
    // receiver and the selector, then the sender if it takes one. The body
    // gets the sender (null when it takes none) and answers its Boolean
    // result, or nothing for a method that returns something else.
    struct Method {
        int argumentCount = 3;
        std::function<std::optional<bool>(SRShortcutAction* sender)> body;

        static Method withSender(std::function<bool(SRShortcutAction&)> body);
        static Method withSenderReturningNothing(std::function<void(SRShortcutAction&)> body);
        static Method withoutArguments(std::function<bool()> body);
        // A method of any other shape is never called.
        static Method withArgumentCount(int argumentCount);
    };

    virtual ~SRShortcutActionTarget() = default;

    // Null when the target doesn't respond to the selector.
    const Method* methodForSelector(std::string_view selector) const;
    void setMethod(SRSelector selector, Method method);

    // A target that takes whole actions answers true here and performs
    // them in performShortcutAction.
    virtual bool respondsToPerformShortcutAction() const { return false; }
    virtual bool performShortcutAction(SRShortcutAction& /*action*/) { return false; }
    virtual std::optional<bool> validateUserInterfaceItem(const SRShortcutAction& /*action*/) {
        return std::nullopt;
    }

    // The application object: the target of actions that have none of their
    // own. The program registers the methods it answers.
    static std::shared_ptr<SRShortcutActionTarget> application();

  private:
    std::map<SRSelector, Method, std::less<>> methods_;
};

}  // namespace lirixkro
