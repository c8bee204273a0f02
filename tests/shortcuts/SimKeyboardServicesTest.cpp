#include <gtest/gtest.h>

#include "platform/sim/SimHotKeys.h"
#include "platform/sim/SimKeyboardLayouts.h"
#include "platform/sim/SimMainLoop.h"

namespace {

using platform::keyModifierState::command;
using platform::keyModifierState::control;
using platform::keyModifierState::option;
using platform::keyModifierState::shift;
using platform::sim::SimHotKeys;
using platform::sim::SimKeyboardLayouts;
namespace layout = platform::sim::layoutIdentifier;

TEST(SimKeyboardLayouts, ShiftAndOptionChangeTheTextCommandAndControlPassThrough) {
    platform::sim::SimMainLoop loop;
    SimKeyboardLayouts layouts(loop);
    auto us = layouts.copyCurrentKeyboardLayoutInputSource();
    EXPECT_EQ(us->translate(0, 0).text, "a");
    EXPECT_EQ(us->translate(0, shift).text, "A");
    EXPECT_EQ(us->translate(0, option).text, "å");
    EXPECT_EQ(us->translate(0, shift | option).text, "Å");
    EXPECT_EQ(us->translate(0, command | control).text, "a");
    EXPECT_EQ(us->translate(14, option).text, "e") << "no option text falls back";
    EXPECT_EQ(us->translate(102, 0).text, "");
    EXPECT_EQ(us->translate(200, 0).status, platform::sim::SimInputSource::invalidKeyCodeStatus);
    EXPECT_EQ(layouts.translationCount(), 8u);
}

TEST(SimKeyboardLayouts, SwitchingChangesTheIdentifierAndTellsObserversOnTheLoop) {
    platform::sim::SimMainLoop loop;
    SimKeyboardLayouts layouts(loop);
    int told = 0;
    auto subscription = layouts.observeLayoutChanges([&] { ++told; });

    EXPECT_FALSE(layouts.selectLayout("com.example.Klingon"));
    EXPECT_TRUE(layouts.selectLayout(layout::russian));
    EXPECT_EQ(layouts.copyCurrentKeyboardLayoutInputSource()->identifier(), layout::russian);
    EXPECT_EQ(layouts.copyCurrentASCIICapableKeyboardLayoutInputSource()->identifier(), layout::us);
    loop.runUntilIdle();
    EXPECT_EQ(told, 1);

    layouts.selectLayout(layout::french);
    EXPECT_EQ(layouts.copyCurrentASCIICapableKeyboardLayoutInputSource()->identifier(),
              layout::french);
    subscription.cancel();
    loop.runUntilIdle();
    EXPECT_EQ(told, 1);

    layouts.setSourcesUnavailable(true);
    EXPECT_FALSE(layouts.copyCurrentKeyboardLayoutInputSource());
}

TEST(SimHotKeys, RegistrationsFireAndConflictsAreRefused) {
    SimHotKeys hotKeys;
    std::vector<bool> presses;
    platform::Token token;
    ASSERT_EQ(hotKeys.registerEventHotKey(
                  40, 0x100, [&](bool down) { presses.push_back(down); }, token),
              0);
    platform::Token second;
    EXPECT_EQ(hotKeys.registerEventHotKey(40, 0x100, {}, second), SimHotKeys::hotKeyExistsStatus);
    hotKeys.takeByAnotherProgram(41, 0x100);
    EXPECT_EQ(hotKeys.registerEventHotKey(41, 0x100, {}, second), SimHotKeys::hotKeyExistsStatus);

    EXPECT_TRUE(hotKeys.press(40, 0x100));
    EXPECT_TRUE(hotKeys.release(40, 0x100));
    EXPECT_FALSE(hotKeys.press(40, 0x200));
    EXPECT_EQ(presses, (std::vector<bool>{true, false}));

    EXPECT_EQ(hotKeys.unregisterEventHotKey(token), 0);
    EXPECT_EQ(hotKeys.unregisterEventHotKey(token), SimHotKeys::hotKeyInvalidStatus);
    EXPECT_FALSE(hotKeys.press(40, 0x100));
}

TEST(SimHotKeys, SystemShortcutsAreScriptedAndCanFailToBeRead) {
    SimHotKeys hotKeys;
    std::vector<platform::SymbolicHotKey> read;
    ASSERT_EQ(hotKeys.copySymbolicHotKeys(read), 0);
    EXPECT_EQ(read.size(), SimHotKeys::defaultSymbolicHotKeys().size());
    hotKeys.setSymbolicHotKeys({{true, 1, 0x100}});
    hotKeys.copySymbolicHotKeys(read);
    ASSERT_EQ(read.size(), 1u);
    EXPECT_EQ(read[0].keyCode, 1);
    hotKeys.setCopySymbolicHotKeysStatus(-50);
    EXPECT_EQ(hotKeys.copySymbolicHotKeys(read), -50);
}

}  // namespace
