#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/update/VersionComparator.h"

using platform::update::compareVersions;

namespace {

// Each version is older than the next.
void expectAscending(const std::vector<std::string>& versions) {
    for (std::size_t i = 0; i + 1 < versions.size(); ++i) {
        EXPECT_EQ(compareVersions(versions[i], versions[i + 1]), std::strong_ordering::less)
            << versions[i] << " < " << versions[i + 1];
        EXPECT_EQ(compareVersions(versions[i + 1], versions[i]), std::strong_ordering::greater)
            << versions[i + 1] << " > " << versions[i];
    }
}

}  // namespace

TEST(VersionComparatorTest, ReleasesOrderByTheirNumberedComponents) {
    expectAscending({"1.0", "1.0.1", "1.1", "1.2", "1.10", "2", "10.0"});
    // Numbers are numbers, however long and with whatever leading zeros.
    expectAscending({"9", "10", "99999999999999999999", "100000000000000000000"});
    EXPECT_EQ(compareVersions("1.02", "1.2"), std::strong_ordering::equal);
    EXPECT_EQ(compareVersions("1.0", "1.0"), std::strong_ordering::equal);
    EXPECT_EQ(compareVersions("", ""), std::strong_ordering::equal);
}

TEST(VersionComparatorTest, TextAfterANumberMarksAPreRelease) {
    expectAscending({"1.0a1", "1.0a2", "1.0b1", "1.0b2", "1.0b10", "1.0rc1", "1.0", "1.0.1"});
    // A pre-release of the next version is newer than the last release.
    expectAscending({"1.0", "1.1b1", "1.1"});
    // Where one version has text and the other a number or a separator, the
    // text is the older.
    EXPECT_EQ(compareVersions("1.0b", "1.0.1"), std::strong_ordering::less);
    EXPECT_EQ(compareVersions("1.0.1", "1.0b"), std::strong_ordering::greater);
    EXPECT_EQ(compareVersions("1.0b", "1.01"), std::strong_ordering::less);
}

TEST(VersionComparatorTest, BuildNumbersAndOddFormsStillOrder) {
    expectAscending({"1", "2", "12", "100"});
    // A number against a stray separator: the number is the newer.
    EXPECT_EQ(compareVersions("1.5", "1..5"), std::strong_ordering::greater);
    EXPECT_EQ(compareVersions("1..5", "1.5"), std::strong_ordering::less);
    // Anything at all compares without throwing: text against text.
    EXPECT_EQ(compareVersions("beta", "alpha"), std::strong_ordering::greater);
    EXPECT_EQ(compareVersions("", "1"), std::strong_ordering::less);
}
