#include <gtest/gtest.h>

#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/Platform.h"
#include "platform/sim/SimMainLoop.h"
#include "platform/sim/SimPreferencesStore.h"
#include "support/DefaultsManager.h"
#include "support/InstalledPreferences.h"
#include "support/StandardOutput.h"

using platform::PropertyList;
using quillbox::CapturedOutput;
using quillbox::DefaultsManager;
using quillbox::Key;
using quillbox::KeyWithDefault;

namespace {

struct Size {
    std::int64_t width = 0;
    std::int64_t height = 0;
    friend bool operator==(const Size&, const Size&) = default;
};

}  // namespace

template <>
struct quillbox::Coding<Size> {
    static PropertyList encode(const Size& size) {
        return PropertyList::Dictionary{{"width", size.width}, {"height", size.height}};
    }
    static Size decode(const PropertyList& list) {
        auto dictionary = list.dictionary();
        if (!dictionary || !dictionary->count("width") || !dictionary->count("height")) {
            throw DecodingError("missing width or height");
        }
        return Size{dictionary->at("width").signedInteger().value_or(0),
                    dictionary->at("height").signedInteger().value_or(0)};
    }
};

namespace {

class DefaultsManagerTest : public ::testing::Test, protected testsupport::InstalledPreferences {
  protected:
    ~DefaultsManagerTest() override { DefaultsManager::clearMigrations(); }

    DefaultsManager& defaults = DefaultsManager::shared();
    CapturedOutput output;
};

// A key whose stored integer counts in tens; the transform refuses some
// values both ways.
Key<int, std::int64_t> tensKey() {
    return Key<int, std::int64_t>("tens").withTransform(
        [](const std::int64_t& stored) -> std::optional<int> {
            if (stored < 0)
                throw std::runtime_error("negative tens");
            if (stored == 0)
                return std::nullopt;
            return static_cast<int>(stored * 10);
        },
        [](const int& value) -> std::optional<std::int64_t> {
            if (value % 10 != 0)
                throw std::invalid_argument("not a multiple of ten");
            return value / 10;
        });
}

}  // namespace

TEST_F(DefaultsManagerTest, AbsentOrMistypedValuesReadAsNothingOrTheDefaultSilently) {
    EXPECT_EQ(defaults.getValue(Key<std::string>("name")), std::nullopt);
    EXPECT_EQ(defaults.getValue(KeyWithDefault<std::string>("name", "fallback")), "fallback");
    EXPECT_EQ(defaults.getValue(tensKey()), std::nullopt);

    store.setObject("count", "seven");
    store.setObject("small", 300);
    store.setObject("tens", "ten");
    store.setObject("list", PropertyList::Array{"a", 2});
    EXPECT_EQ(defaults.getValue(KeyWithDefault<std::int64_t>("count", 4)), 4);
    EXPECT_EQ(defaults.getValue(Key<std::uint8_t>("small")), std::nullopt);
    EXPECT_EQ(defaults.getValue(Key<std::int16_t>("small")), 300);
    EXPECT_EQ(defaults.getValue(tensKey()), std::nullopt);
    EXPECT_EQ(defaults.getValue(Key<std::vector<std::string>>("list")), std::nullopt);
    EXPECT_TRUE(output.lines().empty());
}

TEST_F(DefaultsManagerTest, ValuesOfEveryStoredKindRoundTrip) {
    const std::map<std::string, std::vector<double>> series{{"a", {1.5, -2}}, {"b", {}}};
    defaults.setValue(std::optional(series), Key<std::map<std::string, std::vector<double>>>("s"));
    EXPECT_EQ(defaults.getValue(Key<std::map<std::string, std::vector<double>>>("s")), series);

    defaults[Key<std::uint64_t>("big")] = std::uint64_t{1} << 63;
    EXPECT_EQ(defaults.getValue(Key<std::uint64_t>("big")), std::uint64_t{1} << 63);

    const KeyWithDefault<float> scale("scale", 1.0f);
    defaults[scale] = 0.25f;
    EXPECT_EQ(static_cast<float>(defaults[scale]), 0.25f);
    EXPECT_EQ(store.objectForKey("scale"), PropertyList(0.25));
}

