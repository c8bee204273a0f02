// The preference file of a first start and of the starts after it: the
// default chord is written once, as a binary property list of its key code
// and flags, and never written again, also after the user removed it.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <string>

#include "PreferenceFile.h"
#include "RunningProgram.h"
#include "platform/PropertyListCodec.h"

using platform::PropertyList;
using platform::PropertyListCodec;

namespace {

class FirstStartPreferencesTest : public ::testing::Test {
  protected:
    std::string file() const { return folders.preferenceFile(); }

    // Starts the program, waits until it runs, and stops it.
    void startAndStop() {
        e2e::RunningProgram tarnwick(e2e::tarnwickExecutable(), {});
        ASSERT_TRUE(tarnwick.waitUntilHandling(SIGTERM, 20)) << tarnwick.standardError();
        tarnwick.sendSignal(SIGTERM);
        ASSERT_EQ(tarnwick.waitForExit(10), (e2e::ExitStatus{true, 0}));
    }

    PropertyList::Dictionary read() const { return e2e::readPreferenceFile(file()); }

    void write(const PropertyList::Dictionary& dictionary) const {
        e2e::writePreferenceFile(file(), dictionary);
    }

    e2e::PrivateFolders folders;
};

}  // namespace

TEST_F(FirstStartPreferencesTest, TheChordIsStoredOnceAndARemovedOneStaysRemoved) {
    startAndStop();
    auto stored = read();
    ASSERT_TRUE(stored.count("activationShortcut")) << PropertyList(stored).debugDescription();
    const auto* data = stored["activationShortcut"].get<PropertyList::Data>();
    ASSERT_TRUE(data);
    EXPECT_EQ(std::string(data->begin(), data->begin() + 8), "bplist00");
    EXPECT_EQ(
        PropertyListCodec::decode(*data),
        PropertyList(PropertyList::Dictionary{{"keyCode", 65535u}, {"modifierFlags", 917504u}}));
    EXPECT_EQ(stored["com.quillbox.defaultsVersion"], PropertyList(0));

    startAndStop();
    EXPECT_EQ(read(), stored);

    stored.erase("activationShortcut");
    write(stored);
    startAndStop();
    EXPECT_FALSE(read().count("activationShortcut"));
}
