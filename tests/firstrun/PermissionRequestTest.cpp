// The permission request on the simulated desktop: one polling chain per
// process, at half-second rounds, ending with the grant; the seal and
// "Relaunch App" follow the answers.
#include <gtest/gtest.h>

#include "app/SpineTestSupport.h"
#include "firstrun/PermissionRequestView.h"

using tarnwick::PermissionRequestView;
using tarnwick::PermissionRequestViewModel;
using SealColor = PermissionRequestView::SealColor;

namespace {

class NoCoordinator final : public PermissionRequestView::Coordinator {};

class PermissionRequestTest : public ::testing::Test, protected spine::DesktopFixture {
  protected:
    // A process that started with or without the permission.
    void launch(bool trusted) {
        desktop.accessibility().setProcessTrusted(trusted);
        model = PermissionRequestViewModel::make();
        view = std::make_unique<PermissionRequestView>(model, coordinator);
        changes = model->changed().connect([this] { ++changeCount; });
    }

    std::size_t trustChecks() { return desktop.accessibility().trustChecks(); }
    std::size_t pendingRounds() { return desktop.loop().pendingTimerCount(); }

    NoCoordinator coordinator;
    std::shared_ptr<PermissionRequestViewModel> model;
    std::unique_ptr<PermissionRequestView> view;
    platform::Subscription changes;
    int changeCount = 0;
};

}  // namespace

TEST_F(PermissionRequestTest, AProcessStartedWithoutThePermissionShowsARedSealAndCannotRelaunch) {
    launch(false);
    EXPECT_FALSE(model->hasAccessibilityPermissions());
    EXPECT_TRUE(model->needsRelaunch());
    EXPECT_FALSE(model->isPolling());
    const auto drawing = view->draw();
    EXPECT_EQ(drawing.seal, platform::Image::systemSymbol("xmark.seal.fill"));
    EXPECT_EQ(drawing.sealColor, SealColor::red);
    EXPECT_FALSE(drawing.relaunchEnabled);
    EXPECT_EQ(drawing.firstStep,
              (tarnwick::StyledText{"Step 1", tarnwick::TextStyle::headline, true}));
    EXPECT_EQ(drawing.explanation.text,
              "Tarnwick needs accessibility permissions to properly function.");
    EXPECT_EQ(drawing.permissionButton, "Accessibility Permission");
    EXPECT_EQ(drawing.secondStep.text, "Step 2");
    EXPECT_EQ(drawing.relaunchButton, "Relaunch App");
    // Nothing polls before the button is pressed.
    EXPECT_EQ(pendingRounds(), 0u);
}

TEST_F(PermissionRequestTest, PressingTheButtonAgainAndAgainKeepsOneChainThatAsksEveryHalfSecond) {
    launch(false);
    view->requestPermission();
    EXPECT_TRUE(model->isPolling());
    EXPECT_EQ(pendingRounds(), 1u);
    // The press asks with the prompt, the first round without.
    EXPECT_EQ(trustChecks(), 3u);
    EXPECT_EQ(desktop.accessibility().lastTrustPrompt(), false);

    view->requestPermission();
    view->requestPermission();
    EXPECT_EQ(desktop.accessibility().lastTrustPrompt(), true);
    EXPECT_EQ(pendingRounds(), 1u);
    EXPECT_EQ(trustChecks(), 5u);

    desktop.loop().advance(0.49);
    EXPECT_EQ(trustChecks(), 5u);
    desktop.loop().advance(0.01);
    EXPECT_EQ(trustChecks(), 6u);
    desktop.loop().advance(2.0);
    EXPECT_EQ(trustChecks(), 10u);
    EXPECT_EQ(pendingRounds(), 1u);
    // isPolling changed once; the answers never did.
    EXPECT_EQ(changeCount, 1);
}

TEST_F(PermissionRequestTest,
       AGrantDuringTheSleepShowsAtTheNextRoundEnablesRelaunchAndEndsTheChain) {
    launch(false);
    view->requestPermission();
    desktop.loop().advance(0.2);
    desktop.accessibility().setProcessTrusted(true);
    EXPECT_EQ(view->draw().sealColor, SealColor::red);

    desktop.loop().advance(0.3);
    const auto drawing = view->draw();
    EXPECT_EQ(drawing.seal, platform::Image::systemSymbol("checkmark.seal.fill"));
    EXPECT_EQ(drawing.sealColor, SealColor::green);
    EXPECT_TRUE(drawing.relaunchEnabled);
    // The chain is over: nothing is left to wake an idle program.
    EXPECT_EQ(pendingRounds(), 0u);
    const auto checks = trustChecks();
    desktop.loop().advance(60);
    EXPECT_EQ(trustChecks(), checks);
}

TEST_F(PermissionRequestTest, ALaunchWithThePermissionShowsGreenCannotRelaunchAndNeverPolls) {
    launch(true);
    EXPECT_FALSE(model->needsRelaunch());
    EXPECT_EQ(view->draw().sealColor, SealColor::green);
    EXPECT_FALSE(view->draw().relaunchEnabled);
    view->requestPermission();
    EXPECT_EQ(pendingRounds(), 0u);
    desktop.loop().advance(10);
    EXPECT_EQ(trustChecks(), 3u);  // creation, the press, the one round
}

// A permission withdrawn later is noticed only by a press, which asks with
// the prompt and starts no second chain.
TEST_F(PermissionRequestTest, AfterTheChainEndedAPressStillAsksWithThePromptAndNeverPollsAgain) {
    launch(false);
    view->requestPermission();
    desktop.accessibility().setProcessTrusted(true);
    desktop.loop().advance(0.5);
    ASSERT_EQ(pendingRounds(), 0u);

    desktop.accessibility().setProcessTrusted(false);
    const int changesBefore = changeCount;
    view->requestPermission();
    EXPECT_EQ(desktop.accessibility().lastTrustPrompt(), true);
    EXPECT_EQ(view->draw().sealColor, SealColor::red);
    EXPECT_FALSE(view->draw().relaunchEnabled);
    EXPECT_EQ(changeCount, changesBefore + 1);
    EXPECT_EQ(pendingRounds(), 0u);

    // Granted again: seen at the next press, never by a poll.
    desktop.accessibility().setProcessTrusted(true);
    desktop.loop().advance(5);
    EXPECT_EQ(view->draw().sealColor, SealColor::red);
    view->requestPermission();
    EXPECT_TRUE(view->draw().relaunchEnabled);
}