TEST_F(DefaultsManagerTest, ConversionFailuresPrintOneLineAndFallBack) {
    store.setObject("tens", -3);
    EXPECT_EQ(defaults.getValue(tensKey()), std::nullopt);
    EXPECT_EQ(output.lines(),
              std::vector<std::string>{"Error converting stored data for key: negative tens"});

    output.clear();
    store.setObject("tens", 0);
    const auto withDefault =
        KeyWithDefault<int, std::int64_t>("tens", 99).withTransform(*tensKey().transform);
    EXPECT_EQ(defaults.getValue(withDefault), 99);
    ASSERT_EQ(output.lines().size(), 1u);
    EXPECT_EQ(output.lines()[0],
              "Error converting stored data for key: OptionalError.nilValue of int - Transform "
              "provided nil Optional");
}

TEST_F(DefaultsManagerTest, AFailingWriteLeavesTheStoreAndTheObserversAlone) {
    int calls = 0;
    auto handle = defaults.registerNotifications(tensKey(), [&](std::optional<int>) { ++calls; });
    defaults.setValue(std::optional(30), tensKey());
    EXPECT_EQ(calls, 1);

    defaults.setValue(std::optional(31), tensKey());
    EXPECT_EQ(store.objectForKey("tens"), PropertyList(3));
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(output.lines(),
              std::vector<std::string>{"Error converting value for key Key<int, long>(rawValue: "
                                       "\"tens\") to data: not a multiple of ten"});
    defaults.deregisterNotifications(handle);
}

TEST_F(DefaultsManagerTest, ObserversSeeEveryWriteRemovalAndResetUntilDeregistered) {
    const KeyWithDefault<std::string> channel("channel", "default");
    std::vector<std::optional<std::string>> plainCalls;
    std::vector<std::string> defaultedCalls;
    auto plain = defaults.registerNotifications(
        Key<std::string>("channel"),
        [&](std::optional<std::string> v) { plainCalls.push_back(v); });
    auto defaulted = defaults.registerNotifications(
        channel, [&](std::string v) { defaultedCalls.push_back(v); });

    defaults[channel] = "staging";
    defaults[channel] = "staging";
    defaults.removeValue(channel);
    EXPECT_FALSE(store.objectForKey("channel"));
    EXPECT_EQ(defaults.getValue(channel), "default");
    // A reset stores the default explicitly.
    EXPECT_EQ(defaults.reset(channel), "default");
    EXPECT_EQ(store.objectForKey("channel"), PropertyList("default"));

    defaults.deregisterNotifications(plain);
    defaults.deregisterNotifications(plain);  // a second time changes nothing
    defaults[channel] = "beta";
    EXPECT_EQ(plainCalls, (std::vector<std::optional<std::string>>{"staging", "staging",
                                                                   std::nullopt, "default"}));
    // A removal skips the observer of the key with a default.
    EXPECT_EQ(defaultedCalls, (std::vector<std::string>{"staging", "staging", "default", "beta"}));
    defaults.deregisterNotifications(defaulted);
}

TEST_F(DefaultsManagerTest, ObserversRunOutsideTheLockAndMayUseTheManager) {
    const Key<std::int64_t> count("count");
    int nestedCalls = 0;
    DefaultsManager::NotificationHandle self{};
    self = defaults.registerNotifications(count, [&](std::optional<std::int64_t> value) {
        // Each of these takes the lock; holding it here would deadlock.
        auto nested = defaults.registerNotifications(count, [&](auto) { ++nestedCalls; });
        defaults.deregisterNotifications(self);
        defaults.deregisterNotifications(nested);
        defaults[Key<std::int64_t>("mirror")] = value;
    });
    defaults[count] = 5;
    defaults[count] = 6;
    EXPECT_EQ(defaults.getValue(Key<std::int64_t>("mirror")), 5);
    EXPECT_EQ(nestedCalls, 0);
}

