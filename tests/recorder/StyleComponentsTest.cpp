#include <gtest/gtest.h>

#include <algorithm>

#include "StyleComponentsNames.h"
#include "recorder/SRRecorderControlStyleComponents.h"
#include "shortcuts/SRExceptions.h"

namespace lirixkro {
namespace {

using namespace testing::styles;

TEST(StyleComponents, NameTheirPartsInOrderAndRefuseUnknownValues) {
    EXPECT_EQ(C(A::darkAqua, X::highContrast, D::rightToLeft, T::graphite).stringRepresentation(),
              "-darkaqua-acc-rtl-graphite");
    EXPECT_EQ(C(A::vibrantLight, X::none, D::leftToRight, T::blue).stringRepresentation(),
              "-vibrantlight-ltr-blue");
    EXPECT_EQ(C().stringRepresentation(), "");
    EXPECT_FALSE(C(A::aqua, X::none, D::leftToRight, T::unspecified).isSpecified());
    EXPECT_TRUE(C(A::aqua, X::none, D::leftToRight, T::blue).isSpecified());
    try {
        (void)C(static_cast<A>(7), X::none, D::leftToRight, T::blue).stringRepresentation();
        FAIL();
    } catch (const SRInternalInconsistencyException& error) {
        EXPECT_STREQ(error.what(), "Unexpected appearance.");
    }
    EXPECT_THROW((void)C(A::aqua, X::none, static_cast<D>(3), T::blue).stringRepresentation(),
                 SRInternalInconsistencyException);
}

// Sorts stably, best first, as the loader does.
std::vector<std::string> ranked(std::vector<C> candidates, const C& reference) {
    std::stable_sort(candidates.begin(), candidates.end(), [&](const C& a, const C& b) {
        return a.compare(b, reference) == SRComparisonResult::orderedAscending;
    });
    std::vector<std::string> names;
    for (const auto& candidate : candidates)
        names.push_back(candidate.stringRepresentation());
    return names;
}

TEST(StyleComponents, AppearanceRanksByItsPreferenceListAndUnspecifiedLast) {
    const std::vector<C> all = {C(), C(A::vibrantDark, {}, {}, {}), C(A::darkAqua, {}, {}, {}),
                                C(A::vibrantLight, {}, {}, {}), C(A::aqua, {}, {}, {})};
    EXPECT_EQ(
        ranked(all, C(A::aqua, {}, {}, {})),
        (std::vector<std::string>{"-aqua", "-vibrantlight", "-darkaqua", "-vibrantdark", ""}));
    EXPECT_EQ(
        ranked(all, C(A::vibrantDark, {}, {}, {})),
        (std::vector<std::string>{"-vibrantdark", "-darkaqua", "-vibrantlight", "-aqua", ""}));
    EXPECT_EQ(ranked(all, C()),
              (std::vector<std::string>{"", "-vibrantdark", "-darkaqua", "-vibrantlight", "-aqua"}))
        << "no reference: all equal, the order kept";
}

TEST(StyleComponents, HighContrastWantsItsBitAndAnOrdinaryLookAvoidsIt) {
    const std::vector<C> all = {C(A::aqua, X::highContrast, {}, {}), C(A::aqua, {}, {}, {}),
                                C(A::aqua, X::none, {}, {})};
    EXPECT_EQ(ranked(all, C(A::aqua, X::none, {}, {})),
              (std::vector<std::string>{"-aqua", "-aqua", "-aqua-acc"}));
    EXPECT_EQ(ranked(all, C(A::aqua, X::none, {}, {})).front(), "-aqua");
    const auto forContrast = ranked(all, C(A::aqua, X::highContrast, {}, {}));
    EXPECT_EQ(forContrast.front(), "-aqua-acc");
    // Appearance still decides first.
    EXPECT_EQ(ranked({C(A::darkAqua, X::highContrast, {}, {}), C(A::aqua, X::none, {}, {})},
                     C(A::aqua, X::highContrast, {}, {}))
                  .front(),
              "-aqua");
}

TEST(StyleComponents, DirectionAndTintRankInTheAppearanceListsByTheirRawValue) {
    const std::vector<C> all = {C(A::aqua, {}, D::unspecified, {}),
                                C(A::aqua, {}, D::rightToLeft, {}),
                                C(A::aqua, {}, D::leftToRight, {})};
    // Left to right: 1, 2, then unspecified, as the list of appearance 1 has it.
    EXPECT_EQ(ranked(all, C(A::aqua, {}, D::leftToRight, {})),
              (std::vector<std::string>{"-aqua-ltr", "-aqua-rtl", "-aqua"}));
    EXPECT_EQ(ranked(all, C(A::aqua, {}, D::rightToLeft, {})),
              (std::vector<std::string>{"-aqua-rtl", "-aqua-ltr", "-aqua"}));
    EXPECT_EQ(ranked(all, C(A::aqua, {}, D::unspecified, {})),
              (std::vector<std::string>{"-aqua", "-aqua-rtl", "-aqua-ltr"}));
    EXPECT_EQ(ranked({C(A::aqua, {}, {}, T::blue), C(A::aqua, {}, {}, T::graphite)},
                     C(A::aqua, {}, {}, T::graphite)),
              (std::vector<std::string>{"-aqua-graphite", "-aqua-blue"}));
}

class FixedAppearance final : public SRToolkitAppearanceSource {
  public:
    SRToolkitAppearance toolkitAppearance() const override { return appearance; }
    SRToolkitAppearance appearance;
};

TEST(StyleComponents, TheCurrentComponentsComeFromTheViewElseTheApplication) {
    FixedAppearance view;
    view.appearance = {"NSAppearanceNameDarkAqua", true, SRLayoutDirection::rightToLeft, true};
    EXPECT_EQ(C::currentComponentsForView(&view),
              C(A::darkAqua, X::highContrast, D::rightToLeft, T::graphite));
    EXPECT_EQ(C::currentComponentsForView(nullptr), C(A::aqua, X::none, D::leftToRight, T::blue));

    FixedAppearance application;
    application.appearance.appearanceName = "NSAppearanceNameVibrantDark";
    C::setApplicationAppearanceSource(&application);
    EXPECT_EQ(C::currentComponents().appearance(), A::vibrantDark);
    C::setApplicationAppearanceSource(nullptr);
}

}  // namespace
}  // namespace lirixkro
