// The recorder control's keyboard, mouse and focus events.
#include "recorder/SRRecorderControl.h"
#include "shortcuts/SRKeyEventType.h"
#include "support/Log.h"

namespace lirixkro {

using platform::Event;
using quillbox::Log;

namespace {

constexpr SRKeyCode spaceKey = 49;
constexpr SRKeyCode escapeKey = 53;
constexpr SRKeyCode deleteKey = 51;
constexpr SRKeyCode forwardDeleteKey = 117;

bool contains(const platform::CGRect& rect, platform::CGPoint point) {
    return rect.size.width > 0 && rect.size.height > 0 && rect.contains(point);
}

// A button's layout guide, else its drawing guide.
platform::CGRect hitArea(const platform::CGRect& layoutGuide,
                         const platform::CGRect& drawingGuide) {
    return layoutGuide.size.width > 0 ? layoutGuide : drawingGuide;
}

}  // namespace

bool SRRecorderControl::keyDown(const Event& event) {
    return performKeyEquivalent(event);
}

bool SRRecorderControl::performKeyEquivalent(const Event& event) {
    if (!canCaptureKeyEvent())
        return false;
    if (!recording_) {
        if (event.keyCode != spaceKey)
            return false;
        Log::debug("Begin recording via Space");
        return beginRecording();
    }
    if (event.keyCode == SRKeyCodeNone) {
        Log::debug("Invalid key code");
        return false;
    }
    const bool noModifiers = (event.modifierFlags & SRCocoaModifierFlagsMask) == 0;
    if (event.keyCode == escapeKey && allowsEscapeToCancelRecording && noModifiers) {
        Log::debug("Cancel via Esc");
        endRecording();
        return true;
    }
    if ((event.keyCode == deleteKey || event.keyCode == forwardDeleteKey) &&
        allowsDeleteToClearShortcutAndEndRecording && noModifiers) {
        Log::debug("Clear via Delete");
        clearAndEndRecording();
        return true;
    }
    auto shortcut = SRShortcut::shortcutWithEvent(event);
    if (shortcut && canEndRecordingWithObjectValue(shortcut))
        endRecordingWithObjectValue(std::move(shortcut));
    else
        playAlert();
    return true;
}

void SRRecorderControl::flagsChanged(const Event& event) {
    if (!recording_ || !canCaptureKeyEvent())
        return;
    if (allowsModifierFlagsOnlyShortcut) {
        accumulateModifierChord(event);
    } else {
        const SRModifierFlags flags = event.modifierFlags & SRCocoaModifierFlagsMask;
        if (areModifierFlagsAllowed(flags, SRKeyCodeNone))
            lastSeenModifierFlags_ = flags;
        else
            playAlert();
    }
    needsDisplay();
    if (host_)
        host_->setNeedsLayout();
}

// Each modifier key going down adds its flag to the chord; the chord is
// recorded when the last key goes up, so its flags are those that were held
// together.
void SRRecorderControl::accumulateModifierChord(const Event& event) {
    const SRModifierFlags held = event.modifierFlags & SRCocoaModifierFlagsMask;
    const SRModifierFlags keyFlag = SRModifierFlagOfKeyCode(event.keyCode);
    SRModifierFlags chord = lastSeenModifierFlags_;
    const bool toggled = keyFlag != 0 && (held & keyFlag) != 0;
    if (toggled)
        chord ^= keyFlag;

    if (!toggled && held == 0 && chord != 0) {
        auto shortcut = SRShortcut::shortcutWithCode(SRKeyCodeNone, chord);
        if (canEndRecordingWithObjectValue(shortcut)) {
            endRecordingWithObjectValue(std::move(shortcut));
            return;
        }
        // Refused: start the chord over.
        playAlert();
        lastSeenModifierFlags_ = 0;
        return;
    }
    if (toggled && !areModifierFlagsAllowed(chord, SRKeyCodeNone)) {
        playAlert();
        return;
    }
    lastSeenModifierFlags_ = chord;
}

long SRRecorderControl::buttonTagAt(platform::CGPoint point) const {
    const auto guides = layoutGuides();
    if (contains(hitArea(guides.cancelButtonLayoutGuide, guides.cancelButtonDrawingGuide), point))
        return cancelButtonTag;
    if (contains(hitArea(guides.clearButtonLayoutGuide, guides.clearButtonDrawingGuide), point))
        return clearButtonTag;
    return noButtonTag;
}

void SRRecorderControl::mouseDown(platform::CGPoint point) {
    if (!enabled_)
        return;
    if (recording_) {
        const long tag = buttonTagAt(point);
        if (tag == noButtonTag)
            return;
        mouseTrackingButtonTag_ = tag;
        needsDisplay();
        return;
    }
    const auto size = host_ ? host_->bounds() : style()->look().intrinsicContentSize;
    if (contains({{0, 0}, size}, point)) {
        mouseTrackingButtonTag_ = mainButtonTag;
        needsDisplay();
    }
}

void SRRecorderControl::mouseUp(platform::CGPoint point) {
    const long tag = mouseTrackingButtonTag_;
    if (tag == noButtonTag)
        return;
    mouseTrackingButtonTag_ = noButtonTag;
    needsDisplay();
    bool stillThere;
    if (tag == mainButtonTag) {
        const auto size = host_ ? host_->bounds() : style()->look().intrinsicContentSize;
        stillThere = contains({{0, 0}, size}, point);
    } else {
        stillThere = buttonTagAt(point) == tag;
    }
    if (!stillThere)
        return;
    if (tag == mainButtonTag)
        beginRecording();
    else if (tag == cancelButtonTag)
        endRecording();
    else
        clearAndEndRecording();
}

void SRRecorderControl::resignFirstResponder() {
    endRecording();
    mouseTrackingButtonTag_ = noButtonTag;
}

void SRRecorderControl::windowDidResignKey() {
    endRecording();
}

void SRRecorderControl::commitEditing() {
    discardEditing();
}

void SRRecorderControl::discardEditing() {
    endRecording();
}

bool SRRecorderControl::accessibilityPerformPress() {
    return beginRecording();
}

bool SRRecorderControl::accessibilityPerformCancel() {
    if (!recording_)
        return false;
    endRecording();
    return true;
}

bool SRRecorderControl::accessibilityPerformDelete() {
    if (!recording_)
        return false;
    clearAndEndRecording();
    return true;
}

}  // namespace lirixkro
