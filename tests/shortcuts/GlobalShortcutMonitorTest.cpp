#include <gtest/gtest.h>

#include <regex>

#include "shortcuts/SRGlobalShortcutMonitor.h"
#include "shortcuts/SRShortcut.h"
#include "shortcuts/ShortcutTestSupport.h"

namespace lirixkro {
namespace {

using platform::EventType;
using State = SRGlobalShortcutMonitor::State;
namespace carbon = platform::carbonModifier;

using testing::keyK;

class GlobalShortcutMonitor : public testing::ShortcutTest {
  protected:
    // The id in the last "Registered Carbon hot key N" line; 0 if none.
    std::uint32_t lastRegisteredId() const {
        std::uint32_t id = 0;
        const std::regex registered("Registered Carbon hot key (\\d+)");
        for (const auto& text : log.texts()) {
            std::smatch match;
            if (std::regex_match(text, match, registered))
                id = static_cast<std::uint32_t>(std::stoul(match[1]));
        }
        return id;
    }
    SRShortcutActionRef counting(const SRShortcutRef& shortcut, bool answer = true) {
        return SRShortcutAction::shortcutActionWithShortcut(shortcut, [this, answer](auto&) {
            ++performed;
            return answer;
        });
    }

    SRShortcutRef commandK = SRShortcut::shortcutWithCode(keyK, SRCommandFlag);
    int performed = 0;
    // Made after the platform, so that it goes first.
    std::optional<SRGlobalShortcutMonitor> monitor{std::in_place};
};

TEST_F(GlobalShortcutMonitor, RegistersAHotKeyPerShortcutInUseAndFiresItsActions) {
    EXPECT_EQ(monitor->state(), State::idle);
    auto action = counting(commandK);
    monitor->addAction(action, EventType::keyDown);
    EXPECT_EQ(monitor->state(), State::active);
    EXPECT_EQ(hotKeys.registeredCount(), 1u);
    EXPECT_TRUE(log.contains("Installing Carbon hot key event handler"));
    EXPECT_TRUE(log.contains(quillbox::LogLevel::debug, "Added Carbon HotKey Event Handler"));

    EXPECT_TRUE(hotKeys.press(keyK, carbon::command));
    EXPECT_EQ(performed, 1);
    hotKeys.release(keyK, carbon::command);
    EXPECT_EQ(performed, 1) << "no action for key up";
    EXPECT_TRUE(log.contains("No actions for the shortcut"));

    monitor->removeAction(action);
    EXPECT_EQ(hotKeys.registeredCount(), 0u);
    EXPECT_EQ(monitor->state(), State::idle);
    EXPECT_TRUE(log.contains("Removed Carbon HotKey Event Handler"));
}

TEST_F(GlobalShortcutMonitor, DisablingTheLastActionUnregistersAndEnablingRegistersWithANewId) {
    auto action = counting(commandK);
    monitor->addAction(action, EventType::keyDown);
    const auto firstId = lastRegisteredId();
    ASSERT_GT(firstId, 0u);
    action->setEnabled(false);
    EXPECT_EQ(hotKeys.registeredCount(), 0u);
    EXPECT_TRUE(log.contains("Removing Carbon hot key " + std::to_string(firstId)));
    EXPECT_TRUE(log.contains("Unregistered Carbon hot key " + std::to_string(firstId)));
    action->setEnabled(true);
    EXPECT_EQ(hotKeys.registeredCount(), 1u);
    EXPECT_GT(lastRegisteredId(), firstId) << "ids are never reused";
}

TEST_F(GlobalShortcutMonitor, PausesNestAndAHotKeyWhilePausedIsNotHandled) {
    auto action = counting(commandK);
    monitor->addAction(action, EventType::keyDown);
    const auto id = lastRegisteredId();
    monitor->pause();
    monitor->pause();
    EXPECT_TRUE(log.contains("Global Shortcut Monitor counter: 1 -> 2"));
    monitor->resume();
    EXPECT_EQ(monitor->state(), State::paused) << "paused twice, resumed once";
    EXPECT_EQ(hotKeys.registeredCount(), 0u);
    EXPECT_FALSE(hotKeys.press(keyK, carbon::command));

    SRHotKeyEvent event;
    event.hotKeyID = SREventHotKeyID{SRGlobalShortcutMonitor::signature, id};
    EXPECT_EQ(monitor->handleEvent(event), -9874);
    EXPECT_TRUE(log.contains("Monitoring is currently disabled"));
    EXPECT_EQ(performed, 0);

    // A shortcut added while paused is registered at once; its events wait
    // for the handler, which waits for the resume.
    auto other = counting(SRShortcut::shortcutWithCode(keyK, SRControlFlag));
    monitor->addAction(other, EventType::keyDown);
    EXPECT_EQ(hotKeys.registeredCount(), 1u);
    EXPECT_TRUE(hotKeys.press(keyK, carbon::control));
    EXPECT_EQ(performed, 0);

    monitor->resume();
    EXPECT_EQ(monitor->state(), State::active);
    EXPECT_EQ(hotKeys.registeredCount(), 2u);
    EXPECT_TRUE(hotKeys.press(keyK, carbon::command));
    EXPECT_EQ(performed, 1);
}

TEST_F(GlobalShortcutMonitor, AShortcutWithoutAKeyCodeIsLoggedAndNotRegistered) {
    auto chord = counting(SRShortcut::shortcutWithCode(SRKeyCodeNone, SRControlFlag | SRShiftFlag));
    monitor->addAction(chord, EventType::keyDown);
    EXPECT_TRUE(
        log.contains(quillbox::LogLevel::error,
                     "#Error Shortcut without a key code cannot be registered as Carbon hot key"));
    EXPECT_EQ(hotKeys.registeredCount(), 0u);
    EXPECT_EQ(monitor->state(), State::idle);
    EXPECT_EQ(monitor->shortcuts().size(), 1u) << "kept in the bookkeeping";
}

TEST_F(GlobalShortcutMonitor, AHotKeyTheSystemRefusesIsJustAbsent) {
    hotKeys.takeByAnotherProgram(keyK, carbon::command);
    monitor->addAction(counting(commandK), EventType::keyDown);
    EXPECT_TRUE(log.contains(quillbox::LogLevel::fault,
                             "#Critical Failed to register Carbon hot key: -9878"));
    EXPECT_EQ(monitor->state(), State::idle);
    EXPECT_EQ(monitor->shortcuts().size(), 1u);
}

TEST_F(GlobalShortcutMonitor, TheHandlerRefusesEventsThatAreNotItsOwn) {
    auto action = counting(commandK);
    monitor->addAction(action, EventType::keyDown);
    const auto id = lastRegisteredId();
    void* self = &*monitor;
    EXPECT_EQ(SRGlobalShortcutMonitor::eventHandler(nullptr, self), -9874);
    EXPECT_TRUE(log.contains("#Error Event is NULL"));
    SRHotKeyEvent event;
    event.eventClass = 0x6d6f7573;  // 'mous'
    EXPECT_EQ(SRGlobalShortcutMonitor::eventHandler(&event, self), -9874);
    EXPECT_TRUE(log.contains("#Error Not a keyboard event"));

    event = SRHotKeyEvent{};
    EXPECT_EQ(monitor->handleEvent(event), -9874);
    EXPECT_TRUE(log.contains("#Critical Failed to get hot key ID: -9870"));
    event.hotKeyID = SREventHotKeyID{0x41424344, id};
    EXPECT_EQ(monitor->handleEvent(event), -9874);
    EXPECT_TRUE(log.contains("#Error Unexpected hot key with id " + std::to_string(id) +
                             " and signature: 1094861636"));
    event.hotKeyID = SREventHotKeyID{SRGlobalShortcutMonitor::signature, id + 1000};
    EXPECT_EQ(monitor->handleEvent(event), -9874);
    EXPECT_TRUE(log.contains("Unregistered hot key with id " + std::to_string(id + 1000) +
                             " and signature 1397904210"));
    event.hotKeyID = SREventHotKeyID{SRGlobalShortcutMonitor::signature, id};
    event.eventKind = 9;
    EXPECT_EQ(monitor->handleEvent(event), -9874);
    EXPECT_TRUE(log.contains("#Error Unexpected key event of type 9"));
    event.eventKind = SRHotKeyEvent::hotKeyPressedKind;
    EXPECT_EQ(SRGlobalShortcutMonitor::eventHandler(&event, self), 0);
    EXPECT_EQ(performed, 1);
    action->setActionHandler([](auto&) { return false; });
    EXPECT_EQ(monitor->handleEvent(event), -9874) << "no action performed";
}

TEST_F(GlobalShortcutMonitor, DestructionUnregistersEverything) {
    monitor->addAction(counting(commandK), EventType::keyDown);
    ASSERT_EQ(hotKeys.registeredCount(), 1u);
    monitor.reset();
    EXPECT_EQ(hotKeys.registeredCount(), 0u);
}

}  // namespace
}  // namespace lirixkro
