#include <gtest/gtest.h>

#include "SpineTestSupport.h"
#include "app/RootCoordinator.h"
#include "settings/SettingsKeys.h"
#include "support/StandardOutput.h"

using platform::CGPoint;
using platform::CGRect;
using platform::sim::SimWindow;
using tarnwick::RootCoordinator;
namespace modifier = platform::modifier;
namespace keycode = platform::keycode;

namespace {

class RootCoordinatorTest : public ::testing::Test, protected spine::DesktopFixture {
  protected:
    RootCoordinatorTest() {
        RootCoordinator::ChildFactories factories;
        factories.settings = [this](RootCoordinator& parent) {
            ++settingsMade;
            auto child = std::make_shared<spine::WindowCoordinator>(
                parent.shared_from_this(), parent.activationController(), "Settings");
            child->setFinishesOnWindowClose(true);
            return child;
        };
        root = RootCoordinator::make(std::move(factories));
        panel()->setContentSize({300, 200});
        panel()->clearCalls();
    }

    std::shared_ptr<SimWindow> panel() {
        return std::static_pointer_cast<SimWindow>(root->mainWindowController().window());
    }

    // Control, Option and Shift pressed one after the other.
    void pressChord() {
        auto& events = desktop.eventMonitors();
        events.flagsChanged(modifier::control, keycode::control);
        events.flagsChanged(modifier::control | modifier::option, keycode::option);
        events.flagsChanged(modifier::control | modifier::option | modifier::shift, keycode::shift);
    }

    void presentAt(CGPoint pointer) {
        desktop.eventMonitors().setMouseLocation(pointer);
        pressChord();
    }

    std::shared_ptr<RootCoordinator> root;
    int settingsMade = 0;
    quillbox::CapturedOutput output;
};

}  // namespace

TEST_F(RootCoordinatorTest, ThePanelIsAFloatingNonActivatingUtilityPanel) {
    auto window = panel();
    EXPECT_EQ(window->kind(), SimWindow::Kind::panel);
    EXPECT_EQ(window->title(), "Tarnwick");
    const auto style = window->styleMask();
    EXPECT_FALSE(style & platform::windowStyle::closable);
    EXPECT_FALSE(style & platform::windowStyle::fullScreen);
    EXPECT_TRUE(style & platform::windowStyle::nonactivatingPanel);
    EXPECT_TRUE(style & platform::windowStyle::utilityWindow);
    EXPECT_TRUE(style & platform::windowStyle::resizable);
    EXPECT_TRUE(style & platform::windowStyle::miniaturizable);
    EXPECT_TRUE(window->becomesKeyOnlyIfNeeded());
    EXPECT_EQ(window->level(), platform::windowLevel::floating);
    EXPECT_FALSE(window->hidesOnDeactivate());
    EXPECT_FALSE(window->isVisible());
}

TEST_F(RootCoordinatorTest, TheModifierChordBringsThePanelToThePointerWithoutActivating) {
    auto frontmost = desktop.workspace().frontmostApplication();
    desktop.eventMonitors().setMouseLocation({600, 400});
    auto& events = desktop.eventMonitors();
    events.flagsChanged(modifier::control, keycode::control);
    events.flagsChanged(modifier::control | modifier::option, keycode::option);
    EXPECT_FALSE(panel()->isVisible());

    events.flagsChanged(modifier::control | modifier::option | modifier::shift, keycode::shift);
    EXPECT_TRUE(panel()->isVisible());
    EXPECT_EQ(panel()->frame(), (CGRect{{450, 300}, {300, 200}}));
    EXPECT_EQ(panel()->alphaValue(), 1.0);
    EXPECT_EQ(desktop.workspace().frontmostApplication(), frontmost);
    EXPECT_FALSE(panel()->isKeyWindow());
}

TEST_F(RootCoordinatorTest, ReleasingAKeyOfTheChordMatchesAgainAndPlacesThePanelAnew) {
    presentAt({600, 400});
    desktop.eventMonitors().setMouseLocation({100, 100});
    // Control goes up: the event no longer carries Control, the record adds it.
    desktop.eventMonitors().flagsChanged(modifier::option | modifier::shift, keycode::control);
    EXPECT_EQ(panel()->frame().origin, (CGPoint{-50, 0}));
    // Placement is not kept on screen.
    presentAt({5, 5});
    EXPECT_EQ(panel()->frame().origin, (CGPoint{-145, -95}));
}

TEST_F(RootCoordinatorTest, AShortcutWithAKeyMatchesOnKeyDownAndChangesWorkAtTheNextEvent) {
    auto& defaults = quillbox::DefaultsManager::shared();
    defaults.setValue(lirixkro::SRShortcut::SelfCodable{0, modifier::command, "a", "a"},
                      tarnwick::activationShortcut);
    pressChord();
    EXPECT_FALSE(panel()->isVisible());

    desktop.eventMonitors().keyDown(keycode::a, modifier::command, "a", "a");
    EXPECT_TRUE(panel()->isVisible());

    panel()->close();
    defaults.removeValue(tarnwick::activationShortcut);
    desktop.eventMonitors().keyDown(keycode::a, modifier::command, "a", "a");
    pressChord();
    EXPECT_FALSE(panel()->isVisible());
}

