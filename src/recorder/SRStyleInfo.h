#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/Geometry.h"
#include "recorder/SRRecorderControlStyleComponents.h"

namespace lirixkro {

struct SREdgeInsets {
    double top = 0;
    double left = 0;
    double bottom = 0;
    double right = 0;
    friend bool operator==(const SREdgeInsets&, const SREdgeInsets&) = default;
};

// How a label is drawn: a font by name (the system font when the
// description says ".AppleSystemUIFont") and a colour of a catalogue, which
// the views look up by name.
struct SRTextAttributes {
    std::string fontName;
    bool isSystemFont = false;
    double fontSize = 0;
    std::string fontColorCatalogName;
    std::string fontColorName;
    // "SRMinimalDrawableWidthAttributeName": room for the ellipsis that ends
    // a cut label, about one em.
    double minimalDrawableWidth = 0;
    friend bool operator==(const SRTextAttributes&, const SRTextAttributes&) = default;
};

// The measures of a style, in points.
struct SRStyleMetrics {
    platform::CGSize minSize;
    double labelToCancel = 0;
    double cancelToClear = 0;
    double buttonToAlignment = 0;
    double baselineFromTop = 0;
    double alignmentToLabel = 0;
    double labelToAlignment = 0;
    double baselineLayoutOffsetFromBottom = 0;
    double baselineDrawingOffsetFromBottom = 0;
    platform::CGSize focusRingCornerRadius;
    SREdgeInsets focusRingInsets;
    SREdgeInsets alignmentInsets;
    SRTextAttributes normalLabelAttributes;
    SRTextAttributes recordingLabelAttributes;
    SRTextAttributes disabledLabelAttributes;
};

// A style's description: the looks it has files for, and its measures.
struct SRStyleInfo {
    std::vector<SRRecorderControlStyleComponents> supportedComponents;
    SRStyleMetrics metrics;
};

// Reads a style's description from its JSON text, strictly: a missing or
// extra key, a value of the wrong type or out of range raises
// SRInternalInconsistencyException with the path of the value, which starts
// at the given name ("sr-mojave-info.metrics.minSize.width: value < 0").
// Text that isn't JSON raises "<name> is an invalid JSON: <reason>".
SRStyleInfo SRStyleInfoFromJSON(std::string_view json, const std::string& name);

}  // namespace lirixkro
