#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "shortcuts/SRCommon.h"

namespace lirixkro {

enum class SRRecorderControlStyleComponentsAppearance : std::uint32_t {
    unspecified = 0,
    aqua = 1,
    vibrantLight = 2,
    darkAqua = 3,
    vibrantDark = 4,
};

// Compared as bits: high contrast is a bit a look may have or not.
enum class SRRecorderControlStyleComponentsAccessibility : std::uint32_t {
    unspecified = 0,
    none = 1,
    highContrast = 2,
};

enum class SRRecorderControlStyleComponentsLayoutDirection : std::uint32_t {
    unspecified = 0,
    leftToRight = 1,
    rightToLeft = 2,
};

enum class SRRecorderControlStyleComponentsTint : std::uint32_t {
    unspecified = 0,
    blue = 1,
    graphite = 2,
};

enum class SRComparisonResult { orderedAscending = -1, orderedSame = 0, orderedDescending = 1 };

// What the toolkit says about the look of a view (or of the application,
// when there is no view): the name of its appearance among
// "NSAppearanceNameAqua", "NSAppearanceNameDarkAqua",
// "NSAppearanceNameVibrantLight" and "NSAppearanceNameVibrantDark", whether
// the user asked for more contrast, the layout direction, and whether the
// accent is graphite rather than blue.
struct SRToolkitAppearance {
    std::string appearanceName = "NSAppearanceNameAqua";
    bool increaseContrast = false;
    SRLayoutDirection layoutDirection = SRLayoutDirection::leftToRight;
    bool graphiteTint = false;
};

// Something that can tell the toolkit's look; a recorder control's view does.
class SRToolkitAppearanceSource {
  public:
    virtual ~SRToolkitAppearanceSource() = default;
    virtual SRToolkitAppearance toolkitAppearance() const = 0;
};

// The four parts of a style's look, each with the text it adds to the names
// of the style's files. Immutable; a value out of range is an assertion
// failure when its text is asked for.
class SRRecorderControlStyleComponents {
  public:
    using Appearance = SRRecorderControlStyleComponentsAppearance;
    using Accessibility = SRRecorderControlStyleComponentsAccessibility;
    using LayoutDirection = SRRecorderControlStyleComponentsLayoutDirection;
    using Tint = SRRecorderControlStyleComponentsTint;

    SRRecorderControlStyleComponents() = default;
    SRRecorderControlStyleComponents(Appearance appearance, Accessibility accessibility,
                                     LayoutDirection layoutDirection, Tint tint)
        : appearance_(appearance),
          accessibility_(accessibility),
          layoutDirection_(layoutDirection),
          tint_(tint) {}

    // The components of the toolkit's look now: of the view if given, else
    // of the application (see setApplicationAppearanceSource).
    static SRRecorderControlStyleComponents currentComponents();
    static SRRecorderControlStyleComponents currentComponentsForView(
        const SRToolkitAppearanceSource* view);
    static SRRecorderControlStyleComponents componentsOfToolkitAppearance(
        const SRToolkitAppearance& appearance);
    // The look of the application, which the views install; without one the
    // application is light, left to right, blue and of ordinary contrast.
    static void setApplicationAppearanceSource(const SRToolkitAppearanceSource* source);

    Appearance appearance() const { return appearance_; }
    Accessibility accessibility() const { return accessibility_; }
    LayoutDirection layoutDirection() const { return layoutDirection_; }
    Tint tint() const { return tint_; }

    // "-darkaqua-acc-rtl-graphite" and the like: the four texts in order.
    std::string stringRepresentation() const;
    // No part unspecified.
    bool isSpecified() const;

    // Which of the two is the better match for the reference: ascending when
    // this one is. Parts decide in order (appearance, accessibility, layout
    // direction, tint), the first difference winning.
    SRComparisonResult compare(const SRRecorderControlStyleComponents& other,
                               const SRRecorderControlStyleComponents& reference) const;

    std::size_t hash() const;
    friend bool operator==(const SRRecorderControlStyleComponents&,
                           const SRRecorderControlStyleComponents&) = default;

  private:
    Appearance appearance_ = Appearance::unspecified;
    Accessibility accessibility_ = Accessibility::unspecified;
    LayoutDirection layoutDirection_ = LayoutDirection::unspecified;
    Tint tint_ = Tint::unspecified;
};

}  // namespace lirixkro

template <>
struct std::hash<lirixkro::SRRecorderControlStyleComponents> {
    std::size_t operator()(const lirixkro::SRRecorderControlStyleComponents& c) const noexcept {
        return c.hash();
    }
};
