#include <gtest/gtest.h>

#include <string>

#include "platform/DeepPropertyLists.h"
#include "platform/PropertyListCodec.h"
#include "platform/PropertyListNesting.h"

using platform::PropertyList;
using platform::PropertyListCodec;

namespace {

PropertyList everyKind() {
    using namespace std::chrono;
    PropertyList::Dictionary dict;
    dict["text"] = "Grüße ⌘";
    dict["data"] = PropertyList::Data{0, 1, 2, 255};
    dict["yes"] = true;
    dict["no"] = false;
    dict["negative"] = -42;
    dict["unsigned"] = 917504u;
    dict["large"] = static_cast<unsigned long long>(1) << 40;
    dict["real"] = 2.5;
    dict["date"] = PropertyList::Date(seconds(1'700'000'000));  // XML keeps whole seconds
    dict["array"] = PropertyList::Array{"a", 1, PropertyList::Array{}};
    dict["nested"] = PropertyList::Dictionary{{"inner", PropertyList::Dictionary{}}};
    return dict;
}

}  // namespace

TEST(PropertyListCodec, BothFormsRoundTripEveryKindOfValue) {
    const auto original = everyKind();
    const auto binary = PropertyListCodec::encodeBinary(original);
    for (const auto& decoded :
         {PropertyListCodec::decode(binary),
          PropertyListCodec::decode(PropertyListCodec::encodeXML(original))}) {
        ASSERT_TRUE(decoded);
        EXPECT_EQ(*decoded, original) << decoded->debugDescription();
    }
    using namespace std::chrono;
    PropertyList date = PropertyList::Date(seconds(1'700'000'000) + microseconds(250'000));
    EXPECT_EQ(PropertyListCodec::decode(PropertyListCodec::encodeBinary(date)), date)
        << "binary dates keep fractions of a second";
    // Text that isn't UTF-8 is written so that it reads back.
    const PropertyList damagedText =
        PropertyList::Dictionary{{"title", "caf\xE9 \xF0\x9F\x93\x81"}};
    EXPECT_EQ(PropertyListCodec::decode(PropertyListCodec::encodeBinary(damagedText)),
              PropertyList(PropertyList::Dictionary{{"title", "caf\uFFFD \U0001F4C1"}}));
}

TEST(PropertyListCodec, DamagedInputDecodesToNothing) {
    EXPECT_FALSE(PropertyListCodec::decode(std::string_view("")));
    EXPECT_FALSE(PropertyListCodec::decode(std::string_view("not a property list")));
    auto bytes = PropertyListCodec::encodeBinary(everyKind());
    bytes.resize(bytes.size() / 2);
    EXPECT_FALSE(PropertyListCodec::decode(bytes));
}

// The library under the codec recurses once per level; this deep, it ran out
// of stack before any check of ours.
TEST(PropertyListCodec, InputNestedDeeperThanAListMayBeIsRefusedUnread) {
    using namespace platform::fixtures;
    constexpr auto deepest = platform::PropertyListNesting::deepestAllowed - 1;  // below the dict
    for (const auto& [depth, decodes] :
         {std::pair{deepest, true}, {deepest + 1, false}, {std::size_t{50'000}, false}}) {
        EXPECT_EQ(PropertyListCodec::decode(deepXMLPropertyList(depth)).has_value(), decodes)
            << depth << " deep, XML";
        EXPECT_EQ(PropertyListCodec::decode(deepBinaryPropertyList(depth)).has_value(), decodes)
            << depth << " deep, binary";
    }
    EXPECT_FALSE(PropertyListCodec::decode(deepBinaryPropertyList(3, /*cyclic=*/true)));
}

TEST(PropertyListNesting, CountsWhatAReaderWouldNestAndNothingElse) {
    using platform::PropertyListNesting;
    // Closing tags hidden where no reader sees them don't hide depth.
    const std::string hidden =
        "<plist><array><!-- </array> --><array x=\"</array>\">"
        "<![CDATA[</array>]]><array><string>x</string></array></array></array>"
        "</plist>";
    EXPECT_TRUE(PropertyListNesting::xmlWithinLimit(hidden, 3));
    EXPECT_FALSE(PropertyListNesting::xmlWithinLimit(hidden, 2));
    // Many siblings are wide, not deep; a value shared by many parents is
    // measured once.
    PropertyList::Array wide(10'000, PropertyList::Array{PropertyList::Array{"x"}});
    const auto bytes = PropertyListCodec::encodeBinary(wide);
    const std::string_view binary(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    EXPECT_TRUE(PropertyListNesting::binaryWithinLimit(binary, 3));
    EXPECT_FALSE(PropertyListNesting::binaryWithinLimit(binary, 2));
    EXPECT_TRUE(PropertyListNesting::xmlWithinLimit(PropertyListCodec::encodeXML(wide), 3));
    EXPECT_FALSE(PropertyListNesting::xmlWithinLimit(PropertyListCodec::encodeXML(wide), 2));
}

TEST(PropertyList, IntegersCompareByValueWhateverTheirSignedness) {
    EXPECT_EQ(PropertyList(5), PropertyList(5u));
    EXPECT_NE(PropertyList(-1), PropertyList(static_cast<unsigned long long>(-1)));
    EXPECT_NE(PropertyList(1), PropertyList(1.0));
    EXPECT_EQ(PropertyList(7u).signedInteger(), 7);
    EXPECT_FALSE(PropertyList(-7).unsignedInteger());
}
