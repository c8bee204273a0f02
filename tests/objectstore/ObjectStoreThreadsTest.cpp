#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "StoreFixture.h"
#include "support/FetchedResultObserver.h"
#include "support/Task.h"

using namespace quillbox;

namespace {

// The size of each snapshot the stream gives, until it ends.
Task<std::vector<std::size_t>> snapshotSizes(FetchedResultObserver::ResultStream stream) {
    std::vector<std::size_t> sizes;
    auto snapshots = stream.makeAsyncIterator();
    while (auto snapshot = co_await snapshots.next())
        sizes.push_back(snapshot->itemIdentifiers().size());
    co_return sizes;
}

}  // namespace

class ObjectStoreThreads : public objectstore::StoreFixture {};

TEST_F(ObjectStoreThreads, ConcurrentSavesAllLandAndTheObserverSeesEachInTurn) {
    constexpr int writers = 3;
    constexpr int savesEach = 8;
    constexpr int booksPerSave = 5;
    auto stack = makeStack(fileStore(root() / "shared.sqlite"));
    auto main = stack->mainContext();
    auto shared = addBook(*main, "Shared", 0);
    main->save();

    auto observer = std::make_unique<FetchedResultObserver>(booksByTitle(), main);
    auto sizes = snapshotSizes(observer->resultStream());
    observer->start();

    std::vector<std::thread> threads;
    for (int w = 0; w < writers; ++w) {
        threads.emplace_back([&, w] {
            auto context = stack->newBackgroundContext();
            auto copy = context->existingObject(shared->objectID());
            for (int s = 0; s < savesEach; ++s) {
                context->performAndWait([&] {
                    for (int b = 0; b < booksPerSave; ++b)
                        addBook(*context, "Writer " + std::to_string(w) + " book " +
                                              std::to_string(s * 10 + b));
                    copy->setValue("pages", std::int64_t{w * 100 + s});
                    context->save();
                });
            }
        });
    }
    for (auto& thread : threads)
        thread.join();
    observer.reset();

    constexpr std::size_t total = writers * savesEach * booksPerSave + 1;
    EXPECT_EQ(titles(*stack->newBackgroundContext()).size(), total);
    const auto seen = sizes.result();
    ASSERT_FALSE(seen.empty());
    EXPECT_EQ(seen.front(), 1u);
    EXPECT_EQ(seen.back(), total);
    for (std::size_t i = 1; i < seen.size(); ++i)
        EXPECT_LE(seen[i - 1], seen[i]);
}
