#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/Geometry.h"
#include "recorder/SRRecorderControlStyleComponents.h"
#include "recorder/SRRecorderControlStyleResourceLoader.h"
#include "recorder/SRStyleInfo.h"

namespace lirixkro {

class SRRecorderControl;

// Which of the control's constraint sets is in force besides the one that
// always is.
enum class SRRecorderControlLayoutState { displaying, recordingWithNoValue, recordingWithValue };

// One constraint of the control's layout: its name ("SR_…") and its
// constant, taken from the style's measures.
struct SRLayoutConstraint {
    std::string name;
    double constant = 0;
    friend bool operator==(const SRLayoutConstraint&, const SRLayoutConstraint&) = default;
};

// The control's layout guides as rectangles in its own coordinates (origin
// top left, y going down). A button that isn't shown has an empty guide.
struct SRRecorderControlLayoutGuides {
    platform::CGRect alignmentGuide;
    platform::CGRect backgroundDrawingGuide;
    platform::CGRect labelDrawingGuide;
    platform::CGRect cancelButtonDrawingGuide;
    platform::CGRect clearButtonDrawingGuide;
    // Where a click counts for a button: larger than the drawing.
    platform::CGRect cancelButtonLayoutGuide;
    platform::CGRect clearButtonLayoutGuide;
};

// What a style gives the views to draw with.
struct SRRecorderControlLook {
    SRStyleImage bezelNormalLeft, bezelNormalCenter, bezelNormalRight;
    SRStyleImage bezelPressedLeft, bezelPressedCenter, bezelPressedRight;
    SRStyleImage bezelRecordingLeft, bezelRecordingCenter, bezelRecordingRight;
    SRStyleImage bezelDisabledLeft, bezelDisabledCenter, bezelDisabledRight;
    SRStyleImage cancelButton, cancelButtonPressed, clearButton, clearButtonPressed;
    SRTextAttributes normalLabelAttributes, recordingLabelAttributes, disabledLabelAttributes;
    platform::CGSize focusRingCornerRadius;
    SREdgeInsets focusRingInsets;
    double baselineLayoutOffsetFromBottom = 0;
    double baselineDrawingOffsetFromBottom = 0;
    SREdgeInsets alignmentRectInsets;
    platform::CGSize intrinsicContentSize;
    // The measures the views size the control with.
    double alignmentToLabel = 0;
    double labelToAlignment = 0;
    double labelToCancel = 0;
    double cancelToClear = 0;
    double buttonToAlignment = 0;
    bool allowsVibrancy = false;
    bool isOpaque = false;
    bool isLabelDrawingFrameOpaque = false;
};

// The look of a recorder control, as the control and its view use it. Texts
// and tool tips a style doesn't have are std::nullopt; the control then uses
// its defaults.
class SRRecorderControlStyling {
  public:
    virtual ~SRRecorderControlStyling() = default;

    virtual std::string identifier() const = 0;

    virtual std::optional<std::string> noValueNormalLabel() const { return std::nullopt; }
    virtual std::optional<std::string> noValueDisableLabel() const { return std::nullopt; }
    virtual std::optional<std::string> noValueRecordingLabel() const { return std::nullopt; }
    virtual std::optional<std::string> normalTooltip() const { return std::nullopt; }
    virtual std::optional<std::string> recordingTooltip() const { return std::nullopt; }
    virtual std::optional<std::string> cancelButtonTooltip() const { return std::nullopt; }
    virtual std::optional<std::string> clearButtonTooltip() const { return std::nullopt; }

    // Attaching to a control loads the look for its view; removal detaches.
    virtual void prepareForRecorderControl(SRRecorderControl& control) = 0;
    virtual void prepareForRemoval() = 0;
    virtual SRRecorderControl* recorderControl() const = 0;
    // The toolkit's look changed: reload what depends on it.
    virtual void recorderControlAppearanceDidChange() = 0;

    virtual const SRRecorderControlLook& look() const = 0;
    // Puts the constraint set of the state in force.
    virtual void updateActiveConstraints(SRRecorderControlLayoutState state) = 0;
    virtual SRRecorderControlLayoutGuides layoutGuides(platform::CGSize bounds) const = 0;
};

}  // namespace lirixkro
