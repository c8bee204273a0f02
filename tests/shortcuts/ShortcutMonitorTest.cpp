#include <gtest/gtest.h>

#include "shortcuts/SRExceptions.h"
#include "shortcuts/SRKeyEventType.h"
#include "shortcuts/SRShortcut.h"
#include "shortcuts/SRShortcutMonitor.h"
#include "shortcuts/ShortcutTestSupport.h"

namespace lirixkro {
namespace {

using platform::EventType;

using testing::keyJ;
using testing::keyK;

// A monitor that records its hooks.
class HookedMonitor final : public SRShortcutMonitor {
  public:
    std::vector<std::string> hooks;

  protected:
    void willAddShortcut(const SRShortcutRef& s) override {
        hooks.push_back("willAdd " + s->description());
    }
    void didAddShortcut(const SRShortcutRef& s) override {
        hooks.push_back("didAdd " + s->description());
    }
    void willRemoveShortcut(const SRShortcutRef& s) override {
        hooks.push_back("willRemove " + s->description());
    }
    void didRemoveShortcut(const SRShortcutRef& s) override {
        hooks.push_back("didRemove " + s->description());
    }
};

class ShortcutMonitor : public testing::ShortcutTest {
  protected:
    SRShortcutActionRef recording(const SRShortcutRef& shortcut, const std::string& name,
                                  bool answer = true) {
        return SRShortcutAction::shortcutActionWithShortcut(shortcut, [this, name, answer](auto&) {
            performed.push_back(name);
            return answer;
        });
    }
    bool perform(const SRShortcutRef& shortcut, EventType kind = EventType::keyDown) {
        bool any = false;
        const auto actions = monitor.enabledActionsForShortcut(*shortcut, kind);
        for (auto it = actions.rbegin(); it != actions.rend() && !any; ++it)
            any = (*it)->performActionOnTarget();
        return any;
    }

