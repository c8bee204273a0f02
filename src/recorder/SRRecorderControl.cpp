#include "recorder/SRRecorderControl.h"

#include "platform/Platform.h"
#include "recorder/SRRecorderControlStyle.h"
#include "shortcuts/SRExceptions.h"
#include "shortcuts/SRGlobalShortcutMonitor.h"
#include "support/Log.h"

namespace lirixkro {

using quillbox::formatText;
using quillbox::Log;

namespace {

// The modifier keys held now, as the platform's event service knows them.
SRModifierFlags currentModifierFlags() {
    auto* monitors = platform::installed().eventMonitors;
    return monitors ? monitors->modifierFlags() : 0;
}

}  // namespace

SRRecorderControl::SRRecorderControl() = default;

SRRecorderControl::~SRRecorderControl() {
    *alive_ = false;
    if (didPauseGlobalShortcutMonitor_)
        SRGlobalShortcutMonitor::sharedMonitor().resume();
    if (style_)
        style_->prepareForRemoval();
}

void SRRecorderControl::setHost(SRRecorderControlHost* host) {
    host_ = host;
    if (style_)
        style_->recorderControlAppearanceDidChange();
}

void SRRecorderControl::setObjectValue(const SRObservedValue& value) {
    SRShortcutRef shortcut = SRShortcutFromObservedValue(value);
    if (SRShortcutsEqual(objectValue_, shortcut))
        return;
    if (std::holds_alternative<SRDictionary>(value) && !objectValue_ &&
        !compatibilityModeEnabled_) {
        compatibilityModeEnabled_ = true;
        Log::error(
            "WARNING: Floveil 2 compatibility mode enabled. The value is exchanged as a "
            "dictionary; bind the control to a shortcut to turn the mode off.");
    }
    objectValue_ = std::move(shortcut);
    changes_.emit("objectValue");
    propagateValueToBinding();
    if (!recording_) {
        postAccessibilityNotification(SRAccessibilityNotification::titleChanged);
        postAccessibilityNotification(SRAccessibilityNotification::valueChanged);
        needsDisplay();
    }
}

std::optional<SRDictionary> SRRecorderControl::dictionaryValue() const {
    return objectValue_ ? std::optional(objectValue_->dictionaryRepresentation()) : std::nullopt;
}

void SRRecorderControl::setDictionaryValue(const std::optional<SRDictionary>& value) {
    setObjectValue(value ? SRObservedValue(*value) : SRObservedValue(SRNull{}));
}

void SRRecorderControl::bindValue(std::shared_ptr<SRKeyValueObservable> object,
                                  std::string keyPath) {
    unbindValue();
    if (!object)
        return;
    boundObject_ = std::move(object);
    boundKeyPath_ = std::move(keyPath);
    bindingObservation_ =
        boundObject_->observeKeyPath(boundKeyPath_, [this, alive = std::weak_ptr<bool>(alive_)] {
            if (alive.lock() && boundObject_)
                setObjectValue(boundObject_->valueForKeyPath(boundKeyPath_));
        });
    setObjectValue(boundObject_->valueForKeyPath(boundKeyPath_));
}

void SRRecorderControl::unbindValue() {
    bindingObservation_.cancel();
    boundObject_.reset();
    boundKeyPath_.clear();
}

void SRRecorderControl::propagateValueToBinding() {
    if (!boundObject_)
        return;
    SRObservedValue value = SRNull{};
    if (objectValue_ && compatibilityModeEnabled_)
        value = objectValue_->dictionaryRepresentation();
    else if (objectValue_)
        value = objectValue_;
    if (boundObject_->valueForKeyPath(boundKeyPath_) != value)
        boundObject_->setValueForKeyPath(value, boundKeyPath_);
}

void SRRecorderControl::editorDidBeginOrEnd(bool began) {
    auto* editors = dynamic_cast<SREditorRegistration*>(boundObject_.get());
    if (!editors)
        return;
    if (began)
        editors->objectDidBeginEditing(this);
    else
        editors->objectDidEndEditing(this);
}

const std::shared_ptr<SRRecorderControlStyling>& SRRecorderControl::style() const {
    if (!style_) {
        style_ = std::make_shared<SRRecorderControlStyle>();
        styleIsDefault_ = true;
        style_->prepareForRecorderControl(const_cast<SRRecorderControl&>(*this));
    }
    return style_;
}

void SRRecorderControl::setStyle(std::shared_ptr<SRRecorderControlStyling> style) {
    if (style_ == style || (!style && styleIsDefault_))
        return;
    if (style_)
        style_->prepareForRemoval();
    style_ = std::move(style);
    styleIsDefault_ = false;
    if (style_)
        style_->prepareForRecorderControl(*this);
    changes_.emit("style");
    needsDisplay();
}

void SRRecorderControl::setAllowedModifierFlags(SRModifierFlags allowed, SRModifierFlags required,
                                                bool allowsEmpty) {
    allowed &= SRCocoaModifierFlagsMask;
    required &= SRCocoaModifierFlagsMask;
    if ((required & allowed) != required) {
        throw SRInvalidArgumentException(formatText("Required flags (%lu) MUST be allowed (%lu)",
                                                    static_cast<unsigned long>(required),
                                                    static_cast<unsigned long>(allowed)));
    }
    if (allowsEmpty && required != 0) {
        throw SRInvalidArgumentException(
            "Empty modifier flags MUST be disallowed if required modifier flags are not empty.");
    }
    if (allowed == allowedModifierFlags_ && required == requiredModifierFlags_ &&
        allowsEmpty == allowsEmptyModifierFlags_) {
        return;
    }
    endRecording();
    allowedModifierFlags_ = allowed;
    changes_.emit("allowedModifierFlags");
    requiredModifierFlags_ = required;
    changes_.emit("requiredModifierFlags");
    allowsEmptyModifierFlags_ = allowsEmpty;
    changes_.emit("allowsEmptyModifierFlags");
}

void SRRecorderControl::setEnabled(bool enabled) {
    if (enabled == enabled_)
        return;
    enabled_ = enabled;
    if (!enabled)
        endRecording();
    changes_.emit("enabled");
    needsDisplay();
}

bool SRRecorderControl::beginRecording() {
    if (!enabled_)
        return false;
    if (recording_)
        return true;
    if (!delegateShouldBeginRecording() || !host_ || !host_->makeFirstResponder()) {
        playAlert();
        return false;
    }
    lastSeenModifierFlags_ = currentModifierFlags() & allowedModifierFlags_;
    recording_ = true;
    changes_.emit("isRecording");
    needsDisplay();
    updateActiveConstraints();
    host_->setToolTip(toolTip());
    if (pausesGlobalShortcutMonitorWhileRecording) {
        didPauseGlobalShortcutMonitor_ = true;
        SRGlobalShortcutMonitor::sharedMonitor().pause();
    }
    editorDidBeginOrEnd(true);
    if (auto delegate = this->delegate())
        delegate->recorderControlDidBeginRecording(*this);
    postAccessibilityNotification(SRAccessibilityNotification::layoutChanged);
    postAccessibilityNotification(SRAccessibilityNotification::titleChanged);
    return true;
}

void SRRecorderControl::endRecording() {
    endRecordingWithObjectValue(objectValue_);
}

void SRRecorderControl::clearAndEndRecording() {
    endRecordingWithObjectValue(nullptr);
}

void SRRecorderControl::endRecordingWithObjectValue(SRShortcutRef value) {
    if (!recording_)
        return;
    recording_ = false;
    changes_.emit("isRecording");
    setObjectValue(std::move(value));
    lastSeenModifierFlags_ = 0;
    needsDisplay();
    updateActiveConstraints();
    if (host_)
        host_->setToolTip(toolTip());
    if (didPauseGlobalShortcutMonitor_) {
        didPauseGlobalShortcutMonitor_ = false;
        SRGlobalShortcutMonitor::sharedMonitor().resume();
    }
    editorDidBeginOrEnd(false);
    if (host_ && host_->isFirstResponder() && !host_->canBecomeKeyView())
        host_->resignFirstResponder();
    tellDelegateDidEndRecording();
    action_.emit(*this);
    postAccessibilityNotification(SRAccessibilityNotification::layoutChanged);
    postAccessibilityNotification(SRAccessibilityNotification::titleChanged);
}

bool SRRecorderControl::areModifierFlagsValid(SRModifierFlags flags, SRKeyCode keyCode) {
    flags &= SRCocoaModifierFlagsMask;
    if ((flags & requiredModifierFlags_) != requiredModifierFlags_)
        return false;
    return areModifierFlagsAllowed(flags, keyCode);
}

bool SRRecorderControl::areModifierFlagsAllowed(SRModifierFlags flags, SRKeyCode keyCode) {
    flags &= SRCocoaModifierFlagsMask;
    if ((flags == 0 && !allowsEmptyModifierFlags_) || (flags & ~allowedModifierFlags_) != 0)
        return delegateAllowsUnconditionally(flags, keyCode);
    return true;
}

bool SRRecorderControl::canCaptureKeyEvent() const {
    if (!enabled_) {
        Log::debug("The control is disabled");
        return false;
    }
    if (!host_ || !host_->isFirstResponder()) {
        Log::debug("The control is not the first responder");
        return false;
    }
    if (mouseTrackingButtonTag_ != noButtonTag) {
        Log::debug(formatText("The control is tracking %lu",
                              static_cast<unsigned long>(mouseTrackingButtonTag_)));
        return false;
    }
    return true;
}

bool SRRecorderControl::canEndRecordingWithObjectValue(const SRShortcutRef& shortcut) {
    if (!areModifierFlagsValid(shortcut->modifierFlags(), shortcut->keyCode()))
        return false;
    if (!delegateCanRecord(shortcut)) {
        Log::debug("Delegate rejected");
        return false;
    }
    Log::debug("Valid and accepted shortcut");
    return true;
}

bool SRRecorderControl::delegateShouldBeginRecording() {
    auto delegate = this->delegate();
    if (!delegate)
        return true;
    if (auto answer = delegate->recorderControlShouldBeginRecording(*this))
        return *answer;
    return delegate->lirixkroShouldBeginRecording(*this).value_or(true);
}

void SRRecorderControl::tellDelegateDidEndRecording() {
    if (auto delegate = this->delegate()) {
        if (!delegate->recorderControlDidEndRecording(*this))
            delegate->lirixkroDidEndRecording(*this);
    }
}

bool SRRecorderControl::delegateCanRecord(const SRShortcutRef& shortcut) {
    auto delegate = this->delegate();
    if (!delegate)
        return true;
    if (auto answer = delegate->recorderControlCanRecordShortcut(*this, *shortcut))
        return *answer;
    if (auto answer =
            delegate->lirixkroCanRecordShortcut(*this, shortcut->dictionaryRepresentation())) {
        return *answer;
    }
    return delegate->controlIsValidObject(*this, SRObservedValue(shortcut)).value_or(true);
}

bool SRRecorderControl::delegateAllowsUnconditionally(SRModifierFlags flags, SRKeyCode keyCode) {
    auto delegate = this->delegate();
    if (!delegate)
        return false;
    if (auto answer = delegate->recorderControlShouldUnconditionallyAllowModifierFlags(*this, flags,
                                                                                       keyCode)) {
        return *answer;
    }
    return delegate->lirixkroShouldUnconditionallyAllowModifierFlags(*this, flags, keyCode)
        .value_or(false);
}

void SRRecorderControl::playAlert() {
    if (host_)
        host_->playAlert();
}

void SRRecorderControl::needsDisplay() {
    if (host_)
        host_->setNeedsDisplay();
}

void SRRecorderControl::postAccessibilityNotification(SRAccessibilityNotification notification) {
    if (host_)
        host_->postAccessibilityNotification(notification);
}

void SRRecorderControl::updateActiveConstraints() {
    style()->updateActiveConstraints(layoutState());
    if (host_)
        host_->setNeedsLayout();
}

SRRecorderControlLayoutState SRRecorderControl::layoutState() const {
    if (!recording_)
        return SRRecorderControlLayoutState::displaying;
    return objectValue_ ? SRRecorderControlLayoutState::recordingWithValue
                        : SRRecorderControlLayoutState::recordingWithNoValue;
}

SRRecorderControlLayoutGuides SRRecorderControl::layoutGuides() const {
    return style()->layoutGuides(host_ ? host_->bounds() : style()->look().intrinsicContentSize);
}

void SRRecorderControl::scheduleControlViewAppearanceDidChange() {
    if (appearanceChangeScheduled_)
        return;
    appearanceChangeScheduled_ = true;
    auto notifyStyle = [this, alive = std::weak_ptr<bool>(alive_)] {
        if (!alive.lock())
            return;
        appearanceChangeScheduled_ = false;
        style()->recorderControlAppearanceDidChange();
    };
    if (auto* loop = platform::installed().mainLoop)
        loop->post(std::move(notifyStyle));
    else
        notifyStyle();
}

}  // namespace lirixkro
