#include "recorder/SRRecorderControlStyle.h"

#include "recorder/SRRecorderControl.h"
#include "shortcuts/LirixkroStrings.h"

namespace lirixkro {

using Components = SRRecorderControlStyleComponents;

namespace {

template <typename E>
E preferredElseCurrent(E preferred, E current) {
    if (preferred != E::unspecified)
        return preferred;
    return current != E::unspecified ? current : static_cast<E>(1);
}

}  // namespace

SRRecorderControlStyle::SRRecorderControlStyle(std::optional<std::string> identifier,
                                               std::optional<Components> components,
                                               SRRecorderControlStyleResourceLoader* loader)
    : identifier_(identifier.value_or(defaultIdentifier)),
      preferredComponents_(components.value_or(Components())),
      loader_(loader ? loader : &SRRecorderControlStyleResourceLoader::shared()) {}

std::optional<std::string> SRRecorderControlStyle::noValueNormalLabel() const {
    return SRLoc("Record Shortcut");
}

std::optional<std::string> SRRecorderControlStyle::noValueDisableLabel() const {
    return SRLoc("Record Shortcut");
}

std::optional<std::string> SRRecorderControlStyle::noValueRecordingLabel() const {
    return SRLoc("Press keys now");
}

void SRRecorderControlStyle::prepareForRecorderControl(SRRecorderControl& control) {
    recorderControl_ = &control;
    recorderControlAppearanceDidChange();
}

void SRRecorderControlStyle::prepareForRemoval() {
    recorderControl_ = nullptr;
}

Components SRRecorderControlStyle::computeEffectiveComponents() const {
    if (preferredComponents_.isSpecified())
        return preferredComponents_;
    const Components current =
        Components::currentComponentsForView(recorderControl_ ? recorderControl_->host() : nullptr);
    return Components(
        preferredElseCurrent(preferredComponents_.appearance(), current.appearance()),
        preferredElseCurrent(preferredComponents_.accessibility(), current.accessibility()),
        preferredElseCurrent(preferredComponents_.layoutDirection(), current.layoutDirection()),
        preferredElseCurrent(preferredComponents_.tint(), current.tint()));
}

void SRRecorderControlStyle::recorderControlAppearanceDidChange() {
    const Components components = computeEffectiveComponents();
    if (loaded_ && components == effectiveComponents_)
        return;
    effectiveComponents_ = components;
    loadLook();
    addConstraints();
    loaded_ = true;
    if (auto* host = recorderControl_ ? recorderControl_->host() : nullptr) {
        host->setNeedsLayout();
        host->setNeedsDisplay();
    }
}

SRStyleImage SRRecorderControlStyle::image(const std::string& name) const {
    return loader_->imageNamed(name, identifier_, effectiveComponents_);
}

void SRRecorderControlStyle::loadLook() {
    const auto info = loader_->infoForStyle(identifier_);
    const SRStyleMetrics& m = info->metrics;
    SRRecorderControlLook look;
    look.bezelNormalLeft = image("bezel-normal-left");
    look.bezelNormalCenter = image("bezel-normal-center");
    look.bezelNormalRight = image("bezel-normal-right");
    look.bezelPressedLeft = image("bezel-pressed-left");
    look.bezelPressedCenter = image("bezel-pressed-center");
    look.bezelPressedRight = image("bezel-pressed-right");
    look.bezelRecordingLeft = image("bezel-recording-left");
    look.bezelRecordingCenter = image("bezel-recording-center");
    look.bezelRecordingRight = image("bezel-recording-right");
    look.bezelDisabledLeft = image("bezel-disabled-left");
    look.bezelDisabledCenter = image("bezel-disabled-center");
    look.bezelDisabledRight = image("bezel-disabled-right");
    look.cancelButton = image("button-cancel-normal");
    look.cancelButtonPressed = image("button-cancel-pressed");
    look.clearButton = image("button-clear-normal");
    look.clearButtonPressed = image("button-clear-pressed");
    look.normalLabelAttributes = m.normalLabelAttributes;
    look.recordingLabelAttributes = m.recordingLabelAttributes;
    look.disabledLabelAttributes = m.disabledLabelAttributes;
    look.focusRingCornerRadius = m.focusRingCornerRadius;
    look.focusRingInsets = m.focusRingInsets;
    look.baselineLayoutOffsetFromBottom = m.baselineLayoutOffsetFromBottom;
    look.baselineDrawingOffsetFromBottom = m.baselineDrawingOffsetFromBottom;
    look.alignmentRectInsets = m.alignmentInsets;
    look.intrinsicContentSize = m.minSize;
    look.alignmentToLabel = m.alignmentToLabel;
    look.labelToAlignment = m.labelToAlignment;
    look.labelToCancel = m.labelToCancel;
    look.cancelToClear = m.cancelToClear;
    look.buttonToAlignment = m.buttonToAlignment;
    look.isOpaque = false;
    look.isLabelDrawingFrameOpaque = false;
    look.allowsVibrancy = false;
    look_ = std::move(look);
}

}  // namespace lirixkro