TEST_F(DefaultsManagerTest, CodableValuesAreStoredAsBinaryPropertyListData) {
    const Key<Size, PropertyList::Data> sizeKey(quillbox::autoCodingValueWithKey, "size");
    defaults[sizeKey] = Size{640, 480};
    EXPECT_EQ(defaults.getValue(sizeKey), (Size{640, 480}));
    const auto stored = store.objectForKey("size");
    const auto data = stored ? stored->get<PropertyList::Data>() : nullptr;
    ASSERT_TRUE(data);
    EXPECT_EQ(std::string(data->begin(), data->begin() + 6), "bplist");

    store.setObject("size", PropertyList::Data{1, 2, 3});
    const KeyWithDefault<Size, PropertyList::Data> defaulted(quillbox::autoCodingValueWithKey,
                                                             "size", Size{1, 1});
    EXPECT_EQ(defaults.getValue(defaulted), (Size{1, 1}));
    EXPECT_EQ(output.lines(),
              std::vector<std::string>{"Error converting stored data for key: The data couldn't "
                                       "be read because it isn't in the correct format."});
}

TEST_F(DefaultsManagerTest, AFirstRunAppliesVersionZeroAndLaterOnesOnlyThoseAboveTheStoredOne) {
    std::vector<std::string> ran;
    DefaultsManager::addMigration({0, [&] { ran.push_back("0"); }});
    DefaultsManager::runMigrations();
    EXPECT_EQ(ran, std::vector<std::string>{"0"});
    EXPECT_EQ(store.objectForKey(DefaultsManager::versionKeyName), PropertyList(0));

    ran.clear();
    store.setObject(DefaultsManager::versionKeyName, 5);
    DefaultsManager::addMigration({6, [&] { ran.push_back("6a"); }});
    DefaultsManager::addMigration({3, [&] { ran.push_back("3"); }});
    DefaultsManager::addMigration({5, [&] { ran.push_back("5"); }});
    DefaultsManager::addMigration({6, [&] { ran.push_back("6b"); }});
    std::vector<std::int64_t> versions;
    auto handle = defaults.registerNotifications(
        KeyWithDefault<std::int64_t>(DefaultsManager::versionKeyName, -1),
        [&](std::int64_t version) { versions.push_back(version); });

    DefaultsManager::runMigrations();
    EXPECT_EQ(ran, (std::vector<std::string>{"6a", "6b"}));
    EXPECT_EQ(versions, (std::vector<std::int64_t>{6, 6}));
    EXPECT_EQ(store.objectForKey(DefaultsManager::versionKeyName), PropertyList(6));

    DefaultsManager::runMigrations();  // the stored version is raised now
    EXPECT_EQ(ran.size(), 2u);
    defaults.deregisterNotifications(handle);
}

TEST_F(DefaultsManagerTest, ObjectWillChangeIsSentOnTheLoopForAnyChangeOfTheInstalledStore) {
    int changes = 0;
    auto subscription = defaults.objectWillChange().connect([&] { ++changes; });
    defaults[Key<std::string>("name")] = "Ada";
    EXPECT_EQ(changes, 0);  // not on the writer's call
    loop.runUntilIdle();
    EXPECT_EQ(changes, 1);
    store.setObject("name", "changed elsewhere");
    loop.runUntilIdle();
    EXPECT_EQ(changes, 2);

    // A store installed later is the one read and observed.
    platform::sim::SimPreferencesStore other(loop, {{"name", "other"}});
    platform::Services table = services();
    table.preferences = &other;
    platform::ScopedInstall otherInstall(table);
    EXPECT_EQ(defaults.getValue(Key<std::string>("name")), "other");
    other.setObject("name", "again");
    loop.runUntilIdle();
    EXPECT_EQ(changes, 3);
}

TEST_F(DefaultsManagerTest, BindingsReadAndWriteThroughTheManager) {
    const KeyWithDefault<std::string> channel("channel", "default");
    auto binding = defaults.binding(channel);
    EXPECT_EQ(binding.get(), "default");
    binding.set("staging");
    EXPECT_EQ(store.objectForKey("channel"), PropertyList("staging"));

    auto optional = defaults.binding(Key<std::string>("channel"));
    optional.set(std::nullopt);
    EXPECT_EQ(binding.get(), "default");
}
