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

    void makeOurApplicationActive() { desktop.application().activate(); }

    SimDesktop desktop;
    sim::SimEventMonitors& monitors = desktop.eventMonitors();
};

}  // namespace

TEST_F(SimEventMonitorsTest, MonitorsSeeOnlyTheEventTypesOfTheirMask) {
    std::vector<EventType> seen;
    monitors.addGlobalMonitor(keyDownAndFlags, [&](const Event& e) { seen.push_back(e.type); });

    monitors.keyDown(keycode::a);
    monitors.keyUp(keycode::a);
    monitors.flagsChanged(modifier::shift, keycode::shift);
    monitors.mouseMoved({10, 10});

    EXPECT_EQ(seen, (std::vector<EventType>{EventType::keyDown, EventType::flagsChanged}));
}

TEST_F(SimEventMonitorsTest, GlobalMonitorsHearOtherApplicationsAndLocalOnesOurOwn) {
    int global = 0;
    int local = 0;
    monitors.addGlobalMonitor(keyDownAndFlags, [&](const Event&) { ++global; });
    monitors.addLocalMonitor(keyDownAndFlags, [&](const Event& e) {
        ++local;
        return std::optional<Event>(e);
    });

    monitors.keyDown(keycode::a);  // the file manager is frontmost
    EXPECT_EQ(global, 1);
    EXPECT_EQ(local, 0);

    makeOurApplicationActive();
    monitors.keyDown(keycode::a);
    EXPECT_EQ(global, 1);
    EXPECT_EQ(local, 1);

    desktop.workspace().setFrontmostApplication(desktop.workspace().runningApplications().back());
    monitors.keyDown(keycode::a);
    EXPECT_EQ(global, 2);
    EXPECT_EQ(local, 1);
}

TEST_F(SimEventMonitorsTest, LocalHandlersMayChangeOrSwallowTheEvent) {
    makeOurApplicationActive();
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

TEST_F(SimEventMonitorsTest, PointerAndModifiersFollowTheInjectedEvents) {
    CGPoint seenAt;
    ModifierFlags flagsOnMouseEvent = 0;
    monitors.addGlobalMonitor(eventMaskFor(EventType::mouseMoved), [&](const Event& e) {
        seenAt = e.locationInScreen;
        flagsOnMouseEvent = e.modifierFlags;
    });

    monitors.flagsChanged(modifier::control | modifier::option, keycode::option);
    EXPECT_EQ(monitors.modifierFlags(), modifier::control | modifier::option);
    monitors.mouseMoved({120, 340});
    EXPECT_EQ(monitors.mouseLocation(), (CGPoint{120, 340}));
    EXPECT_EQ(seenAt, (CGPoint{120, 340}));
    EXPECT_EQ(flagsOnMouseEvent, modifier::control | modifier::option);

    monitors.flagsChanged(0, keycode::option);
    EXPECT_EQ(monitors.modifierFlags(), 0u);
}

TEST_F(SimEventMonitorsTest, HandlersMayRemoveMonitorsWhileAnEventIsDelivered) {
    std::vector<std::string> calls;
    Token second;
    auto first = monitors.addGlobalMonitor(keyDownAndFlags, [&](const Event&) {
        calls.push_back("first");
        monitors.removeMonitor(second);
    });
    second = monitors.addGlobalMonitor(keyDownAndFlags,
                                       [&](const Event&) { calls.push_back("second"); });

    monitors.keyDown(keycode::a);
    EXPECT_EQ(calls, (std::vector<std::string>{"first"}));
    monitors.removeMonitor(first);
    monitors.removeMonitor(first);  // a second removal is harmless
    monitors.removeMonitor(Token{});
    EXPECT_EQ(monitors.globalMonitorCount(), 0u);
}

TEST_F(SimEventMonitorsTest, ARefusingPlatformGivesTheEmptyToken) {
    monitors.setRefusesMonitors(true);
    EXPECT_FALSE(monitors.addGlobalMonitor(keyDownAndFlags, [](const Event&) {}));
    EXPECT_FALSE(monitors.addLocalMonitor(keyDownAndFlags, [](const Event& e) { return e; }));
    EXPECT_EQ(monitors.globalMonitorCount() + monitors.localMonitorCount(), 0u);

    monitors.setRefusesMonitors(false);
    EXPECT_TRUE(monitors.addGlobalMonitor(keyDownAndFlags, [](const Event&) {}));
}

TEST_F(SimEventMonitorsTest, EventsCarryTheLoopsClock) {
    double stamp = -1;
    monitors.addGlobalMonitor(keyDownAndFlags, [&](const Event& e) { stamp = e.timestamp; });
    desktop.loop().advance(2.5);
    monitors.keyDown(keycode::a);
    EXPECT_DOUBLE_EQ(stamp, 2.5);
}
