// The recorder control's constraints, and the layout guides they give.
#include <algorithm>

#include "recorder/SRRecorderControlStyle.h"

namespace lirixkro {

using platform::CGRect;
using platform::CGSize;

namespace {

CGRect mirrored(CGRect rect, double width) {
    if (rect.size.width > 0)
        rect.origin.x = width - rect.maxX();
    return rect;
}

}  // namespace

void SRRecorderControlStyle::addConstraints() {
    const auto& l = look_;
    alwaysConstraints_ = {
        {"SR_alignmentGuide_topToView", l.alignmentRectInsets.top},
        {"SR_alignmentGuide_leadingToView", l.alignmentRectInsets.left},
        {"SR_alignmentGuide_trailingToView", l.alignmentRectInsets.right},
        {"SR_alignmentGuide_bottomToView", l.alignmentRectInsets.bottom},
        {"SR_labelDrawingGuide_leadingToAlignment", l.alignmentToLabel},
        {"SR_labelDrawingGuide_minWidth", l.normalLabelAttributes.minimalDrawableWidth},
        {"SR_cancelButtonDrawingGuide_width", l.cancelButton.size.width},
        {"SR_cancelButtonDrawingGuide_height", l.cancelButton.size.height},
        {"SR_clearButtonDrawingGuide_width", l.clearButton.size.width},
        {"SR_clearButtonDrawingGuide_height", l.clearButton.size.height},
        {"SR_view_minWidth", l.intrinsicContentSize.width},
        {"SR_view_minHeight", l.intrinsicContentSize.height},
    };
    displayingConstraints_ = {
        {"SR_labelDrawingGuide_trailingToAlignment", l.labelToAlignment},
    };
    recordingWithNoValueConstraints_ = {
        {"SR_labelDrawingGuide_trailingToCancel", l.labelToCancel},
        {"SR_cancelButtonDrawingGuide_trailingToAlignment", l.buttonToAlignment},
    };
    recordingWithValueConstraints_ = {
        {"SR_labelDrawingGuide_trailingToCancel", l.labelToCancel},
        {"SR_cancelButtonDrawingGuide_trailingToClear", l.cancelToClear},
        {"SR_clearButtonDrawingGuide_trailingToAlignment", l.buttonToAlignment},
    };
}

void SRRecorderControlStyle::updateActiveConstraints(SRRecorderControlLayoutState state) {
    activeState_ = state;
}

std::vector<std::string> SRRecorderControlStyle::activeConstraintNames() const {
    std::vector<std::string> names;
    const auto add = [&](const std::vector<SRLayoutConstraint>& set) {
        for (const auto& constraint : set)
            names.push_back(constraint.name);
    };
    add(alwaysConstraints_);
    switch (activeState_) {
        case SRRecorderControlLayoutState::displaying:
            add(displayingConstraints_);
            break;
        case SRRecorderControlLayoutState::recordingWithNoValue:
            add(recordingWithNoValueConstraints_);
            break;
        case SRRecorderControlLayoutState::recordingWithValue:
            add(recordingWithValueConstraints_);
            break;
    }
    return names;
}

// The constant of a constraint in force; 0 for one that isn't.
double SRRecorderControlStyle::constant(const std::string& name) const {
    const auto find = [&](const std::vector<SRLayoutConstraint>& set) -> const SRLayoutConstraint* {
        auto found = std::find_if(set.begin(), set.end(),
                                  [&](const auto& constraint) { return constraint.name == name; });
        return found == set.end() ? nullptr : &*found;
    };
    const std::vector<SRLayoutConstraint>* active = &displayingConstraints_;
    if (activeState_ == SRRecorderControlLayoutState::recordingWithNoValue)
        active = &recordingWithNoValueConstraints_;
    else if (activeState_ == SRRecorderControlLayoutState::recordingWithValue)
        active = &recordingWithValueConstraints_;
    if (const auto* constraint = find(alwaysConstraints_))
        return constraint->constant;
    const auto* constraint = find(*active);
    return constraint ? constraint->constant : 0;
}

SRRecorderControlLayoutGuides SRRecorderControlStyle::layoutGuides(CGSize bounds) const {
    SRRecorderControlLayoutGuides guides;
    guides.backgroundDrawingGuide = {{0, 0}, bounds};
    const double top = constant("SR_alignmentGuide_topToView");
    const double leading = constant("SR_alignmentGuide_leadingToView");
    const CGRect alignment = {
        {leading, top},
        {std::max(0.0, bounds.width - leading - constant("SR_alignmentGuide_trailingToView")),
         std::max(0.0, bounds.height - top - constant("SR_alignmentGuide_bottomToView"))}};
    guides.alignmentGuide = alignment;

    // Buttons from the trailing edge inwards, each centred on the height.
    const auto button = [&](double trailing, const char* width, const char* height) {
        const CGSize size{constant(width), constant(height)};
        return CGRect{
            {trailing - size.width, alignment.minY() + (alignment.size.height - size.height) / 2},
            size};
    };
    double labelTrailing = alignment.maxX() - constant("SR_labelDrawingGuide_trailingToAlignment");
    if (activeState_ == SRRecorderControlLayoutState::recordingWithValue) {
        guides.clearButtonDrawingGuide =
            button(alignment.maxX() - constant("SR_clearButtonDrawingGuide_trailingToAlignment"),
                   "SR_clearButtonDrawingGuide_width", "SR_clearButtonDrawingGuide_height");
        guides.cancelButtonDrawingGuide =
            button(guides.clearButtonDrawingGuide.minX() -
                       constant("SR_cancelButtonDrawingGuide_trailingToClear"),
                   "SR_cancelButtonDrawingGuide_width", "SR_cancelButtonDrawingGuide_height");
    } else if (activeState_ == SRRecorderControlLayoutState::recordingWithNoValue) {
        guides.cancelButtonDrawingGuide =
            button(alignment.maxX() - constant("SR_cancelButtonDrawingGuide_trailingToAlignment"),
                   "SR_cancelButtonDrawingGuide_width", "SR_cancelButtonDrawingGuide_height");
    }
    if (activeState_ != SRRecorderControlLayoutState::displaying) {
        labelTrailing = guides.cancelButtonDrawingGuide.minX() -
                        constant("SR_labelDrawingGuide_trailingToCancel");
    }
    const double labelLeading =
        alignment.minX() + constant("SR_labelDrawingGuide_leadingToAlignment");
    guides.labelDrawingGuide = {
        {labelLeading, alignment.minY()},
        {std::max(constant("SR_labelDrawingGuide_minWidth"), labelTrailing - labelLeading),
         alignment.size.height}};

    // A click counts up to halfway to the neighbours and over the full height.
    const auto hitArea = [&](const CGRect& drawing, double before, double after) {
        if (drawing.size.width <= 0)
            return CGRect{};
        return CGRect{{drawing.minX() - before, alignment.minY()},
                      {drawing.size.width + before + after, alignment.size.height}};
    };
    const bool hasClear = guides.clearButtonDrawingGuide.size.width > 0;
    guides.cancelButtonLayoutGuide = hitArea(
        guides.cancelButtonDrawingGuide, constant("SR_labelDrawingGuide_trailingToCancel") / 2,
        hasClear ? constant("SR_cancelButtonDrawingGuide_trailingToClear") / 2
                 : constant("SR_cancelButtonDrawingGuide_trailingToAlignment"));
    guides.clearButtonLayoutGuide = hitArea(
        guides.clearButtonDrawingGuide, constant("SR_cancelButtonDrawingGuide_trailingToClear") / 2,
        constant("SR_clearButtonDrawingGuide_trailingToAlignment"));

    if (effectiveComponents_.layoutDirection() ==
        SRRecorderControlStyleComponentsLayoutDirection::rightToLeft) {
        for (CGRect* rect : {&guides.alignmentGuide, &guides.labelDrawingGuide,
                             &guides.cancelButtonDrawingGuide, &guides.clearButtonDrawingGuide,
                             &guides.cancelButtonLayoutGuide, &guides.clearButtonLayoutGuide}) {
            *rect = mirrored(*rect, bounds.width);
        }
    }
    return guides;
}

}  // namespace lirixkro
