#include "AccessibilityFixture.h"

// The simulated applications behave as real ones do when the program acts
// on their windows.

namespace corvane::testing {
namespace {

namespace ax = platform::axError;
using N = UIElement::AXNotification;

class SimAccessibilityTest : public AccessibilityTest {
  protected:
    SimAccessibilityTest() {
        observer = std::make_shared<Observer>(
            appPid, [this](Observer&, const std::shared_ptr<UIElement>& element, const N& name) {
                heard.push_back(name.rawValue + " " + title(*element));
            });
        const auto app = application();
        for (const auto& n : {N::windowCreated, N::mainWindowChanged, N::windowMiniaturized,
                              N::uiElementDestroyed, N::applicationActivated}) {
            observer->addNotification(n, *app);
        }
    }

    static std::string title(const UIElement& element) {
        try {
            return element.attribute<std::string>("AXTitle").value_or("-");
        } catch (const AXError&) {
            return "gone";
        }
    }

    std::vector<std::string> events() {
        loop.runUntilIdle();
        return std::exchange(heard, {});
    }

    std::shared_ptr<Observer> observer;
    std::vector<std::string> heard;
};

using Events = std::vector<std::string>;

TEST_F(SimAccessibilityTest, PressingCloseRemovesTheWindowAndMovesMain) {
    UIElement(sim.button(documents, "AXCloseButton")).performAction("AXPress");
    EXPECT_EQ(events(), (Events{"AXUIElementDestroyed gone", "AXMainWindowChanged Downloads"}));
    EXPECT_FALSE(sim.exists(documents));
    EXPECT_EQ(application()->windows()->size(), 1u);
    EXPECT_TRUE(window(downloads)->isMain());
}

TEST_F(SimAccessibilityTest, MinimisingAndRaising) {
    const auto front = window(documents);
    front->setAttribute("AXMinimized", CFValue(true));
    EXPECT_EQ(events(),
              (Events{"AXWindowMiniaturized Documents", "AXMainWindowChanged Downloads"}));
    EXPECT_TRUE(front->isMinimized());

    front->performAction("AXRaise");
    EXPECT_EQ(events(), (Events{"AXMainWindowChanged Documents"}));
    EXPECT_TRUE(front->isMain());
    EXPECT_TRUE(front->isMinimized());  // raising doesn't restore

    front->setAttribute("AXMinimized", CFValue(false));
    EXPECT_FALSE(front->isMinimized());
    EXPECT_TRUE(events().empty());
}

TEST_F(SimAccessibilityTest, ZoomButtonTogglesFullScreenUnlessDisabled) {
    const auto w = window(documents);
    w->zoomButton()->performAction("AXPress");
    EXPECT_TRUE(w->isFullScreen());
    w->setAttribute("AXFullScreen", CFValue(false));
    EXPECT_FALSE(w->isFullScreen());

    SimWindowSetup setup = SimWindowSetup::titled("Locked");
    setup.closeButton.enabled = false;
    setup.zoomButton.present = false;
    const auto locked = window(sim.addWindow(appPid, setup));
    EXPECT_EQ(locked->zoomButton(), nullptr);
    locked->closeButton()->performAction("AXPress");
    EXPECT_TRUE(sim.exists(locked->element()));
}

TEST_F(SimAccessibilityTest, FrontmostFollowsTheWorkspace) {
    const auto app = application();
    EXPECT_EQ(app->attribute<bool>("AXFrontmost"), false);
    app->setAttribute("AXFrontmost", CFValue(true));
    ASSERT_NE(workspace.frontmostApplication(), nullptr);
    EXPECT_EQ(workspace.frontmostApplication()->processIdentifier(), appPid);
    EXPECT_EQ(app->attribute<bool>("AXFrontmost"), true);
    EXPECT_EQ(events(), (Events{"AXApplicationActivated Files"}));
}

TEST_F(SimAccessibilityTest, WorkspaceApplicationsHaveElementsUntilTheyEnd) {
    platform::sim::SimRunningApplication::Info info;
    info.processIdentifier = 400;
    info.localizedName = "Notes";
    workspace.launch(info);
    const auto notes = Application::forProcessID(400);
    ASSERT_NE(notes, nullptr);
    EXPECT_EQ(notes->windows()->size(), 0u);

    workspace.terminate(appPid);
    loop.runUntilIdle();
    try {
        application()->windows();
        FAIL() << "no error";
    } catch (const AXError& error) {
        EXPECT_EQ(error, AXError::invalidUIElement);
    }
}

TEST_F(SimAccessibilityTest, ScriptedChangesSendTheirNotifications) {
    const UIElement docs(documents);
    observer->addNotification(N::moved, docs);
    observer->addNotification(N::titleChanged, docs);
    sim.moveWindow(documents, {10, 20});
    sim.setTitle(documents, "Archive");
    sim.addWindow(appPid, SimWindowSetup::titled("Fresh"));
    EXPECT_EQ(events(), (Events{"AXMoved Archive", "AXTitleChanged Archive",
                                "AXWindowCreated Fresh", "AXMainWindowChanged Fresh"}));
    EXPECT_EQ(window(documents)->position(), (platform::CGPoint{10, 20}));
}

TEST_F(SimAccessibilityTest, FaultsMatchTheirElementAndRunOut) {
    sim.injectFault(SimAXCall::copyAttributeValue, SimAXFault::error(ax::cannotComplete), documents,
                    "AXTitle", 1);
    EXPECT_THROW(UIElement(documents).attribute("AXTitle"), AXError);
    EXPECT_NO_THROW(UIElement(documents).attribute("AXTitle"));
    sim.injectFault(SimAXCall::any, SimAXFault::error(ax::apiDisabled), downloads);
    EXPECT_THROW(UIElement(downloads).pid(), AXError);
    EXPECT_EQ(UIElement(documents).pid(), appPid);
}

}  // namespace
}  // namespace corvane::testing
