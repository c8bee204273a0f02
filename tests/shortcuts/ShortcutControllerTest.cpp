#include <gtest/gtest.h>

#include "recorder/SRRecorderControl.h"
#include "shortcuts/SRGlobalShortcutMonitor.h"
#include "shortcuts/SRShortcut.h"
#include "shortcuts/SRShortcutController.h"
#include "shortcuts/ShortcutTestSupport.h"

namespace lirixkro {
namespace {

namespace carbon = platform::carbonModifier;
namespace layout = platform::sim::layoutIdentifier;

class CountingTarget final : public SRShortcutActionTarget {
  public:
    bool respondsToPerformShortcutAction() const override { return true; }
    bool performShortcutAction(SRShortcutAction&) override {
        ++performed;
        return true;
    }
    int performed = 0;
};

class ShortcutController : public testing::ShortcutTest {
  protected:
    ~ShortcutController() override { SRGlobalShortcutMonitor::sharedMonitor().removeAllActions(); }
    std::shared_ptr<SRShortcutController> controller =
        SRShortcutController::make(SRShortcut::shortcutWithCode(12, SRCommandFlag | SRShiftFlag));
};

TEST_F(ShortcutController, OffersTheContentInTheFormsMenusAndLabelsWant) {
    EXPECT_EQ(controller->valueForKeyPath("selection.keyEquivalent"), SRObservedValue("q"));
    EXPECT_EQ(controller->valueForKeyPath("selection.literalASCIIKeyCode"), SRObservedValue("Q"));
    EXPECT_EQ(controller->valueForKeyPath("selection.symbolicModifierFlags"),
              SRObservedValue("⇧⌘"));
    EXPECT_EQ(controller->valueForKeyPath("selection.literalModifierFlags"),
              SRObservedValue("Shift-Command"));
    EXPECT_EQ(controller->valueForKeyPath("selection.keyEquivalentModifierMask"),
              SRObservedValue(SRNumber(SRCommandFlag | SRShiftFlag)));
    EXPECT_EQ(controller->valueForKeyPath("selection.nonsense"), SRObservedValue(SRNull{}));
    controller->setContent(nullptr);
    EXPECT_EQ(controller->valueForKeyPath("selection.literalKeyCode"), SRObservedValue(SRNull{}));
}

TEST_F(ShortcutController, ALayoutChangeIsTheChangeOfEveryObservedForm) {
    int literal = 0, content = 0;
    auto literalObservation =
        controller->observeKeyPath("selection.literalKeyCode", [&] { ++literal; });
    auto contentObservation = controller->observeKeyPath("content", [&] { ++content; });
    EXPECT_EQ(controller->valueForKeyPath("selection.literalKeyCode"), SRObservedValue("Q"));
    ASSERT_TRUE(layouts.selectLayout(layout::french));
    loop.runUntilIdle();
    EXPECT_EQ(literal, 1);
    EXPECT_EQ(content, 0);
    EXPECT_EQ(controller->valueForKeyPath("selection.literalKeyCode"), SRObservedValue("A"))
        << "the key of Q on a US keyboard types A in French";

    literalObservation.cancel();
    ASSERT_TRUE(layouts.selectLayout(layout::us));
    loop.runUntilIdle();
    EXPECT_EQ(literal, 1) << "no longer listening";
    controller->setContent(nullptr);
    EXPECT_EQ(content, 1);
}

TEST_F(ShortcutController, WithATargetItsActionFollowsTheContentOnTheSharedMonitor) {
    auto target = std::make_shared<CountingTarget>();
    controller->setShortcutActionTarget(target);
    ASSERT_TRUE(controller->shortcutAction());
    EXPECT_TRUE(hotKeys.press(12, carbon::command | carbon::shift));
    EXPECT_EQ(target->performed, 1);

    controller->setContent(SRShortcut::shortcutWithCode(40, SRControlFlag));
    EXPECT_FALSE(hotKeys.press(12, carbon::command | carbon::shift));
    EXPECT_TRUE(hotKeys.press(40, carbon::control));
    EXPECT_EQ(target->performed, 2);

    controller->setShortcutActionTarget(std::weak_ptr<SRShortcutActionTarget>());
    EXPECT_EQ(controller->shortcutAction(), nullptr);
    EXPECT_EQ(hotKeys.registeredCount(), 0u);
}

TEST_F(ShortcutController, BindsARecorderControlsValueToTheContent) {
    auto control = std::make_shared<SRRecorderControl>();
    controller->setRecorderControl(control);
    ASSERT_TRUE(control->objectValue());
    EXPECT_EQ(control->objectValue()->keyCode(), 12);
    control->setObjectValue(SRShortcut::shortcutWithCode(0, SROptionFlag));
    EXPECT_EQ(controller->content()->keyCode(), 0);
    controller->setContent(nullptr);
    EXPECT_EQ(control->objectValue(), nullptr);
    controller->setRecorderControl(nullptr);
    controller->setContent(SRShortcut::shortcutWithCode(1, SROptionFlag));
    EXPECT_EQ(control->objectValue(), nullptr) << "unbound";
}

}  // namespace
}  // namespace lirixkro
