#include <gtest/gtest.h>

#include "platform/x11/XkbInputSource.h"
#include "platform/x11/XkbLayoutNames.h"

namespace platform::x11 {
namespace {

using namespace std::string_literals;

XkbKeymapRef keymapOf(xkb_context* context, const char* layout) {
    const xkb_rule_names names{nullptr, nullptr, layout, nullptr, nullptr};
    return adoptXkbKeymap(xkb_keymap_new_from_names(context, &names, XKB_KEYMAP_COMPILE_NO_FLAGS));
}

class XkbInputSourceTest : public ::testing::Test {
  protected:
    XkbContextRef context = makeXkbContext();
};

TEST_F(XkbInputSourceTest, TranslatesByPositionUnderTheModifiers) {
    XkbInputSource german(keymapOf(context.get(), "de"), 0, "xkb:de");
    EXPECT_EQ(german.translate(keycode::y, 0).text, "z");
    EXPECT_EQ(german.translate(keycode::y, keyModifierState::shift).text, "Z");
    EXPECT_EQ(german.translate(keycode::y, keyModifierState::capsLock).text, "Z");
    // Option is the third level where the layout has one.
    EXPECT_EQ(german.translate(12, keyModifierState::option).text, "@");
    // Control and Command choose shortcuts, not characters.
    EXPECT_EQ(german.translate(keycode::a, keyModifierState::control).text, "a");
    EXPECT_EQ(german.translate(keycode::a, keyModifierState::command).text, "a");

    XkbInputSource us(keymapOf(context.get(), "us"), 0, "xkb:us");
    EXPECT_EQ(us.translate(12, keyModifierState::option).text, "q");
    EXPECT_EQ(us.translate(18, keyModifierState::shift).text, "!");
    EXPECT_EQ(us.translate(keycode::returnKey, 0).text, "\r");
    // Keys without text translate to nothing; unknown keys fail.
    EXPECT_EQ(us.translate(keycode::f5, 0).status, 0);
    EXPECT_EQ(us.translate(keycode::f5, 0).text, "");
    EXPECT_NE(us.translate(keycode::none, 0).status, 0);
    EXPECT_NE(us.translate(127, 0).status, 0);
}

TEST_F(XkbInputSourceTest, TellsLatinGroupsFromOthers) {
    const XkbKeymapRef keymap = keymapOf(context.get(), "ru,us,de,fr");
    ASSERT_TRUE(keymap);
    EXPECT_FALSE(XkbInputSource::isLatin(keymap.get(), 0));
    for (xkb_layout_index_t group = 1; group < 4; ++group) {
        EXPECT_TRUE(XkbInputSource::isLatin(keymap.get(), group)) << group;
    }
    XkbInputSource secondGroup(keymap, 1, "xkb:us");
    EXPECT_EQ(secondGroup.translate(keycode::a, 0).text, "a");
    XkbInputSource firstGroup(keymap, 0, "xkb:ru");
    EXPECT_EQ(firstGroup.translate(keycode::a, 0).text, "ф");
}

TEST(XkbRulesNames, ReadsTheRootWindowProperty) {
    const auto names = XkbRulesNames::parse("evdev\0pc105\0us,de\0,nodeadkeys\0grp:alt_shift\0"s);
    ASSERT_TRUE(names);
    EXPECT_EQ(names->groupNames(), (std::vector<std::string>{"us", "de(nodeadkeys)"}));
    EXPECT_EQ(names->options, "grp:alt_shift");
    EXPECT_EQ(XkbRulesNames::parse("evdev\0pc105\0ru\0"s)->groupNames(),
              std::vector<std::string>{"ru"});
    EXPECT_FALSE(XkbRulesNames::parse("evdev\0pc105\0\0\0\0"s));
    EXPECT_FALSE(XkbRulesNames::parse(""));
}

TEST_F(XkbInputSourceTest, ShortNamesOnlyWhenTheRuleNamesMatchTheKeymap) {
    const XkbKeymapRef keymap = keymapOf(context.get(), "de,us");
    XkbLayoutNamer namer;
    EXPECT_EQ(namer.identifiers(keymap.get(), XkbRulesNames::parse("evdev\0pc105\0de,us\0\0\0"s)),
              (std::vector<std::string>{"xkb:de", "xkb:us"}));
    // Rule names still from before the keymap was loaded.
    EXPECT_EQ(namer.identifiers(keymap.get(), XkbRulesNames::parse("evdev\0pc105\0us\0\0\0"s)),
              (std::vector<std::string>{"xkb:German", "xkb:English (US)"}));
    EXPECT_EQ(namer.identifiers(keymap.get(), std::nullopt),
              (std::vector<std::string>{"xkb:German", "xkb:English (US)"}));
}

}  // namespace
}  // namespace platform::x11
