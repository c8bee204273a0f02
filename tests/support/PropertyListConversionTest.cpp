#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "support/PropertyListConversion.h"

using platform::PropertyList;
using quillbox::fromPropertyList;
using quillbox::toPropertyList;

TEST(PropertyListConversion, ScalarsConvertOnlyWithinTheirRangeAndKind) {
    constexpr auto largest = std::numeric_limits<std::uint64_t>::max();
    EXPECT_EQ(fromPropertyList<std::int8_t>(PropertyList(-128)), std::int8_t{-128});
    EXPECT_EQ(fromPropertyList<std::int8_t>(PropertyList(128)), std::nullopt);
    EXPECT_EQ(fromPropertyList<std::uint16_t>(PropertyList(65536)), std::nullopt);
    EXPECT_EQ(fromPropertyList<std::uint64_t>(PropertyList(-1)), std::nullopt);
    EXPECT_EQ(fromPropertyList<std::int64_t>(PropertyList(largest)), std::nullopt);
    EXPECT_EQ(fromPropertyList<std::uint64_t>(PropertyList(largest)), largest);
    // Unsigned values stay unsigned in the store.
    EXPECT_TRUE(toPropertyList(std::uint32_t{7})->is<std::uint64_t>());
    EXPECT_TRUE(toPropertyList(std::int32_t{7})->is<std::int64_t>());

    EXPECT_EQ(fromPropertyList<std::int64_t>(PropertyList(true)), std::nullopt);
    EXPECT_EQ(fromPropertyList<bool>(PropertyList(1)), std::nullopt);
    EXPECT_EQ(fromPropertyList<std::string>(PropertyList(PropertyList::Data{0x41})), std::nullopt);
    EXPECT_EQ(fromPropertyList<double>(PropertyList("1.5")), std::nullopt);
    EXPECT_EQ(fromPropertyList<float>(PropertyList(1e300)), std::nullopt);
    EXPECT_EQ(fromPropertyList<double>(PropertyList(3)), 3.0);  // numbers convert among themselves
}

TEST(PropertyListConversion, ContainersAndOptionalsConvertOnlyWhenEveryElementDoes) {
    using Table = std::map<std::string, std::vector<std::int64_t>>;
    const Table table{{"a", {1, 2}}, {"b", {}}};
    EXPECT_EQ(fromPropertyList<Table>(*toPropertyList(table)), table);
    const PropertyList mixed = PropertyList::Dictionary{{"a", PropertyList::Array{1, "two"}}};
    EXPECT_EQ(fromPropertyList<Table>(mixed), std::nullopt);
    EXPECT_EQ(fromPropertyList<std::vector<std::string>>(PropertyList::Dictionary{}), std::nullopt);

    // Absent optionals have no stored form.
    EXPECT_EQ(toPropertyList(std::optional<int>()), std::nullopt);
    const std::vector<std::optional<std::string>> holes{"a", std::nullopt, "b"};
    EXPECT_EQ(toPropertyList(holes), PropertyList(PropertyList::Array{"a", "b"}));
    EXPECT_EQ(fromPropertyList<std::optional<int>>(PropertyList("x")), std::nullopt);
}
