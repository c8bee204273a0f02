#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "StoreFixture.h"

using namespace quillbox;
using platform::Comparison;
using platform::MergePolicyType;
using platform::ObjectStoreError;
using Code = ObjectStoreError::Code;

namespace {

template <typename Call>
Code codeOf(Call&& call) {
    try {
        call();
    } catch (const ObjectStoreError& error) {
        return error.code();
    }
    ADD_FAILURE() << "no ObjectStoreError";
    return Code::storeFailure;
}

std::string text(const platform::ManagedObjectPtr& object, const std::string& key) {
    auto value = object->value(key);
    return std::holds_alternative<std::string>(value) ? std::get<std::string>(value) : "";
}

}  // namespace

class ContextTest : public objectstore::StoreFixture {
  protected:
    std::unique_ptr<CoreDataStack> stack = makeStack(fileStore(root() / "library.sqlite"));
};

TEST_F(ContextTest, FetchesSeeUnsavedChangesAndSavedObjectsGetPermanentIdentities) {
    auto context = stack->newBackgroundContext();
    auto emma = addBook(*context, "Emma", 474);
    addBook(*context, "Persuasion", 249);
    auto saved = addBook(*context, "Sanditon", 120);
    EXPECT_TRUE(emma->objectID().isTemporaryID());
    EXPECT_EQ(emma->value("finished"), platform::AttributeValue(false));
    context->save();
    EXPECT_FALSE(emma->objectID().isTemporaryID());
    EXPECT_FALSE(context->hasChanges());

    addBook(*context, "Lady Susan", 80);
    context->deleteObject(saved);
    emma->setValue("title", std::string("Emma (annotated)"));
    EXPECT_EQ(titles(*context),
              (std::vector<std::string>{"Emma (annotated)", "Lady Susan", "Persuasion"}));
    platform::FetchRequest longest{"Book",
                                   {{"pages", Comparison::Operator::greater, std::int64_t{100}}},
                                   {{"pages", false}},
                                   1};
    EXPECT_EQ(titles(*context, longest), (std::vector<std::string>{"Emma (annotated)"}));

    auto other = stack->newBackgroundContext();
    EXPECT_EQ(titles(*other), (std::vector<std::string>{"Emma", "Persuasion", "Sanditon"}));
    EXPECT_EQ(titles(*other, longest), (std::vector<std::string>{"Emma"}));
    EXPECT_EQ(text(other->existingObject(emma->objectID()), "title"), "Emma");
    context->rollback();
    EXPECT_EQ(titles(*context), (std::vector<std::string>{"Emma", "Persuasion", "Sanditon"}));
    EXPECT_EQ(codeOf([&] { other->existingObject({"Book", 999}); }), Code::objectNotFound);
}

TEST_F(ContextTest, BadValuesAndNamesAreRefusedAndAFailedSaveWritesNothing) {
    auto context = stack->newBackgroundContext();
    auto book = addBook(*context, "Emma");
    EXPECT_EQ(codeOf([&] { book->setValue("pages", std::string("many")); }), Code::wrongValueType);
    EXPECT_EQ(codeOf([&] { book->setValue("colour", std::string("red")); }),
              Code::unknownAttribute);
    EXPECT_EQ(codeOf([&] { context->insertNewObject("Poem"); }), Code::unknownEntity);
    EXPECT_EQ(codeOf([&] {
                  context->fetch({"Book", {}, {{"colour", true}}, 0});
              }),
              Code::unknownAttribute);

    book->setValue("cover", std::vector<std::uint8_t>{0, 1, 255});
    book->setValue("rating", 4.5);
    context->insertNewObject("Book");  // without its required title
    EXPECT_EQ(codeOf([&] { context->save(); }), Code::validation);
    EXPECT_TRUE(titles(*stack->newBackgroundContext()).empty());

    context->rollback();
    book = addBook(*context, "Emma");
    book->setValue("cover", std::vector<std::uint8_t>{0, 1, 255});
    context->save();
    auto fresh = stack->newBackgroundContext()->fetch(booksByTitle());
    ASSERT_EQ(fresh.size(), 1u);
    EXPECT_EQ(fresh[0]->value("cover"),
              platform::AttributeValue(std::vector<std::uint8_t>{0, 1, 255}));
    EXPECT_EQ(fresh[0]->value("rating"), platform::AttributeValue());
}

// Two contexts read one book; the first saves a new title and shelf, the
// second then saves its own title and page count.
struct ConflictOutcome {
    std::string title;
    std::string shelf;
    std::int64_t pages;
    bool secondSaveFailed;
};
using ConflictCase = std::pair<MergePolicyType, ConflictOutcome>;

std::string policyName(MergePolicyType policy) {
    static const char* const names[] = {"error", "mergeByPropertyStoreTrump",
                                        "mergeByPropertyObjectTrump", "overwrite", "rollback"};
    return names[static_cast<int>(policy)];
}

// The cases print as their policy, so that their test names say which.
void PrintTo(const ConflictCase& conflict, std::ostream* out) {
    *out << policyName(conflict.first);
}

class ConflictTest : public ContextTest, public ::testing::WithParamInterface<ConflictCase> {};

