#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "support/PersistentHasher.h"

using quillbox::PersistentDigest;
using quillbox::PersistentHasher;
using quillbox::persistentHashValue;

namespace {

struct Sample {
    std::int64_t id;
    std::optional<std::string> name;
    double weight;
    bool active;

    void hashPersistently(PersistentHasher& into) const {
        into.update(id);
        into.update(name);
        into.update(weight);
        into.update(active);
    }
};

const Sample sample{-42, std::string("Zoë"), 0.1, true};

std::string digestOfBytes(std::vector<std::uint8_t> bytes) {
    PersistentHasher hasher;
    hasher.update(bytes);
    return hasher.finalize().hexString();
}

// The child half of the test: started with the variable below, the test
// binary prints the sample's digest and ends before any test runs.
const bool childPrintedDigest = [] {
    if (!std::getenv("PERSISTENT_HASH_CHILD"))
        return false;
    std::printf("digest %s\n", persistentHashValue(sample).hexString().c_str());
    std::fflush(stdout);
    std::_Exit(0);
}();

// The digest the same test binary prints when started anew, in a process of
// its own.
std::string digestFromChildProcess() {
    const auto self = std::filesystem::read_symlink("/proc/self/exe");
    const std::string command = "PERSISTENT_HASH_CHILD=1 '" + self.string() + "'";
    FILE* child = popen(command.c_str(), "r");
    if (!child)
        return {};
    std::string digest;
    char line[256];
    while (std::fgets(line, sizeof line, child)) {
        const std::string text(line);
        if (text.rfind("digest ", 0) == 0)
            digest = text.substr(7, 32);
    }
    pclose(child);
    return digest;
}

}  // namespace

TEST(PersistentHasher, IsMD5OfTheBytesFoldedIn) {
    EXPECT_EQ(PersistentHasher().finalize().hexString(), "d41d8cd98f00b204e9800998ecf8427e");
    EXPECT_EQ(persistentHashValue("abc").hexString(), "900150983cd24fb0d6963f7d28e17f72");
    PersistentHasher pieces;
    pieces.update("a");
    pieces.update(std::string("b"));
    pieces.update(std::string_view("c"));
    EXPECT_EQ(pieces.finalize(), persistentHashValue("abc"));
    EXPECT_EQ(PersistentDigest::byteCount, 16u);
    EXPECT_EQ(PersistentHasher::blockByteCount, 64u);
}

TEST(PersistentHasher, FoldsNumbersLittleEndianByWidthAndBitPattern) {
    EXPECT_EQ(persistentHashValue(std::uint32_t{0x01020304}).hexString(),
              digestOfBytes({0x04, 0x03, 0x02, 0x01}));
    EXPECT_EQ(persistentHashValue(std::int16_t{-2}).hexString(), digestOfBytes({0xFE, 0xFF}));
    EXPECT_NE(persistentHashValue(std::int32_t{1}), persistentHashValue(std::int64_t{1}));
    EXPECT_EQ(persistentHashValue(1.0).hexString(), digestOfBytes({0, 0, 0, 0, 0, 0, 0xF0, 0x3F}));
    EXPECT_EQ(persistentHashValue(1.0f).hexString(), digestOfBytes({0, 0, 0x80, 0x3F}));
    EXPECT_NE(persistentHashValue(0.0), persistentHashValue(-0.0));
    EXPECT_EQ(persistentHashValue(true).hexString(), digestOfBytes({1}));
    EXPECT_EQ(persistentHashValue(false).hexString(), digestOfBytes({0}));
}

TEST(PersistentHasher, FoldsNothingForAnAbsentOptionalAndDatesAsTheirReferenceInterval) {
    PersistentHasher withNil;
    withNil.update(std::int8_t{7});
    withNil.update(std::optional<double>());
    PersistentHasher without;
    without.update(std::int8_t{7});
    EXPECT_EQ(withNil.finalize(), without.finalize());
    EXPECT_EQ(persistentHashValue(std::optional<int>(3)), persistentHashValue(3));

    // 2001-01-01 00:00:10 UTC is ten seconds after the reference date.
    const PersistentHasher::Date date{std::chrono::seconds(978307210)};
    EXPECT_EQ(persistentHashValue(date), persistentHashValue(10.0));
}

TEST(PersistentHasher, ACopyGoesOnFromTheSameState) {
    PersistentHasher first;
    first.update("shared prefix");
    PersistentHasher second = first;
    PersistentHasher assigned;
    assigned = first;
    first.update(1);
    second.update(2);
    assigned.update(1);
    const auto firstDigest = first.finalize();
    EXPECT_NE(firstDigest, second.finalize());
    EXPECT_EQ(firstDigest, assigned.finalize());

    std::unordered_set<PersistentDigest> digests{persistentHashValue(1), persistentHashValue(1),
                                                 persistentHashValue(2)};
    EXPECT_EQ(digests.size(), 2u);
}

TEST(PersistentHasher, GivesTheSameDigestInAnotherProcess) {
    const auto digest = digestFromChildProcess();
    ASSERT_EQ(digest.size(), 32u) << "the child printed no digest";
    EXPECT_EQ(digest, persistentHashValue(sample).hexString());
}
