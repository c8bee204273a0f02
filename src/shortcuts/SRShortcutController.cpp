#include "shortcuts/SRShortcutController.h"

#include "platform/Platform.h"
#include "recorder/SRRecorderControl.h"
#include "shortcuts/SRASCIILiteralKeyCodeTransformer.h"
#include "shortcuts/SRASCIISymbolicKeyCodeTransformer.h"
#include "shortcuts/SRGlobalShortcutMonitor.h"
#include "shortcuts/SRKeyEquivalentModifierMaskTransformer.h"
#include "shortcuts/SRKeyEquivalentTransformer.h"
#include "shortcuts/SRLiteralKeyCodeTransformer.h"
#include "shortcuts/SRLiteralModifierFlagsTransformer.h"
#include "shortcuts/SRShortcut.h"
#include "shortcuts/SRSymbolicKeyCodeTransformer.h"
#include "shortcuts/SRSymbolicModifierFlagsTransformer.h"

namespace lirixkro {

namespace {

constexpr std::string_view selectionPrefix = "selection.";
constexpr std::string_view selectionKeyPaths[] = {
    "selection.keyEquivalent",        "selection.literalKeyCode",
    "selection.symbolicKeyCode",      "selection.literalASCIIKeyCode",
    "selection.symbolicASCIIKeyCode", "selection.keyEquivalentModifierMask",
    "selection.literalModifierFlags", "selection.symbolicModifierFlags",
};

bool isSelectionKeyPath(std::string_view keyPath) {
    return keyPath.substr(0, selectionPrefix.size()) == selectionPrefix;
}

SRObservedValue textOrNull(const std::optional<std::string>& text) {
    return text ? SRObservedValue(*text) : SRObservedValue(SRNull{});
}

// The content through the transformer of a key path of the selection.
SRObservedValue transformedSelection(const SRShortcutRef& content, std::string_view keyPath) {
    const SRValue shortcut = content;
    const SRValue flags = SRNumber(content->modifierFlags());
    if (keyPath == "selection.keyEquivalent")
        return textOrNull(
            SRKeyEquivalentTransformer::sharedTransformer()->transformedValue(shortcut));
    if (keyPath == "selection.literalKeyCode")
        return textOrNull(
            SRLiteralKeyCodeTransformer::sharedTransformer()->transformedValue(shortcut));
    if (keyPath == "selection.symbolicKeyCode")
        return textOrNull(
            SRSymbolicKeyCodeTransformer::sharedTransformer()->transformedValue(shortcut));
    if (keyPath == "selection.literalASCIIKeyCode") {
        return textOrNull(
            SRASCIILiteralKeyCodeTransformer::sharedTransformer()->transformedValue(shortcut));
    }
    if (keyPath == "selection.symbolicASCIIKeyCode") {
        return textOrNull(
            SRASCIISymbolicKeyCodeTransformer::sharedTransformer()->transformedValue(shortcut));
    }
    if (keyPath == "selection.keyEquivalentModifierMask") {
        const auto mask =
            SRKeyEquivalentModifierMaskTransformer::sharedTransformer()->transformedValue(shortcut);
        return mask ? SRObservedValue(SRNumber(*mask)) : SRObservedValue(SRNull{});
    }
    if (keyPath == "selection.literalModifierFlags")
        return textOrNull(
            SRLiteralModifierFlagsTransformer::sharedTransformer()->transformedValue(flags));
    if (keyPath == "selection.symbolicModifierFlags") {
        return textOrNull(
            SRSymbolicModifierFlagsTransformer::sharedTransformer()->transformedValue(flags));
    }
    return SRNull{};
}

}  // namespace

std::shared_ptr<SRShortcutController> SRShortcutController::make(SRShortcutRef content) {
    std::shared_ptr<SRShortcutController> controller(new SRShortcutController());
    controller->content_ = std::move(content);
    return controller;
}

SRShortcutController::~SRShortcutController() {
    *alive_ = false;
    if (shortcutAction_)
        SRGlobalShortcutMonitor::sharedMonitor().removeAction(shortcutAction_);
    if (recorderControl_)
        recorderControl_->unbindValue();
}

void SRShortcutController::setContent(SRShortcutRef content) {
    content_ = std::move(content);
    changes_.emit("content");
    emitSelectionChanges();
}

void SRShortcutController::setShortcutActionTarget(std::weak_ptr<SRShortcutActionTarget> target) {
    shortcutActionTarget_ = target;
    auto& monitor = SRGlobalShortcutMonitor::sharedMonitor();
    if (target.expired()) {
        if (shortcutAction_)
            monitor.removeAction(shortcutAction_);
        shortcutAction_.reset();
        return;
    }
    if (shortcutAction_) {
        shortcutAction_->setTarget(std::move(target));
        return;
    }
    shortcutAction_ = SRShortcutAction::shortcutActionWithKeyPath(
        "content", shared_from_this(), std::move(target), std::nullopt, 0);
    monitor.addAction(shortcutAction_, platform::EventType::keyDown);
}

void SRShortcutController::setRecorderControl(std::shared_ptr<SRRecorderControl> control) {
    if (control == recorderControl_)
        return;
    auto old = std::exchange(recorderControl_, std::move(control));
    updateRecorderControlValueBinding(old);
}

void SRShortcutController::updateRecorderControlValueBinding(
    const std::shared_ptr<SRRecorderControl>& old) {
    if (old)
        old->unbindValue();
    if (recorderControl_)
        recorderControl_->bindValue(shared_from_this(), "content");
}

SRObservedValue SRShortcutController::valueForKeyPath(std::string_view keyPath) const {
    if (!content_)
        return SRNull{};
    if (keyPath == "content")
        return content_;
    return transformedSelection(content_, keyPath);
}

void SRShortcutController::setValueForKeyPath(const SRObservedValue& value,
                                              std::string_view keyPath) {
    if (keyPath == "content")
        setContent(SRShortcutFromObservedValue(value));
}

platform::Subscription SRShortcutController::observeKeyPath(std::string_view keyPath,
                                                            std::function<void()> changed) {
    auto subscription = changes_.signalFor(keyPath).connect(std::move(changed));
    if (!isSelectionKeyPath(keyPath))
        return subscription;
    selectionObserverAdded();
    return platform::Subscription(
        [subscription = std::make_shared<platform::Subscription>(std::move(subscription)), this,
         alive = std::weak_ptr<bool>(alive_)] {
            subscription->cancel();
            if (alive.lock())
                selectionObserverRemoved();
        });
}

void SRShortcutController::objectDidBeginEditing(const void*) {
    ++editorCount_;
}

void SRShortcutController::objectDidEndEditing(const void*) {
    if (editorCount_ > 0)
        --editorCount_;
}

void SRShortcutController::selectionObserverAdded() {
    if (selectionObservers_++ > 0)
        return;
    if (auto* layouts = platform::installed().keyboardLayouts) {
        layoutChanges_ = layouts->observeLayoutChanges([this, alive = std::weak_ptr<bool>(alive_)] {
            if (alive.lock())
                emitSelectionChanges();
        });
    }
}

void SRShortcutController::selectionObserverRemoved() {
    if (selectionObservers_ > 0 && --selectionObservers_ == 0)
        layoutChanges_.cancel();
}

void SRShortcutController::emitSelectionChanges() {
    for (std::string_view keyPath : selectionKeyPaths)
        changes_.emit(keyPath);
}

}  // namespace lirixkro
