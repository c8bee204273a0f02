#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Event.h"
#include "platform/Geometry.h"
#include "recorder/SRRecorderControlDelegate.h"
#include "recorder/SRRecorderControlHost.h"
#include "recorder/SRRecorderControlStyling.h"
#include "shortcuts/SRKeyValueObserving.h"
#include "shortcuts/SRShortcut.h"
#include "support/Signal.h"

namespace lirixkro {

// The control in which the user records a keyboard shortcut: a click or
// Space starts recording, the next suitable key press ends it, Escape
// cancels and Delete clears. Every rule lives here; the view (the host)
// draws what the control says and hands it the toolkit's events in the
// platform's numbering. Main thread only.
class SRRecorderControl : public std::enable_shared_from_this<SRRecorderControl> {
  public:
    // The button being pressed.
    static constexpr long noButtonTag = -1;
    static constexpr long cancelButtonTag = 0;
    static constexpr long clearButtonTag = 1;
    static constexpr long mainButtonTag = 2;

    SRRecorderControl();
    ~SRRecorderControl();
    SRRecorderControl(const SRRecorderControl&) = delete;
    SRRecorderControl& operator=(const SRRecorderControl&) = delete;

    // The view; null while the control has none.
    SRRecorderControlHost* host() const { return host_; }
    void setHost(SRRecorderControlHost* host);

    // The value.
    SRShortcutRef objectValue() const { return objectValue_; }
    // A shortcut, or the null object for none. A dictionary given while the
    // value is empty turns the compatibility mode on: from then on the
    // bound value goes out as a dictionary.
    void setObjectValue(const SRObservedValue& value);
    void setObjectValue(SRShortcutRef value) { setObjectValue(SRObservedValue(std::move(value))); }
    std::optional<SRDictionary> dictionaryValue() const;
    void setDictionaryValue(const std::optional<SRDictionary>& value);
    bool isCompatibilityModeEnabled() const { return compatibilityModeEnabled_; }

    // Binds the value to the key path of an object both ways: the object's
    // changes set the value, the value's changes go to the object.
    void bindValue(std::shared_ptr<SRKeyValueObservable> object, std::string keyPath);
    void unbindValue();

    std::shared_ptr<SRRecorderControlDelegate> delegate() const { return delegate_.lock(); }
    void setDelegate(std::weak_ptr<SRRecorderControlDelegate> delegate) {
        delegate_ = std::move(delegate);
    }

    // Made on first need: the default style.
    const std::shared_ptr<SRRecorderControlStyling>& style() const;
    // Null goes back to the default style; it is kept if it is the one in
    // use already.
    void setStyle(std::shared_ptr<SRRecorderControlStyling> style);

    // The rules.
    SRModifierFlags allowedModifierFlags() const { return allowedModifierFlags_; }
    SRModifierFlags requiredModifierFlags() const { return requiredModifierFlags_; }
    bool allowsEmptyModifierFlags() const { return allowsEmptyModifierFlags_; }
    // Sets the three together; a required flag that isn't allowed, or empty
    // flags allowed beside required ones, raise SRInvalidArgumentException.
    // A change ends recording.
    void setAllowedModifierFlags(SRModifierFlags allowed, SRModifierFlags required,
                                 bool allowsEmpty);
    bool allowsModifierFlagsOnlyShortcut = false;
    bool drawsASCIIEquivalentOfShortcut = true;
    bool allowsEscapeToCancelRecording = true;
    bool allowsDeleteToClearShortcutAndEndRecording = true;
    bool pausesGlobalShortcutMonitorWhileRecording = true;
    bool stringValueRespectsUserInterfaceLayoutDirection = false;
    bool refusesFirstResponder = false;

    bool isEnabled() const { return enabled_; }
    void setEnabled(bool enabled);

    bool isRecording() const { return recording_; }
    SRModifierFlags lastSeenModifierFlags() const { return lastSeenModifierFlags_; }
    long mouseTrackingButtonTag() const { return mouseTrackingButtonTag_; }
    bool didPauseGlobalShortcutMonitor() const { return didPauseGlobalShortcutMonitor_; }

    bool beginRecording();
    // Ends recording and keeps the value.
    void endRecording();
    // Ends recording with no value.
    void clearAndEndRecording();
    void endRecordingWithObjectValue(SRShortcutRef value);

