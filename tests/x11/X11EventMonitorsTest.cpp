#include <gtest/gtest.h>
#include <unistd.h>

#include <tuple>
#include <vector>

#include "platform/x11/X11EventMonitors.h"
#include "platform/x11/X11EventTap.h"
#include "x11/InputBackendTest.h"

namespace x11test {
namespace {

using platform::Event;
using platform::eventMaskFor;
using platform::EventType;
namespace modifier = platform::modifier;

constexpr platform::EventMask keyboardMask = eventMaskFor(EventType::keyDown) |
                                             eventMaskFor(EventType::keyUp) |
                                             eventMaskFor(EventType::flagsChanged);
constexpr platform::EventMask mouseMovedMask = eventMaskFor(EventType::mouseMoved);

// X keycodes of the evdev keymap.
constexpr xcb_keycode_t controlKey = 37, altKey = 64, shiftKey = 50, aKey = 38, capsKey = 66;

class X11EventMonitorsTest : public InputBackendTest {
  protected:
    void SetUp() override {
        InputBackendTest::SetUp();
        rawInput = platform::x11::X11RawInput::create(*source, layouts.get());
        ASSERT_TRUE(rawInput);
        monitors = std::make_unique<platform::x11::X11EventMonitors>(rawInput.get(),
                                                                     [this] { return ours; });
    }

    platform::Token recordGlobally(platform::EventMask mask) {
        return monitors->addGlobalMonitor(mask,
                                          [this](const Event& event) { seen.push_back(event); });
    }
    bool waitForEvents(std::size_t count) {
        return waitFor([&] { return seen.size() >= count; });
    }

    bool ours = false;
    std::unique_ptr<platform::x11::X11RawInput> rawInput;
    std::unique_ptr<platform::x11::X11EventMonitors> monitors;
    std::vector<Event> seen;
};

TEST_F(X11EventMonitorsTest, KeysCarryTheirCharactersUnderTheModifiersAndCapsLock) {
    ASSERT_TRUE(recordGlobally(keyboardMask));
    input->tap(aKey);
    input->press(shiftKey);
    input->tap(aKey);
    input->release(shiftKey);
    input->press(controlKey);
    input->tap(aKey);
    input->release(controlKey);
    input->tap(capsKey);
    input->tap(aKey);
    input->tap(capsKey);
    input->sync();
    ASSERT_TRUE(waitForEvents(14));

    EXPECT_EQ(seen[0].type, EventType::keyDown);
    EXPECT_EQ(seen[0].keyCode, platform::keycode::a);
    EXPECT_EQ(seen[0].characters, "a");
    EXPECT_EQ(seen[0].charactersIgnoringModifiers, "a");
    EXPECT_FALSE(seen[0].isARepeat);
    EXPECT_EQ(seen[1].type, EventType::keyUp);
    EXPECT_EQ(seen[1].characters, "a");

    EXPECT_EQ(seen[3].modifierFlags, modifier::shift);
    EXPECT_EQ(seen[3].characters, "A");
    EXPECT_EQ(seen[3].charactersIgnoringModifiers, "A");

    EXPECT_EQ(seen[7].modifierFlags, modifier::control);
    EXPECT_EQ(seen[7].characters, "\x01");
    EXPECT_EQ(seen[7].charactersIgnoringModifiers, "a");

    // Caps Lock is a lock: it turns on the way down only, and types capitals.
    ASSERT_EQ(seen.size(), 14u);
    EXPECT_EQ(seen[10].type, EventType::flagsChanged);
    EXPECT_EQ(seen[10].modifierFlags, modifier::capsLock);
    EXPECT_EQ(seen[11].characters, "A");
    EXPECT_EQ(seen[13].modifierFlags, 0u);
}

TEST_F(X11EventMonitorsTest, TheEventTapHearsEverythingWhoeverIsActive) {
    platform::x11::X11EventTap tap(rawInput.get());
    std::vector<Event> tapped;
    platform::Subscription subscription =
        tap.tapCreate(keyboardMask, [&](const Event& event) { tapped.push_back(event); });
    ASSERT_TRUE(subscription);
    input->tap(aKey);
    ours = true;
    input->tap(aKey);
    input->sync();
    ASSERT_TRUE(waitFor([&] { return tapped.size() >= 4; }));
    subscription.cancel();
    input->tap(aKey);
    input->sync();
    loop.runUntil([] { return false; }, 0.2);
    EXPECT_EQ(tapped.size(), 4u);
}

// The loop's clock stands still while the pointer crosses forty pixels:
// all of it is one frame, heard once, where the pointer came to.
TEST_F(X11EventMonitorsTest, APointerMovingWithinAFrameIsHeardOnceWhereItCameTo) {
    ASSERT_TRUE(recordGlobally(mouseMovedMask));
    input->movePointer(100, 100);
    input->sync();
    ASSERT_TRUE(waitForEvents(1));
    seen.clear();
    for (int x = 101; x <= 140; ++x) {
        input->movePointer(x, 100);
        input->sync();
        loop.runUntilIdle();
    }
    ASSERT_TRUE(waitFor([&] { return !seen.empty() && seen.back().locationInScreen.x == 140; }));
    EXPECT_LE(seen.size(), 2u);
    EXPECT_EQ(monitors->mouseLocation().x, 140);
}

// Unheard motion: the place asked for as the chord's keys come is the one
// its last key finds, and a later question asks the server again.
TEST_F(X11EventMonitorsTest, ThePointersPlaceIsTrueAtTheChordAndAfterIt) {
    std::vector<double> placesAtShift;
    monitors->addGlobalMonitor(keyboardMask, [&](const Event& event) {
        if (event.keyCode == platform::keycode::shift && event.modifierFlags & modifier::shift)
            placesAtShift.push_back(monitors->mouseLocation().x);
    });
    input->movePointer(300, 200);
    input->press(controlKey);
    input->press(shiftKey);
    input->release(shiftKey);
    input->release(controlKey);
    input->sync();
    ASSERT_TRUE(waitFor([&] { return !placesAtShift.empty(); }));
    EXPECT_EQ(placesAtShift.front(), 300);
    input->movePointer(500, 200);
    input->sync();
    EXPECT_EQ(monitors->mouseLocation().x, 500);
}

TEST(X11EventMonitorsWithoutInput, RefuseMonitorsQuietly) {
    platform::x11::X11EventMonitors monitors(nullptr, [] { return false; });
    EXPECT_FALSE(monitors.addGlobalMonitor(keyboardMask, [](const Event&) {}));
    EXPECT_FALSE(monitors.addLocalMonitor(keyboardMask, [](const Event& e) { return e; }));
    EXPECT_EQ(monitors.modifierFlags(), 0u);
    platform::x11::X11EventTap tap(nullptr);
    EXPECT_FALSE(tap.tapCreate(keyboardMask, [](const Event&) {}));
}

}  // namespace
}  // namespace x11test
