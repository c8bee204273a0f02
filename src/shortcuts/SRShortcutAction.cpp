#include "shortcuts/SRShortcutAction.h"

#include "shortcuts/SRShortcut.h"
#include "support/Log.h"

namespace lirixkro {

using quillbox::Log;
using quillbox::LogActivity;

SRShortcutActionRef SRShortcutAction::shortcutActionWithShortcut(
    SRShortcutRef shortcut, std::weak_ptr<SRShortcutActionTarget> target,
    std::optional<SRSelector> action, long tag) {
    auto made = std::make_shared<SRShortcutAction>();
    made->shortcut_ = std::move(shortcut);
    made->target_ = std::move(target);
    made->action_ = std::move(action);
    made->tag_ = tag;
    return made;
}

SRShortcutActionRef SRShortcutAction::shortcutActionWithShortcut(SRShortcutRef shortcut,
                                                                 ActionHandler actionHandler) {
    auto made = std::make_shared<SRShortcutAction>();
    made->shortcut_ = std::move(shortcut);
    made->actionHandler_ = std::move(actionHandler);
    return made;
}

SRShortcutActionRef SRShortcutAction::shortcutActionWithKeyPath(
    std::string keyPath, std::shared_ptr<SRKeyValueObservable> observedObject,
    std::weak_ptr<SRShortcutActionTarget> target, std::optional<SRSelector> action, long tag) {
    auto made = shortcutActionWithShortcut(nullptr, std::move(target), std::move(action), tag);
    made->setObservedObject(std::move(observedObject), std::move(keyPath));
    return made;
}

SRShortcutActionRef SRShortcutAction::shortcutActionWithKeyPath(
    std::string keyPath, std::shared_ptr<SRKeyValueObservable> observedObject,
    ActionHandler actionHandler) {
    auto made = shortcutActionWithShortcut(nullptr, std::move(actionHandler));
    made->setObservedObject(std::move(observedObject), std::move(keyPath));
    return made;
}

SRShortcutAction::~SRShortcutAction() {
    observation_.cancel();
}

template <typename T>
void SRShortcutAction::setField(T& field, T value, std::string_view name) {
    {
        std::lock_guard lock(lock_);
        field = std::move(value);
    }
    changes_.emit(name);
}

SRShortcutRef SRShortcutAction::shortcut() const {
    std::lock_guard lock(lock_);
    return shortcut_;
}

void SRShortcutAction::setShortcut(SRShortcutRef shortcut) {
    {
        std::lock_guard lock(lock_);
        stopObserving();
    }
    if (storeShortcut(std::move(shortcut)))
        changes_.emit("shortcut");
}

bool SRShortcutAction::storeShortcut(SRShortcutRef shortcut) {
    std::lock_guard lock(lock_);
    if (SRShortcutsEqual(shortcut_, shortcut))
        return false;
    shortcut_ = std::move(shortcut);
    return true;
}

SRShortcutAction::ActionHandler SRShortcutAction::actionHandler() const {
    std::lock_guard lock(lock_);
    return actionHandler_;
}

void SRShortcutAction::setActionHandler(ActionHandler actionHandler) {
    const bool clearsTarget = static_cast<bool>(actionHandler);
    setField(actionHandler_, std::move(actionHandler), "actionHandler");
    if (clearsTarget)
        setField(target_, std::weak_ptr<SRShortcutActionTarget>(), "target");
}

std::shared_ptr<SRShortcutActionTarget> SRShortcutAction::target() const {
    std::lock_guard lock(lock_);
    if (auto target = target_.lock())
        return target;
    return SRShortcutActionTarget::application();
}

void SRShortcutAction::setTarget(std::weak_ptr<SRShortcutActionTarget> target) {
    const bool clearsHandler = !target.expired();
    setField(target_, std::move(target), "target");
    if (clearsHandler)
        setField(actionHandler_, ActionHandler(), "actionHandler");
}

std::optional<SRSelector> SRShortcutAction::action() const {
    std::lock_guard lock(lock_);
    return action_;
}

void SRShortcutAction::setAction(std::optional<SRSelector> action) {
    setField(action_, std::move(action), "action");
}

long SRShortcutAction::tag() const {
    std::lock_guard lock(lock_);
    return tag_;
}

void SRShortcutAction::setTag(long tag) {
    setField(tag_, tag, "tag");
}

bool SRShortcutAction::isEnabled() const {
    std::lock_guard lock(lock_);
    return enabled_;
}

void SRShortcutAction::setEnabled(bool enabled) {
    setField(enabled_, enabled, "enabled");
}

std::shared_ptr<SRKeyValueObservable> SRShortcutAction::observedObject() const {
    std::lock_guard lock(lock_);
    return observedObject_.lock();
}

std::string SRShortcutAction::observedKeyPath() const {
    std::lock_guard lock(lock_);
    return observedKeyPath_;
}

void SRShortcutAction::setObservedObject(std::shared_ptr<SRKeyValueObservable> observedObject,
                                         std::string keyPath) {
    LogActivity activity("-[SRShortcutAction setObservedObject:withKeyPath:]");
    {
        std::lock_guard lock(lock_);
        if (observedObject_.lock() == observedObject && observedKeyPath_ == keyPath)
            return;
        stopObserving();
        observedObject_ = observedObject;
        observedKeyPath_ = keyPath;
        if (observedObject) {
            std::weak_ptr<SRShortcutAction> weakSelf = weak_from_this();
            observation_ = observedObject->observeKeyPath(keyPath, [weakSelf] {
                if (auto self = weakSelf.lock())
                    self->observedValueDidChange();
            });
        }
    }
    changes_.emit("observedObject");
    changes_.emit("observedKeyPath");
    if (observedObject)
        observedValueDidChange();
}

void SRShortcutAction::stopObserving() {
    observation_.cancel();
    observedObject_.reset();
    observedKeyPath_.clear();
}

void SRShortcutAction::observedValueDidChange() {
    LogActivity activity("-[SRShortcutAction observeValueForKeyPath:ofObject:change:context:]");
    std::shared_ptr<SRKeyValueObservable> object;
    std::string keyPath;
    {
        std::lock_guard lock(lock_);
        object = observedObject_.lock();
        keyPath = observedKeyPath_;
    }
    if (!object)
        return;
    if (storeShortcut(SRShortcutFromObservedValue(object->valueForKeyPath(keyPath))))
        changes_.emit("shortcut");
}

std::string SRShortcutAction::description() const {
    const auto current = shortcut();
    std::string text = "SRShortcutAction(";
    text += current ? current->description() : std::string("no shortcut");
    text += ", tag " + std::to_string(tag());
    if (!isEnabled())
        text += ", disabled";
    return text + ")";
}

bool SRShortcutAction::performActionOnTarget(std::shared_ptr<SRShortcutActionTarget> target) {
    LogActivity activity("-[SRShortcutAction performActionOnTarget:]");
    if (!isEnabled()) {
        Log::debug("Not performed: disabled");
        return false;
    }
    if (auto handler = actionHandler()) {
        Log::debug("Using action handler");
        return handler(*this);
    }
    if (!target)
        target = this->target();
    if (!target) {
        Log::debug("Not performed: no associated target");
        return false;
    }
    return performWithTarget(*target);
}

bool SRShortcutAction::performWithTarget(SRShortcutActionTarget& target) {
    const auto selector = action();
    const auto* method = selector ? target.methodForSelector(*selector) : nullptr;
    if (!method && !target.respondsToPerformShortcutAction()) {
        Log::debug("Not performed: target cannot respond to action");
        return false;
    }
    if (target.validateUserInterfaceItem(*this) == false) {
        Log::debug("Not performed: target ignored action");
        return false;
    }
    if (!method) {
        Log::debug("Using protocol");
        return target.performShortcutAction(*this);
    }
    Log::debug("Using action");
    if (method->argumentCount != 2 && method->argumentCount != 3)
        return false;
    const auto result = method->body(method->argumentCount == 3 ? this : nullptr);
    return result.value_or(true);
}

}  // namespace lirixkro
