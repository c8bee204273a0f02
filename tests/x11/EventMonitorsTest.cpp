// What every backend's event monitors promise, run against the simulated
// desktop and against X11 on a private X server: who hears an event, the
// flags the modifier keys make, where the pointer is, and monitors that
// come and go while an event is delivered.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/sim/SimEventMonitors.h"
#include "platform/sim/SimMainLoop.h"
#include "platform/x11/KeyCodeTable.h"
#include "platform/x11/X11EventMonitors.h"
#include "x11/InputBackendTest.h"

namespace {

using namespace platform;

constexpr EventMask keyDownAndFlags =
    eventMaskFor(EventType::keyDown) | eventMaskFor(EventType::flagsChanged);
constexpr EventMask keyboardMask = keyDownAndFlags | eventMaskFor(EventType::keyUp);
constexpr EventMask mouseMovedMask = eventMaskFor(EventType::mouseMoved);

ModifierFlags flagOf(KeyCode key) {
    switch (key) {
        case keycode::shift:
            return modifier::shift;
        case keycode::control:
            return modifier::control;
        case keycode::option:
            return modifier::option;
        case keycode::command:
            return modifier::command;
        default:
            return 0;
    }
}

// The simulated desktop as a person's keyboard and pointer drive it: the
// modifier keys held make the flags, as the real keyboard's do.
class SimInput {
  public:
    EventMonitors& monitors() { return monitors_; }
    void setOurApplicationActive(bool active) { ours_ = active; }
    void press(KeyCode key) {
        if (const auto flag = flagOf(key)) {
            held_ |= flag;
            monitors_.flagsChanged(held_, key);
        } else {
            monitors_.keyDown(key, held_);
        }
    }
    void release(KeyCode key) {
        if (const auto flag = flagOf(key)) {
            held_ &= ~flag;
            monitors_.flagsChanged(held_, key);
        } else {
            monitors_.keyUp(key, held_);
        }
    }
    void movePointer(CGPoint bottomLeft) { monitors_.mouseMoved(bottomLeft); }
    bool ready() const { return true; }
    bool waitFor(const std::function<bool()>& condition) { return condition(); }

  private:
    sim::SimMainLoop loop_;
    bool ours_ = false;
    ModifierFlags held_ = 0;
    sim::SimEventMonitors monitors_{loop_, [this] { return ours_; }};
};

// X11 on a private X server, its keys pressed through the test extension.
class X11Input : public x11test::InputBackend {
  public:
    X11Input() {
        if (problem().empty())
            rawInput_ = x11::X11RawInput::create(*source, layouts.get());
        monitors_ =
            std::make_unique<x11::X11EventMonitors>(rawInput_.get(), [this] { return ours_; });
    }

    bool ready() const { return rawInput_ != nullptr; }
    EventMonitors& monitors() { return *monitors_; }
    void setOurApplicationActive(bool active) { ours_ = active; }
    void press(KeyCode key) {
        input->press(*x11::KeyCodeTable::xKeyCodeFor(key));
        input->sync();
    }
    void release(KeyCode key) {
        input->release(*x11::KeyCodeTable::xKeyCodeFor(key));
        input->sync();
    }
    // The test server's screen is 800 pixels high.
    void movePointer(CGPoint bottomLeft) {
        input->movePointer(static_cast<int>(bottomLeft.x), 800 - static_cast<int>(bottomLeft.y));
        input->sync();
    }

  private:
    bool ours_ = false;
    std::unique_ptr<x11::X11RawInput> rawInput_;
    std::unique_ptr<x11::X11EventMonitors> monitors_;
};

template <typename Input>
class EventMonitorsTest : public ::testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(input.ready()); }

    Token record(bool global, EventMask mask, const std::string& who) {
        if (global) {
            return input.monitors().addGlobalMonitor(mask, [this, who](const Event& event) {
                heard.push_back({who, event});
            });
        }
        return input.monitors().addLocalMonitor(mask, [this, who](const Event& event) {
            heard.push_back({who, event});
            return std::optional<Event>(event);
        });
    }
    bool waitForEvents(std::size_t count) {
        return input.waitFor([&] { return heard.size() >= count; });
    }
    std::vector<std::string> listeners() const {
        std::vector<std::string> names;
        for (const auto& [who, event] : heard)
            names.push_back(who);
        return names;
    }

    Input input;
    std::vector<std::pair<std::string, Event>> heard;
};

using Backends = ::testing::Types<SimInput, X11Input>;
class BackendNames {
  public:
    template <typename T>
    static std::string GetName(int) {
        return std::is_same_v<T, SimInput> ? "Simulated" : "X11";
    }
};
TYPED_TEST_SUITE(EventMonitorsTest, Backends, BackendNames);

}  // namespace

