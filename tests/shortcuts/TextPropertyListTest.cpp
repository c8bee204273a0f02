#include <gtest/gtest.h>

#include "platform/PropertyListCodec.h"
#include "shortcuts/SRTextPropertyList.h"

namespace lirixkro {
namespace {

using platform::PropertyList;

TEST(TextPropertyList, ReadsTheKeyBindingFormWithCommentsEscapesAndNesting) {
    const auto list = SRReadTextPropertyList(R"(
        // a comment to the end of the line
        {
            "^f" = "moveForward:";            /* a block
                                                 comment */
            "\UF700" = moveUp:;
            "~\U007F" = ( "deleteWordBackward:", yank: , );
            "^x" = { "^s" = "save:"; "^c" = 'terminate:' };
            "tab\there" = "quote \" and backslash \\";
            "\101\102" = <0fBd 0a>;
            "\UD83D\UDE00" = ();
        })");
    ASSERT_TRUE(list);
    const auto& d = *list->dictionary();
    EXPECT_EQ(d.at("^f"), PropertyList("moveForward:"));
    EXPECT_EQ(d.at("\xEF\x9C\x80"), PropertyList("moveUp:")) << "U+F700, the up arrow's key";
    EXPECT_EQ(d.at("~\x7F"), PropertyList(PropertyList::Array{"deleteWordBackward:", "yank:"}));
    EXPECT_EQ(*d.at("^x").dictionary()->at("^c").string(), "terminate:");
    EXPECT_EQ(d.at("tab\there"), PropertyList("quote \" and backslash \\"));
    EXPECT_EQ(d.at("AB"), PropertyList(PropertyList::Data{0x0f, 0xbd, 0x0a}));
    EXPECT_EQ(d.at("\xF0\x9F\x98\x80"), PropertyList(PropertyList::Array{}))
        << "a surrogate pair becomes one character";
}

TEST(TextPropertyList, GivesNothingForDamagedText) {
    const char* damaged[] = {
        "",
        "{",
        "{ \"a\" = \"b\"",
        "{ \"a\" = ; }",
        "{ \"a\" \"b\"; }",
        "{ = \"b\"; }",
        "( \"a\" \"b\" )",
        "( \"a\", , )",
        "\"unterminated",
        "<0f1>",
        "<0g>",
        "{ \"a\" = \"b\"; } trailing",
        "/* open comment { }",
        "\"\\U\"",
        "{ \"a\" = \"b\" \"c\" = \"d\"; }",
        "}",
    };
    for (const char* text : damaged)
        EXPECT_FALSE(SRReadTextPropertyList(text)) << text;
    EXPECT_FALSE(SRReadTextPropertyList(std::string(100000, '(')))
        << "nesting beyond any real file";
    EXPECT_TRUE(SRReadTextPropertyList(std::string(200, '(') + std::string(200, ')')));
}

TEST(TextPropertyList, AcceptsTheLooseEndsEditorsLeave) {
    EXPECT_TRUE(SRReadTextPropertyList("\xEF\xBB\xBF{ a = b }")) << "byte order mark, no last ;";
    EXPECT_EQ(SRReadTextPropertyList("{ \"a\" = \"\xFF\"; }")->dictionary()->at("a"),
              PropertyList("\xEF\xBF\xBD"))
        << "bytes that aren't UTF-8 read as the replacement character";
    EXPECT_EQ(*SRReadTextPropertyList("\"\\UD83D\"")->string(), "\xEF\xBF\xBD")
        << "a lone surrogate too";
}

TEST(TextPropertyList, TheOtherFormsGoThroughTheCodec) {
    const PropertyList value(PropertyList::Dictionary{{"^a", "selectAll:"}});
    const auto binary = platform::PropertyListCodec::encodeBinary(value);
    EXPECT_EQ(SRReadPropertyList(std::string(binary.begin(), binary.end())), value);
    EXPECT_EQ(SRReadPropertyList(platform::PropertyListCodec::encodeXML(value)), value);
    EXPECT_FALSE(SRReadPropertyList("bplist00 but broken"));
}

}  // namespace
}  // namespace lirixkro
