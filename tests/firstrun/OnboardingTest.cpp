// The three kinds of launch, on the simulated desktop with the whole root
// coordinator: the permission page, the instructions once, or the panel at
// the pointer.
#include <gtest/gtest.h>

#include "app/RootCoordinator.h"
#include "app/SpineTestSupport.h"
#include "settings/SettingsKeys.h"
#include "support/StandardOutput.h"

using platform::sim::SimWindow;
using tarnwick::OnboardingCoordinator;
using tarnwick::RootCoordinator;

namespace {

class OnboardingTest : public ::testing::Test, protected spine::DesktopFixture {
  protected:
    // A launch: the permission as the platform answers it, the stored
    // instructions flag as it stands.
    void launch(bool trusted) {
        desktop.accessibility().setProcessTrusted(trusted);
        desktop.eventMonitors().setMouseLocation({400, 300});
        root = RootCoordinator::make();
        panel()->setContentSize({300, 200});
        root->start();
    }

    std::shared_ptr<SimWindow> panel() {
        return std::static_pointer_cast<SimWindow>(root->mainWindowController().window());
    }
    OnboardingCoordinator* onboarding() {
        if (root->childCoordinators().empty())
            return nullptr;
        return dynamic_cast<OnboardingCoordinator*>(root->childCoordinators().front().get());
    }
    std::shared_ptr<SimWindow> onboardingWindow() {
        return std::static_pointer_cast<SimWindow>(onboarding()->rootController().window());
    }
    bool instructionsPending() {
        return quillbox::DefaultsManager::shared().getValue(tarnwick::needsShowingInstructions);
    }
    bool statusMenuBuilt() {
        const auto& items = desktop.statusBar().items();
        return !items.empty() && items.at(0)->menu() != nullptr;
    }

    std::shared_ptr<RootCoordinator> root;
    quillbox::CapturedOutput output;
};

}  // namespace

TEST_F(OnboardingTest, WithoutThePermissionTheWindowShowsThePermissionPageAndKeepsTheInstructions) {
    launch(false);
    ASSERT_NE(onboarding(), nullptr);
    ASSERT_NE(onboarding()->permissionsView(), nullptr);
    EXPECT_EQ(onboarding()->instructionsView(), nullptr);
    const auto window = onboardingWindow();
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(window->isKeyWindow());
    EXPECT_EQ(window->title(), "Tarnwick");
    EXPECT_EQ(window->styleMask(), 4101u);
    EXPECT_TRUE(window->titlebarAppearsTransparent());
    EXPECT_FALSE(panel()->isVisible());
    EXPECT_TRUE(statusMenuBuilt());
    EXPECT_TRUE(instructionsPending());

    const auto page = onboarding()->permissionsView()->draw();
    EXPECT_EQ(page.icon, platform::Image::resource("AppIcon"));
    EXPECT_EQ(page.welcome,
              (tarnwick::StyledText{"Welcome to Tarnwick!", tarnwick::TextStyle::largeTitle}));
    EXPECT_EQ(page.tagLine, (tarnwick::StyledText{"Finder's windows at your mousetip",
                                                  tarnwick::TextStyle::caption}));
    EXPECT_EQ(page.gettingStarted.text, "Let's get started...");
}

// The page never changes by itself: the grant only enables the relaunch,
// and quitting from the status item leaves the instructions for later.
TEST_F(OnboardingTest, AGrantWhileThePermissionPageIsOpenOnlyEnablesTheRelaunch) {
    launch(false);
    auto& request = onboarding()->permissionsView()->permissionRequest();
    request.requestPermission();
    desktop.accessibility().setProcessTrusted(true);
    desktop.loop().advance(0.5);
    EXPECT_TRUE(request.draw().relaunchEnabled);
    EXPECT_EQ(onboarding()->instructionsView(), nullptr);
    // The panel's copy shares the model.
    EXPECT_TRUE(root->listWindowView().permissionView()->draw().relaunchEnabled);

    root->quit();
    EXPECT_TRUE(instructionsPending());
}

TEST_F(OnboardingTest, WithThePermissionTheInstructionsTellTheChordOnceAndOkEndsTheWindow) {
    launch(true);
    ASSERT_NE(onboarding(), nullptr);
    ASSERT_NE(onboarding()->instructionsView(), nullptr);
    EXPECT_FALSE(instructionsPending());
    EXPECT_FALSE(panel()->isVisible());
    const auto page = onboarding()->instructionsView()->draw();
    EXPECT_EQ(page.instructions.text,
              "To activate Tarnwick, you simply need to\ninvoke the following keyboard "
              "shortcut:\n⌃⌥⇧");
    EXPECT_EQ(page.settingsNote.text, "You can change the shortcut in the Settings menu");
    EXPECT_EQ(page.okButton, "OK");

    const std::shared_ptr<tarnwick::CoordinatorProtocol> child = root->childCoordinators().front();
    const auto window = onboardingWindow();
    onboarding()->instructionsView()->ok();
    EXPECT_TRUE(window->isVisible());  // the end comes one turn later
    desktop.loop().runOneTurn();
    EXPECT_FALSE(window->isVisible());
    EXPECT_TRUE(root->childCoordinators().empty());
    EXPECT_EQ(desktop.application().activationPolicy(), platform::ActivationPolicy::accessory);

    // The window's own close notification finishes it again, to no effect.
    const auto policies = desktop.application().policyHistory();
    output.clear();
    desktop.loop().runUntilIdle();
    EXPECT_EQ(desktop.application().policyHistory(), policies);
    EXPECT_TRUE(root->childCoordinators().empty());
    for (const auto& line : output.lines())
        EXPECT_EQ(line.find("[Activation] setting policy"), std::string::npos) << line;
    // Ending onboarding shows no panel.
    EXPECT_FALSE(panel()->isVisible());

    // The next launch goes straight to the panel at the pointer.
    root.reset();
    launch(true);
    EXPECT_EQ(onboarding(), nullptr);
    EXPECT_TRUE(panel()->isVisible());
    EXPECT_EQ(panel()->frame().origin, (platform::CGPoint{250, 200}));
    EXPECT_TRUE(statusMenuBuilt());
}

TEST_F(OnboardingTest, AMissingChordReadsAsQuestionMarks) {
    quillbox::DefaultsManager::shared().removeValue(tarnwick::activationShortcut);
    launch(true);
    ASSERT_NE(onboarding(), nullptr);
    EXPECT_EQ(onboarding()->instructionsView()->keyboardShortcut(), "??");
}

TEST_F(OnboardingTest, ClosingTheInstructionsWindowEndsOnboardingLikeOk) {
    launch(true);
    onboardingWindow()->performClose();
    desktop.loop().runUntilIdle();
    EXPECT_TRUE(root->childCoordinators().empty());
    EXPECT_FALSE(instructionsPending());
}
