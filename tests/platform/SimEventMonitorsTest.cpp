#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/sim/SimDesktop.h"
#include "platform/sim/SimEventMonitors.h"

using namespace platform;
using platform::sim::SimDesktop;

namespace {

constexpr EventMask keyDownAndFlags =
    eventMaskFor(EventType::keyDown) | eventMaskFor(EventType::flagsChanged);

class SimEventMonitorsTest : public ::testing::Test {
  protected:
    SimEventMonitorsTest() { desktop.populateSampleApplications(); }

    SimDesktop desktop;
    sim::SimEventMonitors& monitors = desktop.eventMonitors();
};

}  // namespace

TEST_F(SimEventMonitorsTest, LocalHandlersMayChangeOrSwallowTheEvent) {
    desktop.application().activate();
    std::vector<KeyCode> secondSaw;
    auto first = monitors.addLocalMonitor(keyDownAndFlags, [](const Event& e) {
        Event changed = e;
        changed.keyCode = keycode::s;
        return std::optional<Event>(changed);
    });
    monitors.addLocalMonitor(keyDownAndFlags, [&](const Event& e) {
        secondSaw.push_back(e.keyCode);
        if (e.keyCode == keycode::escape)
            return std::optional<Event>();
        return std::optional<Event>(e);
    });

    auto delivered = monitors.keyDown(keycode::a);
    ASSERT_TRUE(delivered);
    EXPECT_EQ(delivered->keyCode, keycode::s);

    monitors.removeMonitor(first);
    EXPECT_FALSE(monitors.keyDown(keycode::escape));
    EXPECT_EQ(secondSaw, (std::vector<KeyCode>{keycode::s, keycode::escape}));
}

TEST_F(SimEventMonitorsTest, EventsCarryThePointerTheModifiersAndTheLoopsClock) {
    Event seen;
    monitors.addGlobalMonitor(eventMaskFor(EventType::mouseMoved),
                              [&](const Event& e) { seen = e; });

    monitors.flagsChanged(modifier::control | modifier::option, keycode::option);
    desktop.loop().advance(2.5);
    monitors.mouseMoved({120, 340});
    EXPECT_EQ(monitors.mouseLocation(), (CGPoint{120, 340}));
    EXPECT_EQ(seen.locationInScreen, (CGPoint{120, 340}));
    EXPECT_EQ(seen.modifierFlags, modifier::control | modifier::option);
    EXPECT_DOUBLE_EQ(seen.timestamp, 2.5);

    monitors.flagsChanged(0, keycode::option);
    EXPECT_EQ(monitors.modifierFlags(), 0u);
}
