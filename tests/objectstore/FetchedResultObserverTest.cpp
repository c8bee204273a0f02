#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "StoreFixture.h"
#include "support/FetchedResultObserver.h"
#include "support/SimpleError.h"
#include "support/Task.h"

using namespace quillbox;

namespace {

// The titles in each snapshot the stream gives, until it ends.
Task<std::vector<std::vector<std::string>>> readSnapshots(
    FetchedResultObserver::ResultStream stream, platform::ManagedObjectContextPtr context) {
    std::vector<std::vector<std::string>> seen;
    auto snapshots = stream.makeAsyncIterator();
    while (auto snapshot = co_await snapshots.next()) {
        std::vector<std::string> titles;
        for (const auto& id : snapshot->itemIdentifiers())
            titles.push_back(std::get<std::string>(context->existingObject(id)->value("title")));
        seen.push_back(titles);
    }
    co_return seen;
}

using Snapshots = std::vector<std::vector<std::string>>;

}  // namespace

class FetchedResultObserverTest : public objectstore::StoreFixture {
  protected:
    std::unique_ptr<CoreDataStack> stack = makeStack();
    platform::ManagedObjectContextPtr main = stack->mainContext();
};

TEST_F(FetchedResultObserverTest, GivesASnapshotAfterEachSaveThatChangesTheResults) {
    addBook(*main, "Emma");
    main->save();
    auto observer = std::make_unique<FetchedResultObserver>(booksByTitle(), main);
    auto reading = readSnapshots(observer->resultStream(), main);
    int published = 0;
    auto counting = observer->updatePublisher().connect([&](const auto&) { ++published; });
    observer->start();

    auto background = stack->newBackgroundContext();
    addBook(*background, "Persuasion");
    background->save();
    background->insertNewObject("Author")->setValue("name", std::string("Austen"));
    background->save();  // another entity: nothing to tell
    auto emma = main->fetch(booksByTitle())[0];
    emma->setValue("title", std::string("Sanditon"));
    main->save();
    emma->setValue("pages", std::int64_t{5});
    main->save();  // same order, but a shown object changed
    observer.reset();

    EXPECT_EQ(reading.result(), (Snapshots{{"Emma"},
                                           {"Emma", "Persuasion"},
                                           {"Persuasion", "Sanditon"},
                                           {"Persuasion", "Sanditon"}}));
    EXPECT_EQ(published, 4);
}

TEST_F(FetchedResultObserverTest, NeedsSortDescriptorsAndFollowsANewRequest) {
    EXPECT_THROW(FetchedResultObserver({"Book", {}, {}, 0}, main), ResultObserverError);
    for (const char* title : {"Emma", "Persuasion", "Sanditon"})
        addBook(*main, title)->setValue("shelf", std::string(title[0] == 'E' ? "A" : "B"));
    main->save();

    FetchedResultObserver observer({"Book", {}, {{"shelf", true}, {"title", true}}, 0}, main,
                                   "shelf", "books");
    EXPECT_FALSE(observer.latestSnapshot());
    observer.start();
    auto latest = *observer.latestSnapshot();
    ASSERT_EQ(latest.sections.size(), 2u);
    EXPECT_EQ(latest.sections[1].name, "B");
    EXPECT_EQ(latest.sections[1].itemIdentifiers.size(), 2u);

    EXPECT_THROW(observer.updateFetchRequest({"Book", {}, {}, 0}), ResultObserverError);
    observer.updateFetchRequest({"Book", {}, {{"title", false}}, 1});
    EXPECT_EQ(observer.latestSnapshot()->itemIdentifiers().size(), 1u);
    observer.resetFetchRequest();
    EXPECT_EQ(observer.fetchRequest().sortDescriptors.size(), 2u);
    EXPECT_EQ(observer.latestSnapshot()->itemIdentifiers().size(), 3u);
    EXPECT_EQ(observer.cacheName(), "books");
}

TEST_F(FetchedResultObserverTest, LooksUpObjectsOfItsOwnEntityOnly) {
    auto book = addBook(*main, "Emma");
    auto author = main->insertNewObject("Author");
    author->setValue("name", std::string("Austen"));
    main->save();
    FetchedResultObserver observer(booksByTitle(), main);
    EXPECT_EQ(observer.object(book->objectID(), *main), book);
    EXPECT_EQ(observer.maybeObject(author->objectID(), *main), nullptr);
    EXPECT_EQ(observer.maybeObject({"Book", 999}, *main), nullptr);
    try {
        observer.object(author->objectID(), *main);
        FAIL() << "an author passed for a book";
    } catch (const SimpleError& error) {
        EXPECT_EQ(error.message(), "Object either doesn't exist or isn't of Book type.");
    }
}
