#include <gtest/gtest.h>

#include "platform/sim/SimToolkit.h"
#include "platform/sim/SimWindow.h"

using namespace platform;
using platform::sim::SimToolkit;

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
