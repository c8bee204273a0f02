#include <gtest/gtest.h>

#include "shortcuts/LirixkroStrings.h"
#include "shortcuts/SRLiteralModifierFlagsTransformer.h"
#include "shortcuts/SRSymbolicModifierFlagsTransformer.h"
#include "shortcuts/ShortcutTestSupport.h"

namespace lirixkro {
namespace {

constexpr SRModifierFlags all = SRControlFlag | SROptionFlag | SRShiftFlag | SRCommandFlag;

class ModifierFlagsTransformerTest : public testing::ShortcutTest {};

TEST_F(ModifierFlagsTransformerTest,
       FlagsReadControlOptionShiftCommandReversedRightToLeftAndOnlyFromNumbers) {
    auto symbolic = SRSymbolicModifierFlagsTransformer::sharedTransformer();
    EXPECT_EQ(symbolic->transformedValue(SRNumber(all)), "⌃⌥⇧⌘");
    EXPECT_EQ(symbolic->transformedValue(SRNumber(all), SRLayoutDirection::rightToLeft), "⌘⇧⌥⌃");
    EXPECT_EQ(symbolic->transformedValue(SRNumber(SRCommandFlag | SRShiftFlag)), "⇧⌘");
    EXPECT_EQ(symbolic->transformedValue(SRNumber(0)), "");

    auto literal = SRLiteralModifierFlagsTransformer::sharedTransformer();
    EXPECT_EQ(literal->transformedValue(SRNumber(all)), "Control-Option-Shift-Command");
    EXPECT_EQ(literal->transformedValue(SRNumber(SROptionFlag | SRCommandFlag),
                                        SRLayoutDirection::rightToLeft),
              "Command-Option");

    ScopedStringTable table(
        std::map<std::string, std::string, std::less<>>{{"Control", "Strg"}, {"-", "+"}});
    EXPECT_EQ(literal->transformedValue(SRNumber(SRControlFlag | SRShiftFlag)), "Strg+Shift");

    // What is not a number gives nothing; the formless base hands out the symbolic form.
    log.clear();
    EXPECT_EQ(symbolic->transformedValue(std::string("⌘")), std::nullopt);
    EXPECT_EQ(log.texts(), std::vector<std::string>{"#Error Invalid value for transformation"});
    EXPECT_EQ(SRModifierFlagsTransformer::make(), symbolic);
}

TEST_F(ModifierFlagsTransformerTest, SymbolsReadBackEachAtMostOnce) {
    auto symbolic = SRSymbolicModifierFlagsTransformer::sharedTransformer();
    EXPECT_EQ(symbolic->reverseTransformedValue(std::string("⌘⌥⇧⌃")), all);
    EXPECT_EQ(symbolic->reverseTransformedValue(std::string("⇧⌘")), SRShiftFlag | SRCommandFlag);
    EXPECT_EQ(symbolic->reverseTransformedValue(std::string()), 0u);
    EXPECT_TRUE(log.records().empty());

    for (const char* bad : {"⌘⌘", "⌘a", "a"}) {
        log.clear();
        EXPECT_EQ(symbolic->reverseTransformedValue(std::string(bad)), std::nullopt) << bad;
        EXPECT_EQ(log.texts(),
                  std::vector<std::string>{"#Error Invalid value for reverse transformation"});
    }
    EXPECT_EQ(symbolic->reverseTransformedValue(SRNumber(0)), std::nullopt);
    EXPECT_EQ(SRLiteralModifierFlagsTransformer::sharedTransformer()->reverseTransformedValue(
                  std::string("⌘")),
              std::nullopt);
}

}  // namespace
}  // namespace lirixkro
