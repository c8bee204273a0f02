#include <gtest/gtest.h>

#include "shortcuts/FakeApplication.h"
#include "shortcuts/SRShortcut.h"
#include "shortcuts/SRShortcutFormatter.h"
#include "shortcuts/ShortcutTestSupport.h"

namespace lirixkro {
namespace {

using testing::commandShift;

class ShortcutFormatterTest : public testing::ShortcutTest {
  protected:
    SRShortcutRef commandShiftK = SRShortcut::shortcutWithCode(40, commandShift);
};

TEST_F(ShortcutFormatterTest, DefaultsPutTheSymbolsFirstAndEachSettingChangesItsPart) {
    SRShortcutFormatter formatter;
    EXPECT_EQ(formatter.stringForObjectValue(commandShiftK), "⇧⌘K");
    EXPECT_EQ(formatter.stringForObjectValue(std::string("⇧⌘K")), std::nullopt);
    EXPECT_EQ(formatter.stringForObjectValue(SRNumber(40)), std::nullopt);
    EXPECT_EQ(formatter.stringForShortcut(*SRShortcut::shortcutWithCode(200, SRCommandFlag)),
              "⌘<200>");

    formatter.setModifierFlagsLiteral(true);
    EXPECT_EQ(formatter.stringForShortcut(*commandShiftK), "Shift-CommandK");
    formatter.setModifierFlagsLiteral(false);
    formatter.setKeyCodeLiteral(false);
    EXPECT_EQ(formatter.stringForShortcut(*commandShiftK), "⇧⌘k");
    formatter.setKeyCodeLiteral(true);
    formatter.setLayoutDirection(SRLayoutDirection::rightToLeft);
    EXPECT_EQ(formatter.stringForShortcut(*commandShiftK), "⌘⇧K")
        << "modifiers stay first; only their order turns";

    layouts.selectLayout(platform::sim::layoutIdentifier::german);
    SRShortcutFormatter current;
    current.setUsesASCIICapableKeyboardInputSource(false);
    EXPECT_EQ(current.stringForShortcut(*SRShortcut::shortcutWithCode(6, SRCommandFlag)), "⌘Y");
}

TEST_F(ShortcutFormatterTest, TheLayoutDirectionComesFromTheApplication) {
    testing::FakeApplication application;
    application.direction = SRLayoutDirection::rightToLeft;
    auto services = this->services();
    services.application = &application;
    platform::ScopedInstall withApplication(services);
    EXPECT_EQ(SRShortcutFormatter().layoutDirection(), SRLayoutDirection::rightToLeft);
    // The description always reads left to right.
    EXPECT_EQ(commandShiftK->description(), "⇧⌘K");
}

TEST_F(ShortcutFormatterTest, OnlyTheDefaultFormReadsBack) {
    SRShortcutFormatter formatter;
    SRShortcutRef read;
    ASSERT_TRUE(formatter.getObjectValue(&read, "⇧⌘K", nullptr));
    ASSERT_TRUE(read);
    EXPECT_EQ(*read, *commandShiftK);
    EXPECT_TRUE(formatter.getObjectValue(nullptr, "⌘Space", nullptr));
    EXPECT_FALSE(formatter.getObjectValue(&read, "⌘⌘K", nullptr));

    read.reset();
    formatter.setModifierFlagsLiteral(true);
    EXPECT_FALSE(formatter.getObjectValue(&read, "⇧⌘K", nullptr));
    EXPECT_FALSE(read);
    formatter.setModifierFlagsLiteral(false);
    formatter.setLayoutDirection(SRLayoutDirection::rightToLeft);
    EXPECT_FALSE(formatter.getObjectValue(&read, "⇧⌘K", nullptr));
}

}  // namespace
}  // namespace lirixkro