TEST_F(RootCoordinatorTest, APressWhileOpenReCentresAndRestoresFullOpacity) {
    presentAt({600, 400});
    desktop.eventMonitors().mouseMoved({600, 600});  // 100 points above the frame
    EXPECT_DOUBLE_EQ(panel()->alphaValue(), 0.6);
    presentAt({800, 700});
    EXPECT_EQ(panel()->frame().origin, (CGPoint{650, 600}));
    EXPECT_EQ(panel()->alphaValue(), 1.0);
}

TEST_F(RootCoordinatorTest, ThePanelFadesWithDistanceAndClosesAt250Points) {
    presentAt({600, 400});  // frame x 450...750, y 300...500
    auto& events = desktop.eventMonitors();
    events.mouseMoved({999, 400});  // 249 points right of the frame
    EXPECT_NEAR(panel()->alphaValue(), 0.004, 1e-12);
    EXPECT_TRUE(panel()->isVisible());

    events.mouseMoved({700, 450});  // back inside: the alpha stays
    EXPECT_NEAR(panel()->alphaValue(), 0.004, 1e-12);

    events.mouseMoved({750 + 150, 500 + 200});  // the nearest point is the corner
    EXPECT_EQ(panel()->alphaValue(), 0.0);
    EXPECT_FALSE(panel()->isVisible());
    EXPECT_EQ(events.globalMonitorCount(), 2u);  // the two keyboard monitors remain
    EXPECT_EQ(events.localMonitorCount(), 2u);
}

TEST_F(RootCoordinatorTest, EscapeClosesUnlessAllFiveModifiersAreHeldAndLeavesTheMouseMonitors) {
    presentAt({600, 400});
    presentAt({600, 400});
    auto& events = desktop.eventMonitors();
    EXPECT_EQ(events.globalMonitorCount(), 3u);  // the mouse monitor is installed once
    const auto allFive = modifier::shift | modifier::control | modifier::option |
                         modifier::command | modifier::function;
    events.keyUp(keycode::escape, allFive);
    EXPECT_TRUE(panel()->isVisible());
    events.keyUp(keycode::escape, modifier::shift);
    EXPECT_FALSE(panel()->isVisible());
    // Escape leaves the mouse monitors on; the next distance exit removes them.
    EXPECT_EQ(events.globalMonitorCount(), 3u);
    events.mouseMoved({2000, 2000});
    EXPECT_EQ(events.globalMonitorCount(), 2u);
}

TEST_F(RootCoordinatorTest, AnotherApplicationInFrontClosesThePanelAndOurOwnDoesNot) {
    presentAt({600, 400});
    desktop.workspace().setFrontmostApplication(desktop.ownApplication());
    EXPECT_TRUE(panel()->isVisible());
    desktop.workspace().setFrontmostApplication(desktop.workspace().runningApplications()[2]);
    EXPECT_FALSE(panel()->isVisible());
}

TEST_F(RootCoordinatorTest, SettingsOpenedTwiceGivesOneCoordinatorThatEndsAfterItsWindowCloses) {
    root->showSettings();
    root->showSettings();
    EXPECT_EQ(settingsMade, 1);
    ASSERT_TRUE(root->settingsCoordinator());
    EXPECT_EQ(root->childCoordinators().size(), 1u);

    auto window = root->settingsCoordinator()->rootController().window();
    window->close();
    // Before the close's turn has run, the closing window is raised again.
    root->showSettings();
    EXPECT_EQ(settingsMade, 1);
    desktop.loop().runUntilIdle();
    EXPECT_FALSE(root->settingsCoordinator());
    EXPECT_TRUE(root->childCoordinators().empty());

    root->showSettings();
    EXPECT_EQ(settingsMade, 2);
}

TEST_F(RootCoordinatorTest,
       StartShowsThePanelOnceTheInstructionsWereSeenBuildsTheMenuAndQuitTerminates) {
    quillbox::DefaultsManager::shared().setValue(false, tarnwick::needsShowingInstructions);
    desktop.eventMonitors().setMouseLocation({300, 300});
    root->start();
    EXPECT_TRUE(panel()->isVisible());
    EXPECT_EQ(desktop.statusBar().items().at(0)->menu()->itemArray().size(), 5u);

    // Commands without their feature do nothing; Quit terminates.
    root->showAbout();
    EXPECT_FALSE(root->aboutCoordinator());
    root->quit();
    EXPECT_EQ(desktop.application().terminateCount(), 1u);
}

TEST_F(RootCoordinatorTest, EveryHandlerIsHeldWeakly) {
    std::weak_ptr<RootCoordinator> weak = root;
    auto window = root->mainWindowController().window();
    root.reset();
    EXPECT_TRUE(weak.expired());
    pressChord();
    desktop.eventMonitors().keyUp(keycode::escape);
    EXPECT_FALSE(window->isVisible());
}
