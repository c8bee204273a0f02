#include <gtest/gtest.h>

#include "X11DesktopFixture.h"

namespace x11test {
namespace {

namespace axError = platform::axError;
using platform::AXValue;
using platform::CGRect;

class AccessibilityReadsOnDesktopTest : public X11DesktopTest {};

TEST_F(AccessibilityReadsOnDesktopTest, ListsEachProcessItsOwnWindowsInClientListOrder) {
    TestClient client;
    TestClient other;
    client.create("first", "Alpha");
    other.create("stranger", "Somebody else's");
    client.create("second", "Beta — ünïcode");
    client.create("third", "Gamma");

    ASSERT_TRUE(eventually([&] { return windowsOf(client.pid()).size() == 3; }));
    EXPECT_EQ(titlesOf(client.pid()),
              (std::vector<std::string>{"Alpha", "Beta — ünïcode", "Gamma"}));
    EXPECT_EQ(titlesOf(other.pid()), (std::vector<std::string>{"Somebody else's"}));

    const auto application = ax->createApplication(client.pid());
    EXPECT_EQ(text(application, "AXRole"), "AXApplication");
    for (const auto& window : windowsOf(client.pid())) {
        EXPECT_EQ(text(window, "AXRole"), "AXWindow");
        EXPECT_EQ(text(window, "AXSubrole"), "AXStandardWindow");
        EXPECT_TRUE(platform::CFEqual(elementOf(window, "AXParent"), application));
        pid_t pid = 0;
        EXPECT_EQ(ax->getPid(window, pid), axError::success);
        EXPECT_EQ(pid, client.pid());
    }
    EXPECT_TRUE(ax->isProcessTrustedWithOptions({{"AXTrustedCheckOptionPrompt", false}}))
        << "an EWMH window manager runs";

    // A window belongs to the process it claims.
    client.claimPid("third", other.pid());
    EXPECT_TRUE(eventually([&] { return windowsOf(client.pid()).size() == 2; }));
    EXPECT_TRUE(windowTitled(other.pid(), "Gamma"));
}

TEST_F(AccessibilityReadsOnDesktopTest,
       ButtonsAreChildrenAndVanishedUnknownAndEmptyGiveTheirCodes) {
    TestClient client;
    client.create("window", "Short-lived");
    const auto window = windowTitled(client.pid(), "Short-lived");
    ASSERT_TRUE(window);
    for (const char* name : {"AXCloseButton", "AXMinimizeButton", "AXZoomButton"}) {
        const auto button = elementOf(window, name);
        ASSERT_TRUE(button) << name;
        EXPECT_EQ(text(button, "AXRole"), "AXButton");
        EXPECT_TRUE(flag(button, "AXEnabled")) << name;
        EXPECT_TRUE(platform::CFEqual(elementOf(button, "AXParent"), window));
        std::optional<CFValue> actions;
        ASSERT_EQ(ax->copyActionNames(button, actions), axError::success);
        EXPECT_EQ(*actions->get<CFValue::Array>()->front().get<std::string>(), "AXPress");
    }
    const auto closeButton = elementOf(window, "AXCloseButton");
    EXPECT_FALSE(platform::CFEqual(closeButton, elementOf(window, "AXZoomButton")));

    std::optional<CFValue> result;
    EXPECT_EQ(read(window, "AXNoSuchAttribute", result), axError::attributeUnsupported);
    EXPECT_FALSE(result);
    const auto application = ax->createApplication(client.pid());
    if (!flag(application, "AXFrontmost")) {
        EXPECT_EQ(read(application, "AXFocusedWindow", result), axError::noValue);
        EXPECT_FALSE(result);
    }

    client.destroy("window");
    ASSERT_TRUE(eventually([&] { return windowsOf(client.pid()).empty(); }));
    EXPECT_EQ(read(window, "AXTitle", result), axError::invalidUIElement);
    EXPECT_EQ(read(closeButton, "AXEnabled", result), axError::invalidUIElement);
    EXPECT_EQ(ax->performAction(window, "AXRaise"), axError::invalidUIElement);
    EXPECT_EQ(ax->setAttributeValue(window, "AXMinimized", true), axError::invalidUIElement);
    EXPECT_FALSE(result);
    // The process lives on without windows: an empty list, not an error.
    EXPECT_EQ(read(application, "AXWindows", result), axError::success);
    EXPECT_TRUE(result && result->get<CFValue::Array>()->empty());

    pid_t gone = 0;
    {
        ChildProcess child({"true"});
        ASSERT_TRUE(child.waitForExit(5));
        gone = -child.pid();
    }
    EXPECT_EQ(read(ax->createApplication(gone), "AXWindows", result), axError::invalidUIElement)
        << "a process that doesn't run is no element";
}

TEST_F(AccessibilityReadsOnDesktopTest, FrameIsInBottomLeftPointsAndFollowsMoves) {
    TestClient client;
    client.create("window", "Placed");
    const auto window = windowTitled(client.pid(), "Placed");
    ASSERT_TRUE(window);
    client.move("window", 300, 200);

    const double screenHeight = 800;  // the virtual desktop's screen
    CGRect frame;
    ASSERT_TRUE(eventually([&] {
        // While the window manager is still framing the window a read may
        // fail; that is an answer to wait past, not one to dereference.
        const auto boxed = value(window, "AXFrame");
        const auto* read = boxed ? boxed->get<AXValue>() : nullptr;
        if (!read)
            return false;
        frame = std::get<CGRect>(read->value);
        return frame.origin.x == 300 && frame.maxY() == screenHeight - 200;
    })) << frame.origin.x
        << "," << frame.origin.y;
    EXPECT_GE(frame.size.width, 240);
    EXPECT_GE(frame.size.height, 160);
    auto position = value(window, "AXPosition");
    auto size = value(window, "AXSize");
    EXPECT_EQ(std::get<platform::CGPoint>(position->get<AXValue>()->value), frame.origin);
    EXPECT_EQ(std::get<platform::CGSize>(size->get<AXValue>()->value), frame.size);

    // The window is what the desktop has at its middle.
    AXUIElementRef hit;
    const auto middleX = static_cast<float>(frame.origin.x + frame.size.width / 2);
    const auto middleY = static_cast<float>(frame.origin.y + frame.size.height / 2);
    ASSERT_EQ(ax->copyElementAtPosition(ax->createSystemWide(), middleX, middleY, hit),
              axError::success);
    EXPECT_TRUE(platform::CFEqual(hit, window));
}

TEST_F(AccessibilityReadsOnDesktopTest, SeveralAttributesAtOnceAndSlicesOfLists) {
    TestClient client;
    for (const char* name : {"a", "b", "c", "d"})
        client.create(name);
    ASSERT_TRUE(eventually([&] { return windowsOf(client.pid()).size() == 4; }));
    const auto application = ax->createApplication(client.pid());

    std::int64_t count = 0;
    EXPECT_EQ(ax->getAttributeValueCount(application, "AXWindows", count), axError::success);
    EXPECT_EQ(count, 4);
    std::optional<CFValue> slice;
    ASSERT_EQ(ax->copyAttributeValues(application, "AXWindows", 1, 2, slice), axError::success);
    ASSERT_EQ(slice->get<CFValue::Array>()->size(), 2u);
    EXPECT_EQ(text(*slice->get<CFValue::Array>()->at(0).get<AXUIElementRef>(), "AXTitle"), "b");
    EXPECT_EQ(ax->copyAttributeValues(application, "AXRole", 0, 1, slice),
              axError::illegalArgument);

    const auto window = windowsOf(client.pid()).front();
    std::optional<CFValue> values;
    ASSERT_EQ(ax->copyMultipleAttributeValues(window, {"AXTitle", "AXBogus", "AXRole"}, 0, values),
              axError::success);
    const auto& list = *values->get<CFValue::Array>();
    EXPECT_EQ(*list[0].get<std::string>(), "a");
    EXPECT_EQ(std::get<AXErrorCode>(list[1].get<AXValue>()->value), axError::attributeUnsupported);
    EXPECT_EQ(*list[2].get<std::string>(), "AXWindow");
    EXPECT_EQ(ax->copyMultipleAttributeValues(window, {"AXTitle", "AXBogus"}, 1, values),
              axError::attributeUnsupported);

    bool settable = false;
    EXPECT_EQ(ax->isAttributeSettable(window, "AXMinimized", settable), axError::success);
    EXPECT_TRUE(settable);
    EXPECT_EQ(ax->isAttributeSettable(window, "AXTitle", settable), axError::success);
    EXPECT_FALSE(settable);
    EXPECT_EQ(ax->setAttributeValue(window, "AXTitle", "renamed"), axError::attributeUnsupported);
    EXPECT_EQ(ax->setAttributeValue(window, "AXMinimized", "yes"), axError::illegalArgument);
}

}  // namespace
}  // namespace x11test
