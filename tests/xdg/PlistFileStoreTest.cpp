#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <random>
#include <string>
#include <thread>

#include "platform/PropertyListCodec.h"
#include "platform/sim/SimMainLoop.h"
#include "platform/xdg/PlistFileStore.h"
#include "support/ScopedEnvironment.h"
#include "support/StandardOutput.h"
#include "xdg/PlistFileStoreFixture.h"

using platform::PropertyList;
using platform::PropertyListCodec;
using platform::sim::SimMainLoop;
using platform::xdg::PlistFileStore;
namespace fs = std::filesystem;

using platform::xdg::fixtures::PlistFileStoreTest;

namespace {

PropertyList::Dictionary everyKind() {
    using namespace std::chrono;
    return {
        {"text", "Grüße ⌘"},
        {"data", PropertyList::Data{0, 1, 254, 255}},
        {"yes", true},
        {"negative", -42},
        {"unsigned", 917504u},
        {"large", std::int64_t{1} << 40},
        {"real", 2.5},
        {"date", PropertyList::Date(seconds(1'700'000'000) + microseconds(250'000))},
        {"array", PropertyList::Array{"a", 1, PropertyList::Array{}}},
        {"nested", PropertyList::Dictionary{{"inner", PropertyList::Dictionary{{"x", false}}}}},
    };
}

// A file whose one text holds a byte that can't be UTF-8.
std::string fileWithTextThatIsNotUTF8() {
    const auto bytes = PropertyListCodec::encodeBinary(PropertyList::Dictionary{{"k", "ab"}});
    std::string text(bytes.begin(), bytes.end());
    const std::string marker = "Rab";  // an ASCII text object of two bytes
    text[text.find(marker) + 2] = '\x82';
    return text;
}

}  // namespace

TEST_F(PlistFileStoreTest, EveryKindOfValueSurvivesAReopenInAPrivateBinaryFile) {
    {
        PlistFileStore store(path, loop);
        for (const auto& [key, value] : everyKind())
            store.setObject(key, value);
        store.setObject("removed", 1);
        store.removeObject("removed");
    }
    PlistFileStore reopened(path, loop);
    EXPECT_EQ(reopened.dictionaryRepresentation(), everyKind());
    EXPECT_EQ(tree.read(path).substr(0, 8), "bplist00");
    struct stat status {};
    ASSERT_EQ(::stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600u);
    EXPECT_EQ(std::distance(fs::directory_iterator(path.parent_path()), fs::directory_iterator()),
              1);  // no temporary file left behind
}

TEST_F(PlistFileStoreTest, ADamagedFileIsKeptAsideAndTheStoreStartsEmpty) {
    const auto array = PropertyListCodec::encodeBinary(PropertyList::Array{"not", "a dictionary"});
    auto truncated = PropertyListCodec::encodeBinary(everyKind());
    truncated.resize(truncated.size() / 2);
    const std::string damages[] = {"garbage \x01\x02", std::string(array.begin(), array.end()),
                                   std::string(truncated.begin(), truncated.end()), "",
                                   fileWithTextThatIsNotUTF8()};
    for (const auto& damaged : damages) {
        tree.write(path, damaged);
        quillbox::CapturedOutput output;
        PlistFileStore store(path, loop);

        EXPECT_TRUE(store.dictionaryRepresentation().empty());
        const auto aside = damagedFiles();
        ASSERT_EQ(aside.size(), 1u);
        EXPECT_EQ(tree.read(aside[0]), damaged);
        ASSERT_EQ(output.lines().size(), 1u);
        EXPECT_NE(output.lines()[0].find(aside[0].string()), std::string::npos);

        store.setObject("fresh", true);  // writes a new file, the damaged one stays
        EXPECT_EQ(tree.read(aside[0]), damaged);
        EXPECT_TRUE(PlistFileStore::parse(tree.read(path)));
        fs::remove(aside[0]);
    }
}

