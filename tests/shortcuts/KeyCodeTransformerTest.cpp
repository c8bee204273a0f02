#include <gtest/gtest.h>

#include "shortcuts/LirixkroStrings.h"
#include "shortcuts/SRASCIILiteralKeyCodeTransformer.h"
#include "shortcuts/SRASCIISymbolicKeyCodeTransformer.h"
#include "shortcuts/SRLiteralKeyCodeTransformer.h"
#include "shortcuts/SRShortcut.h"
#include "shortcuts/SRSymbolicKeyCodeTransformer.h"
#include "shortcuts/SRText.h"
#include "shortcuts/ShortcutTestSupport.h"

namespace lirixkro {
namespace {

using testing::ShortcutTest;
constexpr auto LTR = SRLayoutDirection::leftToRight;
constexpr auto RTL = SRLayoutDirection::rightToLeft;

struct Row {
    SRKeyCode keyCode;
    SRModifierFlags implicitFlags;
    SRLayoutDirection direction;
    std::string expected;
};

// Both transformers of a form give each row's text.
template <typename Current, typename ASCII>
void expectForms(const std::vector<Row>& rows) {
    for (const auto& row : rows) {
        const SRNumber keyCode(row.keyCode);
        EXPECT_EQ(Current::sharedTransformer()->transformedValue(keyCode, row.implicitFlags, 0,
                                                                 row.direction),
                  row.expected)
            << "key code " << row.keyCode;
        EXPECT_EQ(ASCII::sharedTransformer()->transformedValue(keyCode, row.implicitFlags, 0,
                                                               row.direction),
                  row.expected)
            << "ASCII, key code " << row.keyCode;
    }
}

class KeyCodeTransformerTest : public ShortcutTest {};

TEST_F(KeyCodeTransformerTest, LiteralFormsOnTheUSLayoutIgnoreExplicitFlags) {
    const std::vector<Row> rows = {
        {36, 0, LTR, "↩"},           {48, 0, LTR, "⇥"},           {48, SRShiftFlag, LTR, "⇤"},
        {48, 0, RTL, "⇤"},           {48, SRShiftFlag, RTL, "⇥"}, {49, 0, LTR, "Space"},
        {51, 0, LTR, "⌫"},           {51, 0, RTL, "⌦"},           {117, 0, LTR, "⌦"},
        {117, 0, RTL, "⌫"},          {53, 0, LTR, "⎋"},           {71, 0, LTR, "⌧"},
        {76, 0, LTR, "⌅"},           {93, 0, LTR, "¥"},           {94, 0, LTR, "＿"},
        {95, 0, LTR, "、"},          {114, 0, LTR, "?⃝"},          {115, 0, LTR, "↖"},
        {116, 0, LTR, "⇞"},          {119, 0, LTR, "↘"},          {121, 0, LTR, "⇟"},
        {123, 0, LTR, "←"},          {124, 0, LTR, "→"},          {125, 0, LTR, "↓"},
        {126, 0, LTR, "↑"},          {122, 0, LTR, "F1"},         {96, 0, LTR, "F5"},
        {113, 0, LTR, "F15"},        {90, 0, LTR, "F20"},         {0, 0, LTR, "A"},
        {40, 0, LTR, "K"},           {18, 0, LTR, "1"},           {18, SRShiftFlag, LTR, "!"},
        {0, SROptionFlag, LTR, "Å"}, {82, 0, LTR, "0"},           {SRKeyCodeNone, 0, LTR, ""},
    };
    expectForms<SRLiteralKeyCodeTransformer, SRASCIILiteralKeyCodeTransformer>(rows);
    // Explicit flags never change the text.
    auto literal = SRLiteralKeyCodeTransformer::sharedTransformer();
    EXPECT_EQ(literal->transformedValue(SRNumber(18), 0, SRShiftFlag | SRCommandFlag, LTR), "1");
    EXPECT_EQ(literal->transformedValue(SRShortcut::shortcutWithCode(18, SRShiftFlag)), "1");
}

TEST_F(KeyCodeTransformerTest, SymbolicFormsOnTheUSLayout) {
    using detail::SRUTF8;
    const std::vector<Row> rows = {
        {36, 0, LTR, "\r"},
        {48, 0, LTR, "\t"},
        {48, SRShiftFlag, LTR, "\t"},
        {51, 0, RTL, "\b"},
        {53, 0, LTR, "\x1b"},
        {71, 0, LTR, SRUTF8(0xF739)},
        {76, 0, LTR, "\x03"},
        {93, 0, LTR, "¥"},
        {114, 0, LTR, SRUTF8(0xF746)},
        {117, 0, LTR, "\x7f"},
        {123, 0, LTR, SRUTF8(0xF702)},
        {122, 0, LTR, SRUTF8(0xF704)},
        {90, 0, LTR, SRUTF8(0xF717)},
        {0, 0, LTR, "a"},
        {0, SRShiftFlag, LTR, "A"},
        {18, SRShiftFlag, LTR, "!"},
    };
    expectForms<SRSymbolicKeyCodeTransformer, SRASCIISymbolicKeyCodeTransformer>(rows);
}

TEST_F(KeyCodeTransformerTest, EachMemberNamesItsActivityAndRefusesWhatIsNotANumber) {
    const std::vector<std::pair<const SRKeyCodeTransformer*, std::string>> members = {
        {SRLiteralKeyCodeTransformer::sharedTransformer().get(), "Key Code -> Literal"},
        {SRSymbolicKeyCodeTransformer::sharedTransformer().get(), "Key Code -> Symbol"},
        {SRASCIILiteralKeyCodeTransformer::sharedTransformer().get(), "Key Code -> ASCII Literal"},
        {SRASCIISymbolicKeyCodeTransformer::sharedTransformer().get(), "Key Code -> ASCII Symbol"},
    };
    for (const auto& [transformer, activity] : members) {
        log.clear();
        EXPECT_EQ(transformer->transformedValue(SRValue(std::string("0"))), std::nullopt);
        EXPECT_EQ(transformer->transformedValue(SRValue()), std::nullopt);
        const auto records = log.records();
        ASSERT_EQ(records.size(), 2u);
        EXPECT_EQ(records[0].text, "#Error Invalid key code");
        EXPECT_EQ(records[0].activity, activity);
    }
}

TEST_F(KeyCodeTransformerTest, TheBaseTransformerHasNoFormAndHandsOutTheSymbolicOne) {
    auto made = SRKeyCodeTransformer::make();
    EXPECT_TRUE(log.contains("#Developer #Error Use SRSymbolicKeyCodeTransformer instead"));
    EXPECT_EQ(made, SRSymbolicKeyCodeTransformer::sharedTransformer());
    EXPECT_EQ(SRKeyCodeTransformer::sharedTransformer(),
              SRSymbolicKeyCodeTransformer::sharedTransformer());

    layouts.selectLayout(platform::sim::layoutIdentifier::german);
    auto onGerman =
        SRKeyCodeTransformer::makeWithInputSource(layouts.copyCurrentKeyboardLayoutInputSource());
    EXPECT_EQ(onGerman->transformedValue(SRNumber(6)), "y");
    EXPECT_EQ(onGerman->inputSource()->identifier(), "com.apple.keylayout.German");
}

TEST_F(KeyCodeTransformerTest, KnownKeyCodesAreTheHundredAndThreeInTheirOrder) {
    const auto& codes = SRKeyCodeTransformer::knownKeyCodes();
    ASSERT_EQ(codes.size(), 103u);
    EXPECT_EQ(codes.front(), 29);
    EXPECT_EQ(codes[10], 0);
    EXPECT_EQ(codes.back(), 126);
}

struct ReverseRow {
    std::string text;
    SRKeyCode keyCode;
};

TEST_F(KeyCodeTransformerTest, ASCIILiteralReadsBackKeysNamesAndFunctionKeysAndNothingElse) {
    const std::vector<ReverseRow> rows = {
        {"a", 0},    {"A", 0},       {" ", 49},    {"-", 27},     {".", 47},     {"/", 44},
        {"=", 24},   {"1", 18},      {"0", 29},    {"9", 25},     {"¥", 93},     {"←", 123},
        {"↑", 126},  {"→", 124},     {"↓", 125},   {"↖", 115},    {"↘", 119},    {"↩", 36},
        {"⇞", 116},  {"⇟", 121},     {"⇤", 48},    {"⇥", 48},     {"⌅", 76},     {"⌦", 117},
        {"⌧", 71},   {"⌫", 51},      {"⎋", 53},    {"、", 95},    {"＿", 94},    {"f1", 122},
        {"F5", 96},  {"f9", 101},    {"f10", 109}, {"F20", 90},   {"space", 49}, {"SPACE", 49},
        {"esc", 53}, {"Escape", 53}, {"tab", 48},  {"help", 114}, {"?⃝", 114},    {"enter", 36},
        {"k", 40},   {";", 41},      {"*", 67},    {"+", 69},
    };
    auto transformer = SRASCIILiteralKeyCodeTransformer::sharedTransformer();
    for (const auto& row : rows) {
        EXPECT_EQ(transformer->reverseTransformedValue(row.text), row.keyCode) << row.text;
    }

    for (const char* text : {"F21", "f01", "f0", "fx", "abc"}) {
        log.clear();
        EXPECT_EQ(transformer->reverseTransformedValue(std::string(text)), std::nullopt) << text;
        ASSERT_FALSE(log.records().empty());
        EXPECT_EQ(log.records().back().text, "#Error Invalid value for reverse transformation");
        EXPECT_EQ(log.records().back().activity, "ASCII Literal -> Key Code");
    }
    log.clear();
    EXPECT_EQ(transformer->reverseTransformedValue(std::string()), std::nullopt);
    EXPECT_EQ(transformer->reverseTransformedValue(SRNumber(1)), std::nullopt);
    EXPECT_EQ(log.texts(), (std::vector<std::string>{"#Error Invalid ASCII literal",
                                                     "#Error Invalid ASCII literal"}));
    // Only the ASCII members reverse.
    EXPECT_EQ(
        SRLiteralKeyCodeTransformer::sharedTransformer()->reverseTransformedValue(std::string("a")),
        std::nullopt);
}

TEST_F(KeyCodeTransformerTest, ASCIILiteralComparesSpaceInTheTranslatedWordToo) {
    ScopedStringTable table(
        std::map<std::string, std::string, std::less<>>{{"Space", "Leertaste"}});
    auto transformer = SRASCIILiteralKeyCodeTransformer::sharedTransformer();
    EXPECT_EQ(transformer->reverseTransformedValue(std::string("leertaste")), 49);
    EXPECT_EQ(transformer->reverseTransformedValue(std::string("space")), 49);
    EXPECT_EQ(transformer->transformedValue(SRNumber(49)), "Leertaste");
}

TEST_F(KeyCodeTransformerTest, ASCIISymbolicReadsBackOneCharacterAndNothingElse) {
    using detail::SRUTF8;
    const std::vector<ReverseRow> rows = {
        {"\x19", 48},
        {"\t", 48},
        {"a", 0},
        {"A", 0},
        {"¥", 93},
        {SRUTF8(0xF700), 126},
        {SRUTF8(0xF704), 122},
        {SRUTF8(0xF717), 90},
        {SRUTF8(0xF746), 114},
        {"\r", 36},
    };
    auto transformer = SRASCIISymbolicKeyCodeTransformer::sharedTransformer();
    for (const auto& row : rows) {
        EXPECT_EQ(transformer->reverseTransformedValue(row.text), row.keyCode) << row.text;
    }

    log.clear();
    EXPECT_EQ(transformer->reverseTransformedValue(std::string("ab")), std::nullopt);
    EXPECT_EQ(transformer->reverseTransformedValue(std::string()), std::nullopt);
    EXPECT_EQ(transformer->reverseTransformedValue(SRNumber(0)), std::nullopt);
    EXPECT_EQ(log.texts(), std::vector<std::string>(3, "#Error Invalid ASCII symbol"));
    log.clear();
    EXPECT_EQ(transformer->reverseTransformedValue(std::string("ж")), std::nullopt);
    EXPECT_EQ(log.texts().back(), "#Error Invalid value for reverse transformation");
    EXPECT_EQ(log.records().back().activity, "ASCII Symbol -> Key Code");
}

}  // namespace
}  // namespace lirixkro