    bool areModifierFlagsValid(SRModifierFlags flags, SRKeyCode keyCode);
    bool areModifierFlagsAllowed(SRModifierFlags flags, SRKeyCode keyCode);
    bool canCaptureKeyEvent() const;
    bool canEndRecordingWithObjectValue(const SRShortcutRef& shortcut);

    // The label: the value as symbols, "⌃⇧K".
    std::string stringValue() const;
    // What is drawn: while recording the modifiers held, else the value, else
    // a prompt.
    std::string drawingLabel() const;
    // The label's attributes in the control's state.
    SRTextAttributes drawingLabelAttributes() const;
    // The control's own tool tip: how to record, or what to do now.
    std::string toolTip() const;
    std::string cancelButtonToolTip() const;
    std::string clearButtonToolTip() const;
    // The tool tip of the button under the point; nothing elsewhere.
    std::optional<std::string> toolTipAtPoint(platform::CGPoint point) const;
    // What a screen reader says: the label, and the value in words.
    std::string accessibilityLabel() const;
    std::string accessibilityValue() const;

    // Events from the view, in the platform's numbering. Whether the control
    // took the key: the view passes on what it didn't.
    bool keyDown(const platform::Event& event);
    bool performKeyEquivalent(const platform::Event& event);
    void flagsChanged(const platform::Event& event);
    // Points in the control's coordinates (origin top left).
    void mouseDown(platform::CGPoint point);
    void mouseUp(platform::CGPoint point);
    bool acceptsFirstResponder() const { return enabled_ && !refusesFirstResponder; }
    // The view lost the focus.
    void resignFirstResponder();
    // The view's window stopped being the key window.
    void windowDidResignKey();
    void commitEditing();
    void discardEditing();

    // The screen reader's actions; whether they applied.
    bool accessibilityPerformPress();
    bool accessibilityPerformCancel();
    bool accessibilityPerformDelete();

    // The toolkit's look changed; the style hears of it once, one turn later.
    void scheduleControlViewAppearanceDidChange();
    SRRecorderControlLayoutState layoutState() const;
    SRRecorderControlLayoutGuides layoutGuides() const;

    // Told at each end of recording: the control's action sent to its target.
    platform::Subscription observeAction(std::function<void(SRRecorderControl&)> action) {
        return action_.connect(std::move(action));
    }
    // Told after a property changed, with its name: "objectValue",
    // "isRecording", "allowedModifierFlags", "requiredModifierFlags",
    // "allowsEmptyModifierFlags", "enabled", "style".
    platform::Subscription observe(std::function<void(std::string_view)> changed) {
        return changes_.connect(std::move(changed));
    }

  private:
    void playAlert();
    void needsDisplay();
    void updateActiveConstraints();
    void postAccessibilityNotification(SRAccessibilityNotification notification);
    void propagateValueToBinding();
    void editorDidBeginOrEnd(bool began);
    bool delegateShouldBeginRecording();
    void tellDelegateDidEndRecording();
    bool delegateCanRecord(const SRShortcutRef& shortcut);
    bool delegateAllowsUnconditionally(SRModifierFlags flags, SRKeyCode keyCode);
    void accumulateModifierChord(const platform::Event& event);
    long buttonTagAt(platform::CGPoint point) const;
    SRLayoutDirection labelDirection() const;

    SRRecorderControlHost* host_ = nullptr;
    SRShortcutRef objectValue_;
    std::weak_ptr<SRRecorderControlDelegate> delegate_;
    mutable std::shared_ptr<SRRecorderControlStyling> style_;
    mutable bool styleIsDefault_ = false;
    SRModifierFlags allowedModifierFlags_ = SRCocoaModifierFlagsMask;
    SRModifierFlags requiredModifierFlags_ = 0;
    bool allowsEmptyModifierFlags_ = false;
    bool enabled_ = true;
    bool recording_ = false;
    SRModifierFlags lastSeenModifierFlags_ = 0;
    long mouseTrackingButtonTag_ = noButtonTag;
    bool didPauseGlobalShortcutMonitor_ = false;
    bool compatibilityModeEnabled_ = false;
    bool appearanceChangeScheduled_ = false;
    std::shared_ptr<SRKeyValueObservable> boundObject_;
    std::string boundKeyPath_;
    platform::Subscription bindingObservation_;
    quillbox::Signal<SRRecorderControl&> action_;
    quillbox::Signal<std::string_view> changes_;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace lirixkro