TYPED_TEST(EventMonitorsTest, TheMaskAndTheActiveApplicationDecideWhoHears) {
    this->record(true, keyDownAndFlags, "global");
    this->record(false, keyDownAndFlags, "local");

    this->input.press(keycode::a);  // another application is active
    this->input.release(keycode::a);
    this->input.movePointer({10, 10});
    this->input.press(keycode::shift);
    ASSERT_TRUE(this->waitForEvents(2));
    this->input.setOurApplicationActive(true);
    this->input.release(keycode::shift);
    ASSERT_TRUE(this->waitForEvents(3));

    EXPECT_EQ(this->listeners(), (std::vector<std::string>{"global", "global", "local"}));
    EXPECT_EQ(this->heard[0].second.type, EventType::keyDown);
    EXPECT_EQ(this->heard[0].second.keyCode, keycode::a);
    EXPECT_EQ(this->heard[1].second.type, EventType::flagsChanged);
    EXPECT_EQ(this->heard[2].second.type, EventType::flagsChanged);
}

TYPED_TEST(EventMonitorsTest, ModifierKeysMakeFlagsChangedEventsWithTheFlagsHeld) {
    this->record(true, keyboardMask, "global");
    for (const KeyCode key : {keycode::control, keycode::option, keycode::shift})
        this->input.press(key);
    ASSERT_TRUE(this->waitForEvents(3));
    EXPECT_EQ(this->input.monitors().modifierFlags(),
              modifier::control | modifier::option | modifier::shift);
    for (const KeyCode key : {keycode::shift, keycode::option, keycode::control})
        this->input.release(key);
    ASSERT_TRUE(this->waitForEvents(6));

    std::vector<std::pair<KeyCode, ModifierFlags>> changes;
    for (const auto& [who, event] : this->heard) {
        EXPECT_EQ(event.type, EventType::flagsChanged);
        changes.emplace_back(event.keyCode, event.modifierFlags);
    }
    const ModifierFlags all = modifier::control | modifier::option | modifier::shift;
    EXPECT_EQ(changes, (std::vector<std::pair<KeyCode, ModifierFlags>>{
                           {keycode::control, modifier::control},
                           {keycode::option, modifier::control | modifier::option},
                           {keycode::shift, all},
                           {keycode::shift, modifier::control | modifier::option},
                           {keycode::option, modifier::control},
                           {keycode::control, 0}}));
    EXPECT_EQ(this->input.monitors().modifierFlags(), 0u);
}

TYPED_TEST(EventMonitorsTest, MouseMovesComeInBottomLeftPointsToMouseMonitorsOnly) {
    this->record(true, keyboardMask, "keyboard");
    this->record(true, mouseMovedMask, "mouse");
    for (const CGPoint place : {CGPoint{100, 600}, CGPoint{1279, 800}}) {
        this->input.movePointer(place);
        ASSERT_TRUE(this->input.waitFor([&] {
            return !this->heard.empty() && this->heard.back().second.locationInScreen == place;
        }));
        EXPECT_EQ(this->heard.back().second.type, EventType::mouseMoved);
        EXPECT_EQ(this->input.monitors().mouseLocation(), place);
    }
    for (const auto& who : this->listeners())
        EXPECT_EQ(who, "mouse");
}

TYPED_TEST(EventMonitorsTest, MonitorsRemovedWhileAnEventIsDeliveredHearNoMoreOfIt) {
    auto& monitors = this->input.monitors();
    int firstCalls = 0, removedCalls = 0, addedCalls = 0;
    Token removed;
    Token first;
    first = monitors.addGlobalMonitor(keyDownAndFlags, [&](const Event&) {
        if (++firstCalls > 1)
            return;
        monitors.removeMonitor(removed);
        monitors.removeMonitor(first);  // itself
        monitors.addGlobalMonitor(keyDownAndFlags, [&](const Event&) { ++addedCalls; });
    });
    removed = monitors.addGlobalMonitor(keyDownAndFlags, [&](const Event&) { ++removedCalls; });
    this->record(true, keyDownAndFlags, "recorder");

    this->input.press(keycode::a);
    this->input.release(keycode::a);
    this->input.press(keycode::s);
    ASSERT_TRUE(this->waitForEvents(2));
    EXPECT_EQ(firstCalls, 1);
    EXPECT_EQ(removedCalls, 0);
    EXPECT_EQ(addedCalls, 1);       // the second key only
    monitors.removeMonitor(first);  // a second removal is harmless
}
