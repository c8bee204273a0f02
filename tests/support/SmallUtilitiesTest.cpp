#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "support/Censor.h"
#include "support/ScanningIterator.h"
#include "support/Sortifier.h"

using quillbox::Censor;
using quillbox::ScanningIterator;
using quillbox::Sortifier;

namespace {

struct CensorCase {
    std::string text;
    Censor::Level level;
    std::string expected;
};

using L = Censor::Level;

const CensorCase censorCases[] = {
    {"password", L::complete, "***"},
    {"", L::complete, "***"},
    {"password", L::allowCharCount, "********"},
    {"", L::allowCharCount, ""},
    {"h\xC3\xA9", L::allowCharCount, "**"},
    {"abcd", L::firstAndLastRevealedNoCharCount, "***"},
    {"abcde", L::firstAndLastRevealedNoCharCount, "a***e"},
    {"password", L::firstAndLastRevealedNoCharCount, "p***d"},
    {"abcd", L::firstAndLastRevealedAndCharCount, "***"},
    {"abcde", L::firstAndLastRevealedAndCharCount, "a***e"},
    {"password", L::firstAndLastRevealedAndCharCount, "p******d"},
    // The revealed ends are whole characters, the count is of characters.
    {"\xC3\xA9t\xC3\xA9s\xE2\x82\xAC", L::firstAndLastRevealedAndCharCount,
     "\xC3\xA9***\xE2\x82\xAC"},
};

// Equal ranks fall back on the name, in reverse.
struct Item {
    std::string name;
    bool tiebreaksBefore(const Item& other) const { return name > other.name; }
    friend bool operator==(const Item&, const Item&) = default;
};

}  // namespace

template <>
struct quillbox::Coding<Item> {
    static platform::PropertyList encode(const Item& item) { return item.name; }
    static Item decode(const platform::PropertyList& list) {
        if (!list.string())
            throw DecodingError("not a name");
        return Item{*list.string()};
    }
};

TEST(Censor, MasksAtEachLevel) {
    for (const auto& c : censorCases) {
        const Censor censor(c.text, c.level);
        EXPECT_EQ(censor.description(), c.expected)
            << "\"" << c.text << "\" at level " << static_cast<int>(c.level);
        EXPECT_EQ(censor.debugDescription(), c.expected);
    }
    EXPECT_EQ(Censor("secret").description(), "***");
}

TEST(Sortifier, OrdersByRankThenByTheTiebreaker) {
    std::vector<Sortifier<Item>> items{
        {Item{"b"}, 2}, {Item{"a"}, 1}, {Item{"c"}, 1}, {Item{"d"}, -1}};
    std::sort(items.begin(), items.end());
    std::vector<std::string> names;
    for (const auto& item : items)
        names.push_back(item->name);
    EXPECT_EQ(names, (std::vector<std::string>{"d", "c", "a", "b"}));

    EXPECT_EQ((Sortifier<Item>{Item{"a"}, 1}), (Sortifier<Item>{Item{"a"}, 1}));
    EXPECT_NE((Sortifier<Item>{Item{"a"}, 1}), (Sortifier<Item>{Item{"a"}, 2}));
    EXPECT_TRUE((Sortifier<Item>{Item{"a"}, 1} == Item{"a"}));
    EXPECT_FALSE((Sortifier<Item>{Item{"a"}, 1} == Item{"b"}));
}

TEST(Sortifier, DecodesWithTheStoredRankOrOneTheConfigurationGives) {
    using Sorted = Sortifier<Item>;
    const Sorted stored{Item{"kept"}, 3.5};
    const auto list = quillbox::Coding<Sorted>::encode(stored);
    EXPECT_EQ(quillbox::Coding<Sorted>::decode(list), stored);

    const platform::PropertyList unranked = platform::PropertyList::Dictionary{{"wrapped", "four"}};
    EXPECT_THROW(quillbox::Coding<Sorted>::decode(unranked), quillbox::DecodingError);
    const Sorted::DecodingConfiguration byLength(
        [](const Item& item) { return static_cast<double>(item.name.size()); });
    EXPECT_EQ(Sorted::decode(unranked, byLength).sortingValue(), 4);
    EXPECT_EQ(Sorted::decode(unranked, Sorted::DecodingConfiguration::defaultSortingValue(-1))
                  .sortingValue(),
              -1);
    // A stored rank wins over the configuration.
    EXPECT_EQ(Sorted::decode(list, byLength).sortingValue(), 3.5);
}

TEST(ScanningIterator, PeeksAndScansBothWaysAndAnswersNothingPastTheEnds) {
    ScanningIterator<std::string_view> scanner("ab");
    EXPECT_FALSE(scanner.peekPrevious());
    EXPECT_FALSE(scanner.scanPrevious());
    EXPECT_EQ(scanner.peek(), 'a');
    EXPECT_EQ(scanner.index(), 0u);
    EXPECT_EQ(scanner.scan(), 'a');
    EXPECT_EQ(scanner.peekPrevious(), 'a');
    EXPECT_EQ(scanner.scan(), 'b');
    EXPECT_TRUE(scanner.isAtEnd());
    EXPECT_FALSE(scanner.peek());
    EXPECT_FALSE(scanner.scan());
    EXPECT_EQ(scanner.index(), 2u);
    EXPECT_EQ(scanner.scanPrevious(), 'b');
    EXPECT_EQ(scanner.index(), 1u);
    EXPECT_FALSE(scanner.isAtEnd());

    ScanningIterator<std::vector<int>> empty({});
    EXPECT_TRUE(empty.isAtEnd());
    EXPECT_FALSE(empty.scan());
    EXPECT_TRUE(empty.scanUpTo(0).empty());
}

TEST(ScanningIterator, ScansRunsUpToAConditionAndStopsOnIt) {
    ScanningIterator<std::string> scanner(std::string("key=value;next"));
    EXPECT_EQ(scanner.scanUpTo('='), "key");
    EXPECT_EQ(scanner.peek(), '=');
    EXPECT_EQ(scanner.scanUpTo('='), "");
    scanner.scan();
    EXPECT_EQ(scanner.scanUpTo([](char c) { return c == ';' || c == ','; }), "value");
    scanner.scan();
    EXPECT_EQ(scanner.scanUpTo('!'), "next");
    EXPECT_TRUE(scanner.isAtEnd());

    ScanningIterator<std::vector<int>> numbers({1, 2, 3, 0, 4});
    EXPECT_EQ(numbers.scanUpTo([](int n) { return n == 0; }), (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(numbers.index(), 3u);
}
