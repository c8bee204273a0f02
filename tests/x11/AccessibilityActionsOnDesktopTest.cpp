#include <gtest/gtest.h>

#include <string>

#include "X11DesktopFixture.h"

namespace x11test {
namespace {

namespace axError = platform::axError;

class AccessibilityActionsOnDesktopTest : public X11DesktopTest {
  protected:
    AXErrorCode press(const AXUIElementRef& window, const std::string& button) {
        return ax->performAction(elementOf(window, button), "AXPress");
    }
};

TEST_F(AccessibilityActionsOnDesktopTest, PressingTheCloseButtonClosesTheWindow) {
    TestClient client;
    client.create("keep", "Stays");
    client.create("close", "Goes");
    const auto window = windowTitled(client.pid(), "Goes");
    ASSERT_TRUE(window);

    EXPECT_EQ(press(window, "AXCloseButton"), axError::success);
    EXPECT_TRUE(eventually([&] { return titlesOf(client.pid()).size() == 1; }));
    EXPECT_EQ(titlesOf(client.pid()), std::vector<std::string>{"Stays"});
}

TEST_F(AccessibilityActionsOnDesktopTest, TheMinimizeButtonAndTheAttributeIconifyAndRestore) {
    TestClient client;
    client.create("window", "Folding");
    const auto window = windowTitled(client.pid(), "Folding");
    ASSERT_TRUE(window);
    ASSERT_FALSE(flag(window, "AXMinimized"));

    EXPECT_EQ(press(window, "AXMinimizeButton"), axError::success);
    ASSERT_TRUE(eventually([&] { return flag(window, "AXMinimized"); }));
    EXPECT_FALSE(flag(window, "AXMain")) << "a minimised window is nobody's main window";

    EXPECT_EQ(ax->setAttributeValue(window, "AXMinimized", false), axError::success);
    EXPECT_TRUE(eventually([&] { return !flag(window, "AXMinimized"); }));
    EXPECT_TRUE(eventually([&] { return flag(window, "AXMain"); }));
    EXPECT_EQ(ax->setAttributeValue(window, "AXMinimized", true), axError::success);
    EXPECT_TRUE(eventually([&] { return flag(window, "AXMinimized"); }));
}

TEST_F(AccessibilityActionsOnDesktopTest, ZoomButtonEntersFullScreenAndWritingFalseLeavesIt) {
    TestClient client;
    client.create("window", "Growing");
    const auto window = windowTitled(client.pid(), "Growing");
    ASSERT_TRUE(window);
    ASSERT_FALSE(flag(window, "AXFullScreen"));

    EXPECT_EQ(press(window, "AXZoomButton"), axError::success);
    // The state comes first, the new size with the window manager's next word.
    platform::CGSize size;
    EXPECT_TRUE(eventually([&] {
        size = std::get<platform::CGSize>(value(window, "AXSize")->get<platform::AXValue>()->value);
        return flag(window, "AXFullScreen") && size == platform::CGSize{1280, 800};
    })) << size.width
        << "x" << size.height;

    EXPECT_EQ(ax->setAttributeValue(window, "AXFullScreen", false), axError::success);
    EXPECT_TRUE(eventually([&] { return !flag(window, "AXFullScreen"); }));
}

TEST_F(AccessibilityActionsOnDesktopTest, RaiseAndFrontmostMakeTheWindowActiveAndMain) {
    TestClient client;
    TestClient other;
    client.create("one", "One");
    client.create("two", "Two");
    other.create("theirs", "Theirs");
    const auto one = windowTitled(client.pid(), "One");
    const auto two = windowTitled(client.pid(), "Two");
    const auto theirs = windowTitled(other.pid(), "Theirs");
    ASSERT_TRUE(one && two && theirs);
    const auto application = ax->createApplication(client.pid());

    EXPECT_EQ(ax->performAction(one, "AXRaise"), axError::success);
    ASSERT_TRUE(eventually([&] { return flag(one, "AXFocused"); }));
    EXPECT_TRUE(flag(one, "AXMain"));
    EXPECT_FALSE(flag(two, "AXMain"));
    EXPECT_TRUE(flag(application, "AXFrontmost"));
    EXPECT_TRUE(platform::CFEqual(elementOf(application, "AXMainWindow"), one));

    EXPECT_EQ(ax->performAction(two, "AXRaise"), axError::success);
    ASSERT_TRUE(eventually([&] { return flag(two, "AXFocused"); }));
    EXPECT_TRUE(flag(two, "AXMain"));
    EXPECT_FALSE(flag(one, "AXMain"));
    EXPECT_EQ(ax->performAction(two, "AXPress"), axError::actionUnsupported);

    ASSERT_EQ(ax->performAction(theirs, "AXRaise"), axError::success);
    ASSERT_TRUE(eventually([&] { return !flag(application, "AXFrontmost"); }));
    EXPECT_EQ(ax->setAttributeValue(application, "AXFrontmost", true), axError::success);
    EXPECT_TRUE(eventually([&] { return flag(application, "AXFrontmost"); }));
}

TEST_F(AccessibilityActionsOnDesktopTest, ARealTerminalIsListedAndClosesFromItsButton) {
    ChildProcess terminal({"xterm", "-T", "Tarnwick terminal", "-e", "sleep", "60"});
    const auto window = windowTitled(terminal.pid(), "Tarnwick terminal", 10);
    ASSERT_TRUE(window) << "xterm's window never appeared";
    EXPECT_EQ(text(window, "AXRole"), "AXWindow");
    EXPECT_TRUE(flag(elementOf(window, "AXCloseButton"), "AXEnabled"));

    EXPECT_EQ(press(window, "AXCloseButton"), axError::success);
    EXPECT_TRUE(eventually([&] { return windowsOf(terminal.pid()).empty(); }));
    EXPECT_TRUE(terminal.waitForExit(5));
}

}  // namespace
}  // namespace x11test
