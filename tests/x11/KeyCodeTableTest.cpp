#include <gtest/gtest.h>

#include <set>

#include "platform/x11/KeyCodeTable.h"

namespace platform::x11 {
namespace {

TEST(KeyCodeTable, EveryKeyGoesToItsOwnXKeyAndBackAndUnknownKeysAreAbsent) {
    std::set<int> xKeys;
    for (const KeyCode* key = KeyCodeTable::begin(); key != KeyCodeTable::end(); ++key) {
        const auto xKey = KeyCodeTable::xKeyCodeFor(*key);
        ASSERT_TRUE(xKey) << *key;
        EXPECT_TRUE(xKeys.insert(*xKey).second) << "two keys on X keycode " << int(*xKey);
        EXPECT_EQ(KeyCodeTable::keyCodeFor(*xKey), *key);
    }
    EXPECT_GE(xKeys.size(), 110u);
    EXPECT_EQ(KeyCodeTable::xKeyCodeFor(keycode::y), 29);  // AD06 whatever the layout prints
    EXPECT_EQ(KeyCodeTable::keyCodeFor(146), 114);         // Help arrives as Help or Insert

    for (const KeyCode unknown : {keycode::none, KeyCode{127}, KeyCode{52}})
        EXPECT_FALSE(KeyCodeTable::xKeyCodeFor(unknown)) << unknown;
    EXPECT_FALSE(KeyCodeTable::keyCodeFor(0));
    EXPECT_FALSE(KeyCodeTable::keyCodeFor(255));
}

TEST(KeyCodeTable, ModifierAndDeviceFlags) {
    EXPECT_EQ(KeyCodeTable::modifierFlagOf(keycode::rightOption), modifier::option);
    EXPECT_EQ(KeyCodeTable::modifierFlagOf(keycode::capsLock), modifier::capsLock);
    EXPECT_EQ(KeyCodeTable::modifierFlagOf(keycode::a), 0u);
    EXPECT_EQ(KeyCodeTable::deviceFlagsOf(126), modifier::function | modifier::numericPad);
    EXPECT_EQ(KeyCodeTable::deviceFlagsOf(keycode::f5), modifier::function);
    EXPECT_EQ(KeyCodeTable::deviceFlagsOf(83), modifier::numericPad);
    EXPECT_EQ(KeyCodeTable::deviceFlagsOf(keycode::escape), 0u);
}

}  // namespace
}  // namespace platform::x11
