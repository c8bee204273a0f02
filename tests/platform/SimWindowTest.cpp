#include <gtest/gtest.h>

#include <vector>

#include "platform/sim/SimToolkit.h"
#include "platform/sim/SimWindow.h"

using namespace platform;
using platform::sim::SimToolkit;

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
