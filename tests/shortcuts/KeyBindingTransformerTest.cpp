#include <gtest/gtest.h>

#include "shortcuts/SRKeyBindingTransformer.h"
#include "shortcuts/SRKeyEquivalentModifierMaskTransformer.h"
#include "shortcuts/SRKeyEquivalentTransformer.h"
#include "shortcuts/SRShortcut.h"
#include "shortcuts/ShortcutTestSupport.h"

namespace lirixkro {
namespace {

class KeyBindingTransformerTest : public testing::ShortcutTest {
  protected:
    SRShortcutRef binding(const char* text) {
        return SRKeyBindingTransformer::sharedTransformer()->transformedValue(std::string(text));
    }
    std::optional<std::string> text(const SRValue& value) {
        return SRKeyBindingTransformer::sharedTransformer()->reverseTransformedValue(value);
    }
};

TEST_F(KeyBindingTransformerTest, PrefixMarksAndCapitalsMakeTheFlagsAndAHashTheKeypad) {
    auto shiftA = binding("$a");
    ASSERT_TRUE(shiftA);
    EXPECT_EQ(shiftA->keyCode(), 0);
    EXPECT_EQ(shiftA->modifierFlags(), SRShiftFlag);
    EXPECT_EQ(shiftA->characters(), "A");
    EXPECT_EQ(shiftA->charactersIgnoringModifiers(), "a");

    auto capital = binding("A");
    ASSERT_TRUE(capital);
    EXPECT_TRUE(capital->isEqualToShortcut(*shiftA));

    auto all = binding("^~$@k");
    ASSERT_TRUE(all);
    EXPECT_EQ(all->keyCode(), 40);
    EXPECT_EQ(all->modifierFlags(), SRCocoaModifierFlagsMask);

    // A hash puts the key on the keypad.
    const std::vector<std::pair<const char*, SRKeyCode>> rows = {{"1", 18},  {"#1", 83}, {"#0", 82},
                                                                 {"#=", 81}, {"#-", 78}, {"#a", 0}};
    for (const auto& [text, keyCode] : rows) {
        auto shortcut = binding(text);
        ASSERT_TRUE(shortcut) << text;
        EXPECT_EQ(shortcut->keyCode(), keyCode) << text;
    }
}

TEST_F(KeyBindingTransformerTest, WhatIsNotOneKeyAfterTheMarksIsRefused) {
    EXPECT_FALSE(binding(""));
    EXPECT_FALSE(SRKeyBindingTransformer::sharedTransformer()->transformedValue(SRNumber(1)));
    EXPECT_TRUE(log.records().empty()) << "no text is no binding, and no log";

    for (const char* bad : {"^", "^ab", "ab", "^ж"}) {
        log.clear();
        EXPECT_FALSE(binding(bad)) << bad;
        EXPECT_TRUE(log.contains("#Error unexpected key symbol")) << bad;
    }
}

TEST_F(KeyBindingTransformerTest, ShortcutsAndDictionariesBecomeBindingTextsAndBadValuesNothing) {
    EXPECT_EQ(text(SRShortcut::shortcutWithCode(40, SRControlFlag | SRShiftFlag)), "^$k");
    EXPECT_EQ(text(SRShortcut::shortcutWithCode(0, SRCocoaModifierFlagsMask)), "^~$@a");
    EXPECT_EQ(text(SRShortcut::shortcutWithCode(83, SRCommandFlag)), "@#1");
    EXPECT_EQ(text(SRDictionary{{"keyCode", SRNumber(0)}, {"modifierFlags", std::string("x")}}),
              "a");
    for (const char* sample : {"$a", "^~@k", "#5", "@#="}) {
        EXPECT_EQ(text(binding(sample)), sample);
    }

    log.clear();
    EXPECT_EQ(text(std::string("$a")), std::nullopt);
    EXPECT_EQ(log.texts(), std::vector<std::string>{"#Error invalid class of the value"});
    EXPECT_EQ(text(SRDictionary{{"keyCode", std::string("0")}}), std::nullopt);
    EXPECT_EQ(log.texts().back(), "#Error invalid key code");
    EXPECT_EQ(text(SRDictionary{{"keyCode", SRNumber(200)}}), std::nullopt);
    EXPECT_EQ(log.texts().back(), "#Error unexpected key code");
}

TEST_F(KeyBindingTransformerTest, KeyEquivalentsForMenus) {
    auto equivalent = SRKeyEquivalentTransformer::sharedTransformer();
    auto mask = SRKeyEquivalentModifierMaskTransformer::sharedTransformer();
    auto commandShiftK = SRShortcut::shortcutWithCode(40, SRCommandFlag | SRShiftFlag);
    EXPECT_EQ(equivalent->transformedValue(commandShiftK), "k");
    EXPECT_EQ(mask->transformedValue(commandShiftK), SRCommandFlag | SRShiftFlag);
    EXPECT_EQ(equivalent->transformedValue(
                  SRDictionary{{"keyCode", SRNumber(0)}, {"modifierFlags", SRNull{}}}),
              "a");
    EXPECT_EQ(equivalent->transformedValue(SRDictionary{{"keyCode", SRNull{}}}), std::nullopt);
    EXPECT_EQ(mask->transformedValue(SRDictionary{{"modifierFlags", SRNull{}}}), std::nullopt);
    EXPECT_EQ(equivalent->transformedValue(std::string("a")), std::nullopt);
}

}  // namespace
}  // namespace lirixkro
