#include <gtest/gtest.h>

#include <vector>

#include "platform/WindowController.h"
#include "platform/sim/SimToolkit.h"
#include "platform/sim/SimWindow.h"

using namespace platform;
using platform::sim::SimToolkit;
using platform::sim::SimWindow;

namespace {

struct RecordingDelegate : WindowDelegate {
    void windowWillClose(Window* window) override {
        closed.push_back(window);
        wasVisibleWhenTold = window && window->isVisible();
    }
    std::vector<Window*> closed;
    bool wasVisibleWhenTold = false;
};

}  // namespace

TEST(SimWindow, CloseTellsTheDelegateOnceBeforeHiding) {
    SimToolkit toolkit;
    auto window = toolkit.makeWindow(windowStyle::titled | windowStyle::closable);
    RecordingDelegate delegate;
    window->setDelegate(&delegate);

    window->close();  // never shown: nothing to close
    EXPECT_TRUE(delegate.closed.empty());

    window->makeKeyAndOrderFront();
    window->close();
    window->close();
    ASSERT_EQ(delegate.closed.size(), 1u);
    EXPECT_EQ(delegate.closed.front(), window.get());
    EXPECT_TRUE(delegate.wasVisibleWhenTold);
    EXPECT_FALSE(window->isVisible());

    window->orderFront();  // a closed window can be shown again and closed again
    window->close();
    EXPECT_EQ(delegate.closed.size(), 2u);
}

TEST(SimWindow, PanelsAndWindowsStartAsThePlatformMakesThem) {
    SimToolkit toolkit;
    auto panel = toolkit.makePanel();
    auto window = toolkit.makeWindow(4099);

    EXPECT_EQ(panel->styleMask(), windowStyle::defaultMask);
    EXPECT_EQ(panel->level(), windowLevel::normal);
    EXPECT_TRUE(panel->hidesOnDeactivate());
    EXPECT_FALSE(panel->becomesKeyOnlyIfNeeded());
    EXPECT_EQ(window->styleMask(), 4099u);
    EXPECT_FALSE(window->hidesOnDeactivate());
    EXPECT_DOUBLE_EQ(window->alphaValue(), 1.0);
    EXPECT_FALSE(window->isVisible());
}

TEST(SimWindow, OneWindowIsKeyAtATimeAndOrderingFrontDoesNotTakeKey) {
    SimToolkit toolkit;
    auto first = toolkit.makeWindow(windowStyle::titled);
    auto second = toolkit.makeWindow(windowStyle::titled);
    auto panel = toolkit.makePanel();

    first->makeKeyAndOrderFront();
    second->makeKeyAndOrderFront();
    panel->orderFront();
    EXPECT_EQ(toolkit.keyWindow().get(), second.get());
    EXPECT_EQ(toolkit.visibleWindows().size(), 3u);

    second->close();
    EXPECT_EQ(toolkit.keyWindow(), nullptr);
    second.reset();
    EXPECT_EQ(toolkit.windows().size(), 2u);  // the toolkit doesn't keep windows alive
}

TEST(SimWindow, TheCallLogKeepsTheOrderOfPlacementFadeAndShow) {
    SimToolkit toolkit;
    auto window = std::static_pointer_cast<SimWindow>(toolkit.makePanel());
    window->setContentSize({200, 100});
    window->setBecomesKeyOnlyIfNeeded(true);

    window->setFrameOrigin({50.5, 20});
    window->setAlphaValue(1.0);
    WindowController(window).showWindow();
    window->close();

    EXPECT_EQ(window->frame(), (CGRect{{50.5, 20}, {200, 100}}));
    EXPECT_EQ(window->calls(),
              (std::vector<std::string>{"setFrameOrigin 50.5 20", "setAlphaValue 1", "orderFront",
                                        "close"}));
    EXPECT_FALSE(window->isKeyWindow());
}
