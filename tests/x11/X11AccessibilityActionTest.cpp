#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "X11DesktopFixture.h"

namespace x11test {
namespace {

namespace axError = platform::axError;

class X11AccessibilityActionTest : public X11DesktopTest {};

TEST_F(X11AccessibilityActionTest, PressingTheCloseButtonClosesTheWindow) {
    TestClient client;
    client.create("keep", "Stays");
    client.create("close", "Goes");
    const auto window = windowTitled(client.pid(), "Goes");
    ASSERT_TRUE(window);

    EXPECT_EQ(ax->performAction(elementOf(window, "AXCloseButton"), "AXPress"), axError::success);
    EXPECT_TRUE(eventually([&] { return titlesOf(client.pid()).size() == 1; }));
    EXPECT_EQ(titlesOf(client.pid()), std::vector<std::string>{"Stays"});
}

TEST_F(X11AccessibilityActionTest, WritingMinimizedIconifiesAndRestores) {
    TestClient client;
    client.create("window", "Folding");
    const auto window = windowTitled(client.pid(), "Folding");
    ASSERT_TRUE(window);
    ASSERT_FALSE(flag(window, "AXMinimized"));

    EXPECT_EQ(ax->setAttributeValue(window, "AXMinimized", true), axError::success);
    ASSERT_TRUE(eventually([&] { return flag(window, "AXMinimized"); }));
    // A minimised window is nobody's main window.
    EXPECT_FALSE(flag(window, "AXMain"));

    EXPECT_EQ(ax->setAttributeValue(window, "AXMinimized", false), axError::success);
    EXPECT_TRUE(eventually([&] { return !flag(window, "AXMinimized"); }));
    EXPECT_TRUE(eventually([&] { return flag(window, "AXMain"); }));
}

TEST_F(X11AccessibilityActionTest, MinimizeButtonIconifies) {
    TestClient client;
    client.create("window", "Button folded");
    const auto window = windowTitled(client.pid(), "Button folded");
    ASSERT_TRUE(window);
    EXPECT_EQ(ax->performAction(elementOf(window, "AXMinimizeButton"), "AXPress"),
              axError::success);
    EXPECT_TRUE(eventually([&] { return flag(window, "AXMinimized"); }));
}

TEST_F(X11AccessibilityActionTest, ZoomButtonEntersFullScreenAndWritingFalseLeavesIt) {
    TestClient client;
    client.create("window", "Growing");
    const auto window = windowTitled(client.pid(), "Growing");
    ASSERT_TRUE(window);
    ASSERT_FALSE(flag(window, "AXFullScreen"));

    EXPECT_EQ(ax->performAction(elementOf(window, "AXZoomButton"), "AXPress"), axError::success);
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

TEST_F(X11AccessibilityActionTest, RaiseMakesTheWindowActiveAndMain) {
    TestClient client;
    client.create("one", "One");
    client.create("two", "Two");
    const auto one = windowTitled(client.pid(), "One");
    const auto two = windowTitled(client.pid(), "Two");
    ASSERT_TRUE(one && two);
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
}

TEST_F(X11AccessibilityActionTest, FrontmostBringsTheApplicationForward) {
    TestClient client;
    TestClient other;
    client.create("mine", "Mine");
    other.create("theirs", "Theirs");
    const auto theirs = windowTitled(other.pid(), "Theirs");
    ASSERT_TRUE(windowTitled(client.pid(), "Mine") && theirs);
    ASSERT_EQ(ax->performAction(theirs, "AXRaise"), axError::success);
    ASSERT_TRUE(eventually([&] { return flag(theirs, "AXFocused"); }));

    const auto application = ax->createApplication(client.pid());
    EXPECT_FALSE(flag(application, "AXFrontmost"));
    EXPECT_EQ(ax->setAttributeValue(application, "AXFrontmost", true), axError::success);
    EXPECT_TRUE(eventually([&] { return flag(application, "AXFrontmost"); }));
}

TEST_F(X11AccessibilityActionTest, ARealTerminalIsListedAndClosesFromItsButton) {
    ChildProcess terminal({"xterm", "-T", "Tarnwick terminal", "-e", "sleep", "60"});
    const auto window = windowTitled(terminal.pid(), "Tarnwick terminal", 10);
    ASSERT_TRUE(window) << "xterm's window never appeared";
    EXPECT_EQ(text(window, "AXRole"), "AXWindow");
    EXPECT_TRUE(flag(elementOf(window, "AXCloseButton"), "AXEnabled"));

    EXPECT_EQ(ax->performAction(elementOf(window, "AXCloseButton"), "AXPress"), axError::success);
    EXPECT_TRUE(eventually([&] { return windowsOf(terminal.pid()).empty(); }));
    EXPECT_TRUE(terminal.waitForExit(5));
}

// Minimising is left to the test client's windows: the file manager may
// still present its window once more while it finishes starting.
TEST_F(X11AccessibilityActionTest, TheFileManagersFolderWindowIsListedAndClosed) {
    // A private runtime folder keeps another file manager instance from
    // taking the window over.
    char pattern[] = "/tmp/tarnwick-fm.XXXXXX";
    const std::string home = ::mkdtemp(pattern);
    const std::string folder = home + "/Folder of Tarnwick";
    ::mkdir(folder.c_str(), 0700);
    ::mkdir((home + "/run").c_str(), 0700);
    ChildProcess fileManager({"env", "XDG_RUNTIME_DIR=" + home + "/run", "pcmanfm", folder});
    const auto window = windowTitled(fileManager.pid(), "Folder of Tarnwick", 10);
    ASSERT_TRUE(window) << "the file manager's window never appeared";
    EXPECT_EQ(text(window, "AXRole"), "AXWindow");

    EXPECT_EQ(ax->performAction(elementOf(window, "AXCloseButton"), "AXPress"), axError::success);
    EXPECT_TRUE(eventually([&] { return windowsOf(fileManager.pid()).empty(); }));
    std::filesystem::remove_all(home);
}

}  // namespace
}  // namespace x11test
