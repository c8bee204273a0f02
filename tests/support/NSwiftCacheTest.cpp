#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "support/NSwiftCache.h"

using quillbox::NSwiftCache;

namespace {

// Records what the cache lets go of.
struct EvictionLog {
    std::vector<std::string> evicted;
    NSwiftCache<int, std::string>::OnEvict recorder() {
        return [this](const std::string& value) { evicted.push_back(value); };
    }
};

struct Buffer {
    std::string name;
    std::shared_ptr<bool> discarded = std::make_shared<bool>(false);
    bool isContentDiscarded() const { return *discarded; }
};

}  // namespace

TEST(NSwiftCache, KeepsAtMostTheCountLimitAndEvictsTheLeastRecentlyUsed) {
    EvictionLog log;
    NSwiftCache<int, std::string> cache("thumbnails", 2, log.recorder());
    EXPECT_EQ(cache.name(), "thumbnails");
    cache.setValue("one", 1);
    cache.setValue("two", 2);
    EXPECT_EQ(cache.value(1), "one");  // now two is the least recently used
    cache.setValue("three", 3);
    EXPECT_EQ(log.evicted, (std::vector<std::string>{"two"}));
    EXPECT_FALSE(cache.value(2));
    EXPECT_EQ(cache.count(), 2u);

    cache.setCountLimit(1);
    EXPECT_EQ(log.evicted, (std::vector<std::string>{"two", "one"}));
    EXPECT_EQ(cache.value(3), "three");
}

TEST(NSwiftCache, BoundsTheSummedCost) {
    EvictionLog log;
    NSwiftCache<int, std::string> cache("images", 0, log.recorder());
    cache.setTotalCostLimit(10);
    cache.setValue("a", 1, 4);
    cache.setValue("b", 2, 4);
    cache.setValue("free", 3);
    EXPECT_EQ(cache.totalCost(), 8u);
    cache.setValue("c", 4, 5);
    EXPECT_EQ(log.evicted, (std::vector<std::string>{"a"}));
    EXPECT_EQ(cache.totalCost(), 9u);
    // A value dearer than the whole bound can't stay.
    cache.setValue("huge", 5, 11);
    EXPECT_FALSE(cache.value(5));
    EXPECT_EQ(log.evicted.back(), "huge");
}

TEST(NSwiftCache, ReportsReplacedAndRemovedValuesAndRemovesOnNothing) {
    EvictionLog log;
    NSwiftCache<int, std::string> cache("names", 0, log.recorder());
    cache[1] = std::string("old");
    cache[1] = std::string("new");
    EXPECT_EQ(std::optional<std::string>(cache[1]), "new");
    cache.slot(2, 7) = std::string("costly");
    EXPECT_EQ(cache.totalCost(), 7u);
    cache[2] = std::nullopt;
    EXPECT_EQ(cache.totalCost(), 0u);
    cache.removeValue(42);
    cache.setValue("x", 3);
    cache.removeAllObjects();
    EXPECT_EQ(log.evicted, (std::vector<std::string>{"old", "costly", "new", "x"}));
    EXPECT_EQ(cache.count(), 0u);
}

TEST(NSwiftCache, EvictionCallbackMayUseTheCache) {
    NSwiftCache<int, std::string> cache("reentrant", 1);
    cache.setOnEvict([&cache](const std::string& value) {
        if (value == "first")
            cache.setValue("moved", 100);
    });
    cache.setValue("first", 1);
    cache.setValue("second", 2);
    EXPECT_EQ(cache.value(100), "moved");
}

TEST(NSwiftCache, DropsValuesWhoseContentWasDiscardedWhenAskedTo) {
    NSwiftCache<int, Buffer> cache;
    int evictions = 0;
    cache.setOnEvict([&](const Buffer&) { ++evictions; });
    Buffer buffer{"frame"};
    cache.setValue(buffer, 1);
    *buffer.discarded = true;
    cache.setEvictsObjectsWithDiscardedContent(false);
    EXPECT_TRUE(cache.value(1));
    cache.setEvictsObjectsWithDiscardedContent(true);
    EXPECT_FALSE(cache.value(1));
    EXPECT_EQ(evictions, 1);
    EXPECT_EQ(cache.count(), 0u);
}