    SRShortcutRef commandK = SRShortcut::shortcutWithCode(keyK, SRCommandFlag);
    SRShortcutRef commandJ = SRShortcut::shortcutWithCode(keyJ, SRCommandFlag);
    std::vector<std::string> performed;
    HookedMonitor monitor;
};

TEST_F(ShortcutMonitor, TheLaterActionOnAShortcutRunsFirstAndTheEarlierOnlyAfterAFalse) {
    auto earlier = recording(commandK, "earlier");
    auto later = recording(commandK, "later", false);
    monitor.addAction(earlier, EventType::keyDown);
    monitor.addAction(later, EventType::keyDown);
    EXPECT_TRUE(perform(commandK));
    EXPECT_EQ(performed, (std::vector<std::string>{"later", "earlier"}));

    performed.clear();
    later->setActionHandler([this](auto&) {
        performed.push_back("later");
        return true;
    });
    EXPECT_TRUE(perform(commandK));
    EXPECT_EQ(performed, std::vector<std::string>{"later"});

    // A repeated add moves the action to the end without counting it twice.
    monitor.addAction(earlier, EventType::keyDown);
    EXPECT_EQ(monitor.enabledActionsForShortcut(*commandK, EventType::keyDown).back(), earlier);
    EXPECT_EQ(monitor.actions().size(), 2u);
    monitor.removeAction(earlier, EventType::keyDown);
    EXPECT_EQ(monitor.actions().size(), 1u);
}

TEST_F(ShortcutMonitor, AShortcutComesIntoUseWithItsFirstActionAndLeavesWithItsLast) {
    auto first = recording(commandK, "first");
    auto second = recording(commandK, "second");
    monitor.addAction(first, EventType::keyDown);
    monitor.addAction(second, EventType::keyUp);
    EXPECT_EQ(monitor.hooks, (std::vector<std::string>{"willAdd ⌘K", "didAdd ⌘K"}));
    ASSERT_EQ(monitor.shortcuts().size(), 1u);

    first->setEnabled(false);
    EXPECT_EQ(monitor.hooks.size(), 2u) << "the other action still holds it";
    second->setShortcut(commandJ);
    EXPECT_EQ(monitor.hooks, (std::vector<std::string>{"willAdd ⌘K", "didAdd ⌘K", "willRemove ⌘K",
                                                       "didRemove ⌘K", "willAdd ⌘J", "didAdd ⌘J"}))
        << "a changed shortcut moves the action as a removal and an addition";
    EXPECT_TRUE(monitor.enabledActionsForShortcut(*commandK, EventType::keyUp).empty());
    EXPECT_EQ(monitor.enabledActionsForShortcut(*commandJ, EventType::keyUp).size(), 1u);

    first->setEnabled(true);
    monitor.hooks.clear();
    monitor.removeAllActions();
    ASSERT_EQ(monitor.hooks.size(), 4u);
    EXPECT_EQ(monitor.hooks[0].rfind("willRemove", 0), 0u) << "all removals announced first";
    EXPECT_EQ(monitor.hooks[1].rfind("willRemove", 0), 0u);
    EXPECT_EQ(monitor.hooks[3].rfind("didRemove", 0), 0u);
    EXPECT_TRUE(monitor.actions().empty());
    monitor.hooks.clear();
    first->setEnabled(false);
    EXPECT_TRUE(monitor.hooks.empty()) << "a removed action is no longer observed";
}

TEST_F(ShortcutMonitor, AnActionForBothKeyEventsCountsTwiceAndNoMore) {
    auto action = recording(commandK, "both");
    monitor.addAction(action, EventType::keyDown);
    monitor.addAction(action, EventType::keyUp);
    EXPECT_EQ(monitor.actions().size(), 2u);
    EXPECT_EQ(monitor.actionsForKeyEvent(EventType::keyUp).size(), 1u);
    try {
        monitor.addAction(action, EventType::keyDown);
        FAIL();
    } catch (const SRInternalInconsistencyException& error) {
        EXPECT_STREQ(error.what(), "Action is added too many times");
    }
    try {
        monitor.addAction(action, EventType::flagsChanged);
        FAIL();
    } catch (const SRInvalidArgumentException& error) {
        EXPECT_STREQ(error.what(), "Unexpected keyboard event type 12");
    }
    monitor.removeAction(action);
    EXPECT_TRUE(monitor.actions().empty());
    EXPECT_TRUE(monitor.shortcuts().empty());
}

TEST_F(ShortcutMonitor, AnActionWithoutAShortcutWaitsForOne) {
    auto action = recording(nullptr, "later");
    monitor.addAction(action, EventType::keyDown);
    EXPECT_TRUE(monitor.shortcuts().empty());
    action->setShortcut(commandK);
    EXPECT_EQ(monitor.enabledActionsForShortcut(*commandK, EventType::keyDown).size(), 1u);
}

TEST_F(ShortcutMonitor, DescribesItsShortcutsForDebugging) {
    EXPECT_EQ(monitor.debugDescription(), "No Shortcuts");
    monitor.addAction(recording(commandK, "k"), EventType::keyDown);
    EXPECT_EQ(monitor.debugDescription(),
              "Key Down Shortcuts: {\n\t⌘K: {\n\t\tSRShortcutAction(⌘K, tag 0)\n\t}\n}\n"
              "Key Up Shortcuts: {\n}");
}

TEST_F(ShortcutMonitor, AKeyEquivalentMakesAnActionWithoutTarget) {
    auto action = monitor.addAction("copy:", "⌘c", 3);
    ASSERT_TRUE(action);
    EXPECT_EQ(action->shortcut()->keyCode(), 8);
    EXPECT_EQ(action->tag(), 3);
    EXPECT_EQ(action->action(), "copy:");
    EXPECT_EQ(monitor.actionsForKeyEvent(EventType::keyDown).size(), 1u);
    EXPECT_EQ(monitor.addAction("copy:", "", 0), nullptr);
}

TEST(KeyEventType, AFlagsChangeIsDownWhenTheKeysOwnFlagIsSet) {
    EXPECT_EQ(SR_keyEventTypeForEventType(EventType::keyUp, 0, 0), EventType::keyUp);
    EXPECT_EQ(SR_keyEventTypeForEventType(EventType::flagsChanged, 61, SROptionFlag),
              EventType::keyDown);
    EXPECT_EQ(SR_keyEventTypeForEventType(EventType::flagsChanged, 54, SRShiftFlag),
              EventType::keyUp)
        << "the right Command key went up while Shift is held";
    quillbox::CapturedLog log;
    EXPECT_EQ(SR_keyEventTypeForEventType(EventType::flagsChanged, 57, 0), EventType::keyDown);
    EXPECT_TRUE(log.contains("#Error Unexpected key code 57 for the FlagsChanged event"));
    try {
        SR_keyEventTypeForEventType(EventType::mouseMoved, 0, 0);
        FAIL();
    } catch (const SRInternalInconsistencyException& error) {
        EXPECT_STREQ(error.what(), "Expected a key event, got 5");
    }
}

}  // namespace
}  // namespace lirixkro
