// What the recorder control shows and says: its label, tool tips and
// accessibility texts.
#include "recorder/SRRecorderControl.h"
#include "shortcuts/LirixkroStrings.h"
#include "shortcuts/SRASCIILiteralKeyCodeTransformer.h"
#include "shortcuts/SRLiteralKeyCodeTransformer.h"
#include "shortcuts/SRSymbolicModifierFlagsTransformer.h"
#include "support/Log.h"

namespace lirixkro {

namespace {

std::string symbolsOf(SRModifierFlags flags, SRLayoutDirection direction) {
    return SRSymbolicModifierFlagsTransformer::sharedTransformer()
        ->transformedValue(SRNumber(flags), direction)
        .value_or("");
}

}  // namespace

SRLayoutDirection SRRecorderControl::labelDirection() const {
    if (!stringValueRespectsUserInterfaceLayoutDirection)
        return SRLayoutDirection::leftToRight;
    return host_ ? host_->toolkitAppearance().layoutDirection : SRApplicationLayoutDirection();
}

std::string SRRecorderControl::stringValue() const {
    if (!objectValue_)
        return "";
    const SRLayoutDirection direction = labelDirection();
    const std::string flags = symbolsOf(objectValue_->modifierFlags(), direction);
    const SRKeyCodeTransformer& transformer =
        drawsASCIIEquivalentOfShortcut ? static_cast<const SRKeyCodeTransformer&>(
                                             *SRASCIILiteralKeyCodeTransformer::sharedTransformer())
                                       : *SRLiteralKeyCodeTransformer::sharedTransformer();
    const SRKeyCode keyCode = objectValue_->keyCode();
    const std::string key =
        transformer.transformedValue(SRNumber(keyCode), 0, objectValue_->modifierFlags(), direction)
            .value_or(quillbox::formatText("<%hu>", keyCode));
    return direction == SRLayoutDirection::rightToLeft ? key + flags : flags + key;
}

std::string SRRecorderControl::drawingLabel() const {
    if (recording_ && lastSeenModifierFlags_ != 0)
        return symbolsOf(lastSeenModifierFlags_, labelDirection());
    std::string label = stringValue();
    if (!label.empty())
        return label;
    if (recording_)
        return style()->noValueRecordingLabel().value_or(SRLoc("Press keys now"));
    return style()->noValueNormalLabel().value_or(SRLoc("Record Shortcut"));
}

SRTextAttributes SRRecorderControl::drawingLabelAttributes() const {
    const auto& look = style()->look();
    if (!enabled_)
        return look.disabledLabelAttributes;
    return recording_ ? look.recordingLabelAttributes : look.normalLabelAttributes;
}

std::string SRRecorderControl::toolTip() const {
    if (recording_)
        return style()->recordingTooltip().value_or(SRLoc("Press keys now"));
    return style()->normalTooltip().value_or(SRLoc("Click to record shortcut"));
}

std::string SRRecorderControl::cancelButtonToolTip() const {
    return style()->cancelButtonTooltip().value_or(SRLoc("Cancel recording"));
}

std::string SRRecorderControl::clearButtonToolTip() const {
    return style()->clearButtonTooltip().value_or(SRLoc("Delete current shortcut"));
}

std::optional<std::string> SRRecorderControl::toolTipAtPoint(platform::CGPoint point) const {
    if (!recording_)
        return std::nullopt;
    switch (buttonTagAt(point)) {
        case cancelButtonTag:
            return cancelButtonToolTip();
        case clearButtonTag:
            return clearButtonToolTip();
        default:
            return std::nullopt;
    }
}

std::string SRRecorderControl::accessibilityLabel() const {
    return drawingLabel();
}

std::string SRRecorderControl::accessibilityValue() const {
    return objectValue_ ? objectValue_->readableStringRepresentation(true) : std::string();
}

}  // namespace lirixkro
