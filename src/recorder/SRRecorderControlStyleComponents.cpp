#include "recorder/SRRecorderControlStyleComponents.h"

#include <array>
#include <atomic>
#include <bit>
#include <span>

#include "shortcuts/SRExceptions.h"

namespace lirixkro {

using Components = SRRecorderControlStyleComponents;

namespace {

std::atomic<const SRToolkitAppearanceSource*> applicationSource{nullptr};

// The preference of each appearance for the others, best first. Layout
// direction and tint are ranked in these same lists by their raw values;
// that ranks 1 before 2 for a reference of 1 and 2 before 1 for 2, and
// leaves everything equal for an unspecified reference.
constexpr std::array<std::uint32_t, 5> appearancePreferences[] = {
    {},               // unspecified: no preference
    {1, 2, 3, 4, 0},  // aqua
    {2, 1, 4, 3, 0},  // vibrant light
    {3, 4, 1, 2, 0},  // dark aqua
    {4, 3, 2, 1, 0},  // vibrant dark
};

std::size_t positionIn(std::span<const std::uint32_t> list, std::uint32_t value) {
    for (std::size_t i = 0; i < list.size(); ++i) {
        if (list[i] == value)
            return i;
    }
    return list.size();
}

SRComparisonResult compareNumbers(std::size_t a, std::size_t b) {
    if (a < b)
        return SRComparisonResult::orderedAscending;
    if (a > b)
        return SRComparisonResult::orderedDescending;
    return SRComparisonResult::orderedSame;
}

// The better is the earlier in the reference's list of preferences.
SRComparisonResult compareByPreference(std::uint32_t a, std::uint32_t b, std::uint32_t reference) {
    if (reference == 0 || reference >= std::size(appearancePreferences))
        return SRComparisonResult::orderedSame;
    const auto& list = appearancePreferences[reference];
    return compareNumbers(positionIn(list, a), positionIn(list, b));
}

// More bits shared with the reference is better; then fewer bits it lacks.
SRComparisonResult compareBits(std::uint32_t a, std::uint32_t b, std::uint32_t reference) {
    const auto shared = [&](std::uint32_t v) { return std::popcount(v & reference); };
    const auto extra = [&](std::uint32_t v) { return std::popcount(v & ~reference); };
    if (auto byShared = compareNumbers(shared(b), shared(a));
        byShared != SRComparisonResult::orderedSame) {
        return byShared;
    }
    return compareNumbers(extra(a), extra(b));
}

template <typename E>
std::uint32_t raw(E value) {
    return static_cast<std::uint32_t>(value);
}

}  // namespace

Components Components::currentComponents() {
    return currentComponentsForView(nullptr);
}

Components Components::currentComponentsForView(const SRToolkitAppearanceSource* view) {
    const SRToolkitAppearanceSource* source = view ? view : applicationSource.load();
    return componentsOfToolkitAppearance(source ? source->toolkitAppearance()
                                                : SRToolkitAppearance{});
}

Components Components::componentsOfToolkitAppearance(const SRToolkitAppearance& toolkit) {
    Appearance appearance = Appearance::aqua;
    if (toolkit.appearanceName == "NSAppearanceNameDarkAqua")
        appearance = Appearance::darkAqua;
    else if (toolkit.appearanceName == "NSAppearanceNameVibrantLight")
        appearance = Appearance::vibrantLight;
    else if (toolkit.appearanceName == "NSAppearanceNameVibrantDark")
        appearance = Appearance::vibrantDark;
    return Components(
        appearance, toolkit.increaseContrast ? Accessibility::highContrast : Accessibility::none,
        toolkit.layoutDirection == SRLayoutDirection::rightToLeft ? LayoutDirection::rightToLeft
                                                                  : LayoutDirection::leftToRight,
        toolkit.graphiteTint ? Tint::graphite : Tint::blue);
}

void Components::setApplicationAppearanceSource(const SRToolkitAppearanceSource* source) {
    applicationSource.store(source);
}

std::string Components::stringRepresentation() const {
    static const char* const appearances[] = {"", "-aqua", "-vibrantlight", "-darkaqua",
                                              "-vibrantdark"};
    static const char* const directions[] = {"", "-ltr", "-rtl"};
    static const char* const tints[] = {"", "-blue", "-graphite"};
    SRAssert(raw(appearance_) < std::size(appearances), "Unexpected appearance.");
    SRAssert(raw(accessibility_) <= 3, "Unexpected accessibility.");
    SRAssert(raw(layoutDirection_) < std::size(directions), "Unexpected layout direction.");
    SRAssert(raw(tint_) < std::size(tints), "Unexpected tint.");
    std::string text = appearances[raw(appearance_)];
    if (raw(accessibility_) & raw(Accessibility::highContrast))
        text += "-acc";
    text += directions[raw(layoutDirection_)];
    text += tints[raw(tint_)];
    return text;
}

bool Components::isSpecified() const {
    return appearance_ != Appearance::unspecified && accessibility_ != Accessibility::unspecified &&
           layoutDirection_ != LayoutDirection::unspecified && tint_ != Tint::unspecified;
}

SRComparisonResult Components::compare(const Components& other, const Components& reference) const {
    const SRComparisonResult results[] = {
        compareByPreference(raw(appearance_), raw(other.appearance_), raw(reference.appearance_)),
        compareBits(raw(accessibility_), raw(other.accessibility_), raw(reference.accessibility_)),
        compareByPreference(raw(layoutDirection_), raw(other.layoutDirection_),
                            raw(reference.layoutDirection_)),
        compareByPreference(raw(tint_), raw(other.tint_), raw(reference.tint_)),
    };
    for (SRComparisonResult result : results) {
        if (result != SRComparisonResult::orderedSame)
            return result;
    }
    return SRComparisonResult::orderedSame;
}

std::size_t Components::hash() const {
    return raw(appearance_) | raw(accessibility_) << 8 | raw(layoutDirection_) << 16 |
           raw(tint_) << 24;
}

}  // namespace lirixkro
