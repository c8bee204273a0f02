#include <gtest/gtest.h>

#include <unordered_set>

#include "platform/PropertyListCodec.h"
#include "shortcuts/SRShortcut.h"
#include "shortcuts/ShortcutTestSupport.h"

namespace lirixkro {
namespace {

using platform::PropertyList;
using SelfCodable = SRShortcut::SelfCodable;

class SelfCodableTest : public testing::ShortcutTest {
  protected:
    quillbox::PropertyListEncoder encoder;
    quillbox::PropertyListDecoder decoder;

    SelfCodable decodeList(const PropertyList& list) {
        return decoder.decode<SelfCodable>(platform::PropertyListCodec::encodeBinary(list));
    }
};

TEST_F(SelfCodableTest, AnAbsentTextEqualsOnlyAnAbsentTextAndShortcutsConvertKeepingTexts) {
    const SelfCodable none{0, SRCommandFlag, "a", std::nullopt};
    const SelfCodable empty{0, SRCommandFlag, "a", ""};
    EXPECT_NE(none, empty);
    EXPECT_NE(none.hashValue(), empty.hashValue());
    EXPECT_EQ(none, (SelfCodable{0, SRCommandFlag, "a", std::nullopt}));
    EXPECT_NE(none, (SelfCodable{0, SRShiftFlag, "a", std::nullopt}));

    // Fields are hashed in order: swapping the texts changes the hash.
    EXPECT_NE((SelfCodable{0, 0, "a", "b"}).hashValue(), (SelfCodable{0, 0, "b", "a"}).hashValue());
    std::unordered_set<SelfCodable> set = {none, empty, none};
    EXPECT_EQ(set.size(), 2u);

    auto shortcut = SRShortcut::shortcutWithCode(40, SRCommandFlag, "k", "k");
    const auto stored = SelfCodable::fromShortcut(*shortcut);
    EXPECT_EQ(stored, (SelfCodable{40, SRCommandFlag, "k", "k"}));
    auto back = stored.toShortcut();
    EXPECT_EQ(*back, *shortcut);
    EXPECT_EQ(back->characters(), "k");
}

TEST_F(SelfCodableTest, TheDefaultChordIsStoredAsTwoUnsignedIntegers) {
    auto chord = SRShortcut::shortcutWithKeyEquivalent("⌃⌥⇧");
    ASSERT_TRUE(chord);
    const auto bytes = encoder.encode(SelfCodable::fromShortcut(*chord));
    ASSERT_GE(bytes.size(), 8u);
    EXPECT_EQ(std::string(bytes.begin(), bytes.begin() + 8), "bplist00");

    const auto list = platform::PropertyListCodec::decode(bytes);
    ASSERT_TRUE(list);
    const PropertyList::Dictionary expected = {{"keyCode", 65535u}, {"modifierFlags", 917504u}};
    ASSERT_TRUE(list->dictionary());
    EXPECT_EQ(*list->dictionary(), expected);

    EXPECT_EQ(decoder.decode<SelfCodable>(bytes), (SelfCodable{65535, 0xE0000, {}, {}}));
}

TEST_F(SelfCodableTest, TextsAreWrittenOnlyWhenPresentAndUnknownKeysAreIgnored) {
    const SelfCodable value{0, SRCommandFlag, "a", ""};
    const auto list = quillbox::Coding<SelfCodable>::encode(value);
    EXPECT_EQ(list.dictionary()->size(), 4u);
    EXPECT_EQ(decoder.decode<SelfCodable>(encoder.encode(value)), value);

    PropertyList::Dictionary extra = {
        {"keyCode", 0u}, {"modifierFlags", 0x100000u}, {"colour", "blue"}};
    EXPECT_EQ(decodeList(extra), (SelfCodable{0, SRCommandFlag, {}, {}}));
    // A signed integer of the platform's reading is as good as an unsigned one.
    EXPECT_EQ(decodeList(PropertyList::Dictionary{{"keyCode", 3}, {"modifierFlags", 0}}).keyCode,
              3);
}

TEST_F(SelfCodableTest, DamagedDataIsADecodingError) {
    const std::vector<std::pair<std::string, PropertyList>> damaged = {
        {"not a dictionary", PropertyList::Array{}},
        {"no key code", PropertyList::Dictionary{{"modifierFlags", 0u}}},
        {"no flags", PropertyList::Dictionary{{"keyCode", 0u}}},
        {"text key code", PropertyList::Dictionary{{"keyCode", "0"}, {"modifierFlags", 0u}}},
        {"negative", PropertyList::Dictionary{{"keyCode", -1}, {"modifierFlags", 0u}}},
        {"too large", PropertyList::Dictionary{{"keyCode", 65536u}, {"modifierFlags", 0u}}},
        {"real flags", PropertyList::Dictionary{{"keyCode", 0u}, {"modifierFlags", 1.5}}},
        {"number text",
         PropertyList::Dictionary{{"keyCode", 0u}, {"modifierFlags", 0u}, {"characters", 1}}},
    };
    for (const auto& [name, list] : damaged) {
        EXPECT_THROW(decodeList(list), quillbox::DecodingError) << name;
    }
    try {
        decodeList(PropertyList::Dictionary{{"modifierFlags", 0u}});
    } catch (const quillbox::DecodingError& error) {
        EXPECT_STREQ(error.what(), "The stored shortcut has no \"keyCode\" entry.");
    }

    auto bytes = encoder.encode(SelfCodable{0, 0, "a", "a"});
    bytes.resize(bytes.size() - 5);
    EXPECT_THROW(decoder.decode<SelfCodable>(bytes), quillbox::DecodingError);
    EXPECT_THROW(decoder.decode<SelfCodable>({}), quillbox::DecodingError);
}

}  // namespace
}  // namespace lirixkro
