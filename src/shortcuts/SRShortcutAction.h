#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Subscription.h"
#include "shortcuts/SRKeyValueObserving.h"
#include "shortcuts/SRShortcutActionTarget.h"
#include "shortcuts/SRValue.h"
#include "support/Signal.h"

namespace lirixkro {

class SRShortcutAction;
using SRShortcutActionRef = std::shared_ptr<SRShortcutAction>;

// A shortcut tied to something to perform: a handler, or a selector sent to
// a target. The shortcut may be held elsewhere, at a key path of another
// object, and followed as it changes. Every field is guarded by the action's
// own lock; each change is told, after it, with the name of the field.
class SRShortcutAction : public std::enable_shared_from_this<SRShortcutAction> {
  public:
    using ActionHandler = std::function<bool(SRShortcutAction&)>;

    static SRShortcutActionRef shortcutActionWithShortcut(
        SRShortcutRef shortcut, std::weak_ptr<SRShortcutActionTarget> target,
        std::optional<SRSelector> action, long tag);
    static SRShortcutActionRef shortcutActionWithShortcut(SRShortcutRef shortcut,
                                                          ActionHandler actionHandler);
    static SRShortcutActionRef shortcutActionWithKeyPath(
        std::string keyPath, std::shared_ptr<SRKeyValueObservable> observedObject,
        std::weak_ptr<SRShortcutActionTarget> target, std::optional<SRSelector> action, long tag);
    static SRShortcutActionRef shortcutActionWithKeyPath(
        std::string keyPath, std::shared_ptr<SRKeyValueObservable> observedObject,
        ActionHandler actionHandler);

    // Use the constructors above: the action observes through a weak
    // reference to itself.
    SRShortcutAction() = default;
    ~SRShortcutAction();
    SRShortcutAction(const SRShortcutAction&) = delete;
    SRShortcutAction& operator=(const SRShortcutAction&) = delete;

    SRShortcutRef shortcut() const;
    // Setting the shortcut directly ends any observing.
    void setShortcut(SRShortcutRef shortcut);

    // The handler and the target exclude each other: setting one clears the
    // other.
    ActionHandler actionHandler() const;
    void setActionHandler(ActionHandler actionHandler);
    // The application object when no target is set.
    std::shared_ptr<SRShortcutActionTarget> target() const;
    void setTarget(std::weak_ptr<SRShortcutActionTarget> target);

    std::optional<SRSelector> action() const;
    void setAction(std::optional<SRSelector> action);
    long tag() const;
    void setTag(long tag);
    bool isEnabled() const;
    void setEnabled(bool enabled);

    std::shared_ptr<SRKeyValueObservable> observedObject() const;
    std::string observedKeyPath() const;
    // Follows the shortcut at the key path of the object, starting with its
    // value now. The same object and path again change nothing; a null
    // object ends the observing.
    void setObservedObject(std::shared_ptr<SRKeyValueObservable> observedObject,
                           std::string keyPath);

    // Performs the action with the given target, else its own: through the
    // handler, the selector or the target's performShortcutAction. Whether
    // it performed.
    bool performActionOnTarget(std::shared_ptr<SRShortcutActionTarget> target = nullptr);

    // "SRShortcutAction(⇧⌘K, tag 0)", for debug texts.
    std::string description() const;

    // Told after a field changed, with its name: "shortcut", "actionHandler",
    // "target", "action", "tag", "enabled", "observedObject",
    // "observedKeyPath".
    platform::Subscription observe(std::function<void(std::string_view field)> changed) {
        return changes_.connect(std::move(changed));
    }

  private:
    // Sets the field under the lock if it differs, then tells the change.
    template <typename T>
    void setField(T& field, T value, std::string_view name);
    void observedValueDidChange();
    // Stores a followed shortcut if it differs; false when it doesn't.
    bool storeShortcut(SRShortcutRef shortcut);
    void stopObserving();
    bool performWithTarget(SRShortcutActionTarget& target);

    mutable std::recursive_mutex lock_;
    SRShortcutRef shortcut_;
    ActionHandler actionHandler_;
    std::weak_ptr<SRShortcutActionTarget> target_;
    std::optional<SRSelector> action_;
    long tag_ = 0;
    bool enabled_ = true;
    std::weak_ptr<SRKeyValueObservable> observedObject_;
    std::string observedKeyPath_;
    platform::Subscription observation_;
    quillbox::Signal<std::string_view> changes_;
};

}  // namespace lirixkro
