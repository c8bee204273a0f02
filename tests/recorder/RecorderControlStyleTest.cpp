#include <gtest/gtest.h>

#include "RecorderTestSupport.h"
#include "StyleComponentsNames.h"
#include "recorder/SRRecorderControlStyle.h"
#include "shortcuts/SRExceptions.h"

namespace lirixkro {
namespace {

using namespace testing::styles;
using State = SRRecorderControlLayoutState;

class RecorderControlStyle : public testing::RecorderControlTest {
  protected:
    std::shared_ptr<SRRecorderControlStyle> attach(std::optional<C> components = std::nullopt) {
        auto style = std::make_shared<SRRecorderControlStyle>(std::nullopt, components);
        control->setStyle(style);
        return style;
    }
};

TEST_F(RecorderControlStyle, EffectiveComponentsFillWhatIsUnspecifiedFromTheView) {
    host.appearance = {"NSAppearanceNameDarkAqua", true, SRLayoutDirection::rightToLeft, false};
    EXPECT_EQ(attach()->effectiveComponents(),
              C(A::darkAqua, X::highContrast, D::rightToLeft, T::blue));
    EXPECT_EQ(
        attach(C(A::aqua, X::unspecified, D::leftToRight, T::unspecified))->effectiveComponents(),
        C(A::aqua, X::highContrast, D::leftToRight, T::blue));
    const C fixed(A::vibrantLight, X::none, D::leftToRight, T::graphite);
    EXPECT_EQ(attach(fixed)->effectiveComponents(), fixed) << "fully specified: taken as is";
}

TEST_F(RecorderControlStyle, ALookChangeReloadsTheImagesAndRedrawsOnlyWhenItChangesSomething) {
    auto style = attach();
    EXPECT_EQ(style->look().bezelNormalLeft.name, "sr-mojave-aqua-bezel-normal-left");
    EXPECT_EQ(style->look().clearButton.name, "sr-mojave-aqua-ltr-button-clear-normal");

    const int displays = host.displays;
    control->scheduleControlViewAppearanceDidChange();
    loop.runUntilIdle();
    EXPECT_EQ(host.displays, displays) << "nothing changed";

    host.appearance = {"NSAppearanceNameDarkAqua", true, SRLayoutDirection::rightToLeft, false};
    control->scheduleControlViewAppearanceDidChange();
    control->scheduleControlViewAppearanceDidChange();
    EXPECT_EQ(style->look().bezelNormalLeft.name, "sr-mojave-aqua-bezel-normal-left")
        << "told one turn later";
    loop.runUntilIdle();
    EXPECT_EQ(host.displays, displays + 1) << "two requests, one change";
    EXPECT_EQ(style->look().bezelNormalLeft.name, "sr-mojave-darkaqua-acc-bezel-normal-left");
    EXPECT_EQ(style->look().clearButton.name, "sr-mojave-darkaqua-acc-rtl-button-clear-normal");
}

TEST_F(RecorderControlStyle, AStyleWithoutADescriptionFailsAtTheControlsFirstUse) {
    try {
        control->setStyle(std::make_shared<SRRecorderControlStyle>("sr-nonesuch"));
        FAIL();
    } catch (const SRInternalInconsistencyException& error) {
        EXPECT_STREQ(error.what(), "Missing sr-nonesuch-info");
    }
}

TEST_F(RecorderControlStyle, TheButtonsTakeTheirPlacesFromTheTrailingEdge) {
    auto style = attach();
    const auto& look = style->look();
    control->setObjectValue(SRShortcut::shortcutWithCode(40, SRCommandFlag));

    auto guides = control->layoutGuides();
    EXPECT_EQ(guides.backgroundDrawingGuide, (platform::CGRect{{0, 0}, {160, 22}}));
    EXPECT_EQ(guides.alignmentGuide.size.height, 22 - look.alignmentRectInsets.bottom);
    EXPECT_EQ(guides.labelDrawingGuide.minX(), look.alignmentToLabel);
    EXPECT_EQ(guides.labelDrawingGuide.maxX(), 160 - look.labelToAlignment);
    EXPECT_EQ(guides.cancelButtonDrawingGuide.size.width, 0) << "no buttons while displaying";

    ASSERT_TRUE(control->beginRecording());
    guides = control->layoutGuides();
    const auto& clear = guides.clearButtonDrawingGuide;
    const auto& cancel = guides.cancelButtonDrawingGuide;
    EXPECT_EQ(clear.maxX(), 160 - look.buttonToAlignment);
    EXPECT_EQ(clear.size, look.clearButton.size);
    EXPECT_EQ(cancel.maxX(), clear.minX() - look.cancelToClear);
    EXPECT_EQ(guides.labelDrawingGuide.maxX(), cancel.minX() - look.labelToCancel);
    EXPECT_DOUBLE_EQ(cancel.minY() + cancel.size.height / 2,
                     guides.alignmentGuide.minY() + guides.alignmentGuide.size.height / 2);
    EXPECT_LE(guides.cancelButtonLayoutGuide.minX(), cancel.minX());
    EXPECT_GE(guides.cancelButtonLayoutGuide.maxX(), cancel.maxX());
    EXPECT_LE(guides.cancelButtonLayoutGuide.maxX(), guides.clearButtonLayoutGuide.minX())
        << "the hit areas don't overlap";
    const auto names = style->activeConstraintNames();
    EXPECT_NE(std::find(names.begin(), names.end(), "SR_cancelButtonDrawingGuide_trailingToClear"),
              names.end());
    EXPECT_EQ(std::find(names.begin(), names.end(), "SR_labelDrawingGuide_trailingToAlignment"),
              names.end());

    control->clearAndEndRecording();
    ASSERT_TRUE(control->beginRecording());
    EXPECT_EQ(style->activeState(), State::recordingWithNoValue);
    guides = control->layoutGuides();
    EXPECT_EQ(guides.clearButtonDrawingGuide.size.width, 0);
    EXPECT_EQ(guides.cancelButtonDrawingGuide.maxX(), 160 - look.buttonToAlignment);
}

TEST_F(RecorderControlStyle, RightToLeftMirrorsTheLayout) {
    attach(C(A::aqua, X::none, D::rightToLeft, T::blue));
    control->setObjectValue(SRShortcut::shortcutWithCode(40, SRCommandFlag));
    ASSERT_TRUE(control->beginRecording());
    const auto guides = control->layoutGuides();
    EXPECT_LT(guides.clearButtonDrawingGuide.maxX(), guides.cancelButtonDrawingGuide.minX());
    EXPECT_LT(guides.cancelButtonDrawingGuide.maxX(), guides.labelDrawingGuide.minX());
    EXPECT_EQ(guides.labelDrawingGuide.maxX(), 160 - control->style()->look().alignmentToLabel);
}

}  // namespace
}  // namespace lirixkro