TEST_P(ConflictTest, TwoContextsSavingOneObjectResolveByThePolicy) {
    const auto& [policy, expected] = GetParam();
    auto setup = stack->newBackgroundContext();
    auto book = addBook(*setup, "Emma", 100);
    book->setValue("shelf", std::string("A"));
    setup->save();

    auto first = stack->newBackgroundContext();
    auto second = stack->newBackgroundContext();
    second->setMergePolicy(policy);
    auto firstCopy = first->existingObject(book->objectID());
    auto secondCopy = second->existingObject(book->objectID());
    firstCopy->setValue("title", std::string("Emma, first"));
    firstCopy->setValue("shelf", std::string("B"));
    first->save();
    secondCopy->setValue("title", std::string("Emma, second"));
    secondCopy->setValue("pages", std::int64_t{200});

    bool failed = false;
    try {
        second->save();
    } catch (const ObjectStoreError& error) {
        EXPECT_EQ(error.code(), Code::mergeConflict);
        failed = true;
    }
    EXPECT_EQ(failed, expected.secondSaveFailed);
    auto stored = stack->newBackgroundContext()->existingObject(book->objectID());
    EXPECT_EQ(text(stored, "title"), expected.title);
    EXPECT_EQ(text(stored, "shelf"), expected.shelf);
    EXPECT_EQ(stored->value("pages"), platform::AttributeValue(expected.pages));
    if (!failed) {
        EXPECT_EQ(text(secondCopy, "title"), expected.title);
        EXPECT_FALSE(second->hasChanges());
    }
}

INSTANTIATE_TEST_SUITE_P(
    EachPolicy, ConflictTest,
    ::testing::Values(
        std::pair{MergePolicyType::error, ConflictOutcome{"Emma, first", "B", 100, true}},
        std::pair{MergePolicyType::mergeByPropertyStoreTrump,
                  ConflictOutcome{"Emma, first", "B", 200, false}},
        std::pair{MergePolicyType::mergeByPropertyObjectTrump,
                  ConflictOutcome{"Emma, second", "B", 200, false}},
        std::pair{MergePolicyType::overwrite, ConflictOutcome{"Emma, second", "A", 200, false}},
        std::pair{MergePolicyType::rollback, ConflictOutcome{"Emma, first", "B", 100, false}}),
    [](const ::testing::TestParamInfo<ConflictCase>& test) {
        return policyName(test.param.first);
    });

TEST_F(ContextTest, AnObjectDeletedMeanwhileIsAConflictOrGoneOrBackByThePolicy) {
    auto setup = stack->newBackgroundContext();
    auto book = addBook(*setup, "Emma");
    setup->save();
    const auto id = book->objectID();

    std::int64_t pages = 1;
    for (auto policy :
         {MergePolicyType::error, MergePolicyType::overwrite, MergePolicyType::rollback}) {
        auto editor = stack->newBackgroundContext();
        editor->setMergePolicy(policy);
        auto copy = editor->existingObject(id);
        auto deleter = stack->newBackgroundContext();
        deleter->deleteObject(deleter->existingObject(id));
        deleter->save();
        copy->setValue("pages", ++pages);
        if (policy == MergePolicyType::error) {
            EXPECT_EQ(codeOf([&] { editor->save(); }), Code::mergeConflict);
            editor->setMergePolicy(MergePolicyType::overwrite);
            editor->save();  // puts it back for the next round
            continue;
        }
        editor->save();
        const bool back = policy == MergePolicyType::overwrite;
        EXPECT_EQ(copy->isDeleted(), !back);
        EXPECT_EQ(titles(*stack->newBackgroundContext()).size(), back ? 1u : 0u);
    }
    auto again = stack->newBackgroundContext();
    auto added = addBook(*again, "Emma");
    again->save();
    EXPECT_NE(added->objectID(), id);  // keys are never reused
}

TEST_F(ContextTest, AMergingContextTakesOtherSavesUnderItsOwnChanges) {
    auto main = stack->mainContext();
    auto book = addBook(*main, "Emma", 100);
    main->save();
    auto background = stack->newBackgroundContext();
    auto copy = background->existingObject(book->objectID());
    book->setValue("shelf", std::string("Mine"));
    copy->setValue("pages", std::int64_t{474});
    copy->setValue("shelf", std::string("Theirs"));
    addBook(*background, "Persuasion");
    background->save();

    EXPECT_EQ(book->value("pages"), platform::AttributeValue(std::int64_t{474}));
    EXPECT_EQ(text(book, "shelf"), "Mine");
    main->save();  // no conflict: the merge moved the object's version on
    EXPECT_EQ(text(stack->newBackgroundContext()->existingObject(book->objectID()), "shelf"),
              "Mine");

    main->setAutomaticallyMergesChangesFromParent(false);
    copy->setValue("pages", std::int64_t{1});
    background->setMergePolicy(MergePolicyType::overwrite);
    background->save();
    EXPECT_EQ(book->value("pages"), platform::AttributeValue(std::int64_t{474}));
}

TEST_F(ContextTest, ObjectsStayReadableAfterTheirStackIsGone) {
    platform::ManagedObjectPtr survivor;
    {
        auto shortLived = makeStack();
        survivor = addBook(*shortLived->mainContext(), "Emma");
    }
    EXPECT_EQ(survivor->entityName(), "Book");
    EXPECT_EQ(text(survivor, "title"), "Emma");
    survivor->setValue("pages", std::int64_t{3});
    EXPECT_TRUE(survivor->hasChanges());
}