TEST_F(PlistFileStoreTest, AWriterKilledMidWriteAlwaysLeavesAReadableFile) {
    {
        PlistFileStore store(path, loop);
        store.setObject("seed", "kept");
    }
    std::mt19937 random(std::random_device{}());
    for (int round = 0; round < 6; ++round) {
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            SimMainLoop childLoop;
            PlistFileStore store(path, childLoop);
            PropertyList::Data large(std::size_t{3} << 20);
            for (std::uint8_t fill = 0;; ++fill) {
                std::fill(large.begin(), large.end(), fill);
                store.setObject("large", large);
                childLoop.runUntilIdle();
            }
        }
        std::this_thread::sleep_for(
            std::chrono::milliseconds(std::uniform_int_distribution(5, 80)(random)));
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);

        const auto values = PlistFileStore::parse(tree.read(path));
        ASSERT_TRUE(values) << "round " << round;
        EXPECT_EQ(values->at("seed"), PropertyList("kept"));
    }
    quillbox::CapturedOutput output;
    PlistFileStore reopened(path, loop);
    EXPECT_TRUE(output.lines().empty());
    EXPECT_TRUE(damagedFiles().empty());
}

TEST_F(PlistFileStoreTest, OwnWritesAreAnnouncedOnceAndOutsideChangesReadBackOnTheLoop) {
    PlistFileStore store(path, loop);
    int changes = 0;
    auto subscription = store.observeChanges([&] { ++changes; });
    store.setObject("a", 1);
    store.setObject("b", 2);
    EXPECT_EQ(changes, 0);
    // Give the folder watch every chance to report our own writes as outside ones.
    EXPECT_FALSE(loop.runUntil([&] { return changes > 2; }, 0.3));
    ASSERT_EQ(changes, 2);

    replaceFromOutside({{"channel", "staging"}});
    ASSERT_TRUE(loop.runUntil([&] { return changes == 3; }));
    EXPECT_EQ(store.objectForKey("channel"), PropertyList("staging"));

    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        SimMainLoop childLoop;
        PlistFileStore other(path, childLoop);
        other.setObject("fromAnotherProcess", 7);
        ::_exit(0);
    }
    ::waitpid(child, nullptr, 0);
    ASSERT_TRUE(loop.runUntil([&] { return changes == 4; }));
    EXPECT_EQ(store.objectForKey("fromAnotherProcess"), PropertyList(7));
    EXPECT_EQ(store.objectForKey("channel"), PropertyList("staging"));

    fs::remove(path);
    ASSERT_TRUE(loop.runUntil([&] { return changes == 5; }));
    EXPECT_TRUE(store.dictionaryRepresentation().empty());
}

TEST_F(PlistFileStoreTest, ADamagedOutsideWriteIsKeptAsideAndTheLoadedValuesStay) {
    PlistFileStore store(path, loop);
    store.setObject("kept", true);
    quillbox::CapturedOutput output;
    tree.write(path, "<plist><dict><key>broken");
    ASSERT_TRUE(loop.runUntil([&] { return !damagedFiles().empty(); }));
    EXPECT_EQ(output.lines().size(), 1u);
    EXPECT_EQ(store.objectForKey("kept"), PropertyList(true));
    EXPECT_EQ(PlistFileStore::parse(tree.read(path)), store.dictionaryRepresentation());
}

TEST(PlistFileStorePath, FollowsTheConfigHomeAndFallsBackToDotConfig) {
    testsupport::ScopedEnvironment environment;
    environment.set("XDG_CONFIG_HOME", "/custom/config");
    EXPECT_EQ(PlistFileStore::defaultPath("org.example.App"),
              fs::path("/custom/config/tarnwick/org.example.App.plist"));
    environment.set("XDG_CONFIG_HOME", "relative/is/ignored");
    EXPECT_EQ(PlistFileStore::defaultPath("org.example.App"),
              fs::path(std::getenv("HOME")) / ".config/tarnwick/org.example.App.plist");
}
