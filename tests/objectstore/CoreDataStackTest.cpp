#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "StoreFixture.h"
#include "support/NotificationCenter.h"
#include "support/SimpleError.h"
#include "support/StandardOutput.h"

using namespace quillbox;
using platform::MergePolicyType;
using Kind = CoreDataStack::Error::Kind;

namespace {

template <typename Call>
Kind errorKindOf(Call&& call) {
    try {
        call();
    } catch (const CoreDataStack::Error& error) {
        return error.kind();
    }
    ADD_FAILURE() << "no CoreDataStack::Error";
    return Kind::noCoreDataModel;
}

}  // namespace

class CoreDataStackTest : public objectstore::StoreFixture {};

TEST_F(CoreDataStackTest, FindsTheModelByNameAndNamesTheContainerAfterIt) {
    auto stack = CoreDataStack::withModelFileName("Library");
    EXPECT_EQ(stack->container(), nullptr);
    auto container = stack->configuredContainer();
    EXPECT_EQ(container->name(), "Library");
    EXPECT_NE(container->managedObjectModel().entity("Author"), nullptr);
    addBook(*stack->mainContext(), "Emma");
    stack->save(stack->mainContext());
    EXPECT_EQ(queryNumber(root() / "stores" / "Library.sqlite", "SELECT COUNT(*) FROM Book"), 1);

    EXPECT_EQ(errorKindOf([] { CoreDataStack::withModelFileName("Atlas"); }),
              Kind::noCoreDataModel);
    auto unreadable = CoreDataStack::withModelURL(root() / "models" / "Missing.datamodel");
    EXPECT_EQ(errorKindOf([&] { unreadable->mainContext(); }), Kind::cantFindObjectModel);
    EXPECT_EQ(unreadable->container(), nullptr);
    EXPECT_EQ(errorKindOf([&] { stack->configureContainer(); }), Kind::containerAlreadyConfigured);
}

TEST_F(CoreDataStackTest, ConfigurationChangesOnlyBeforeSetUpAndWarnsAfter) {
    auto stack = makeStack();
    stack->setConfiguration(stack->configuration().with(
        [](auto& configuration) { configuration.mainContextAutomaticallyMergeChanges = false; }));
    stack->configureContainer();
    EXPECT_FALSE(stack->mainContext()->automaticallyMergesChangesFromParent());
    EXPECT_EQ(stack->mainContext()->mergePolicy(), MergePolicyType::mergeByPropertyObjectTrump);

    CapturedOutput output;
    stack->setConfiguration(stack->configuration().with([](auto& configuration) {
        configuration.mainContextDefaultMergePolicy = MergePolicyType::rollback;
    }));
    EXPECT_EQ(output.lines(), (std::vector<std::string>{
                                  "Warning: Trying to update CoreDataStack configuration AFTER "
                                  "container has already been configured!"}));
    EXPECT_EQ(stack->configuration().mainContextDefaultMergePolicy,
              MergePolicyType::mergeByPropertyObjectTrump);
}

TEST_F(CoreDataStackTest, NamedContextsNeedASetUpStackAndKeepTheMainOne) {
    auto stack = makeStack();
    EXPECT_EQ(errorKindOf([&] { stack->context(ContextKey::main); }),
              Kind::coreDataStackNeverConfigured);
    EXPECT_EQ(errorKindOf([&] { stack->deregisterConsistentContext(ContextKey::global); }),
              Kind::coreDataStackNeverConfigured);

    auto global = stack->registerConsistentContext(nullptr, ContextKey::global);
    EXPECT_EQ(stack->context(ContextKey::main), stack->mainContext());
    EXPECT_EQ(global->mergePolicy(), MergePolicyType::mergeByPropertyObjectTrump);
    EXPECT_EQ(stack->registerConsistentContext(stack->newBackgroundContext(), ContextKey::global),
              global);
    try {
        stack->deregisterConsistentContext(ContextKey::main);
        FAIL() << "the main context was deregistered";
    } catch (const SimpleError& error) {
        EXPECT_EQ(error.message(), "Cannot deregister main (view) context");
    }
    stack->deregisterConsistentContext(ContextKey::global);
    EXPECT_EQ(errorKindOf([&] { stack->context(ContextKey::global); }), Kind::noContextRegistered);
    EXPECT_EQ(errorKindOf([&] { stack->context(ContextKey{"elsewhere"}); }),
              Kind::noContextRegistered);
}

TEST_F(CoreDataStackTest, SaveOverridesThePolicyOnlyForThatSaveAndRaisesItsErrorAfter) {
    auto stack = makeStack();
    auto context = stack->newBackgroundContext();
    context->setMergePolicy(MergePolicyType::error);
    addBook(*context, "Persuasion");
    stack->save(context, MergePolicyType::overwrite);
    EXPECT_EQ(context->mergePolicy(), MergePolicyType::error);

    context->insertNewObject("Book");  // no title, which is required
    try {
        stack->save(context, MergePolicyType::rollback);
        FAIL() << "an invalid object was saved";
    } catch (const platform::ObjectStoreError& error) {
        EXPECT_EQ(error.code(), platform::ObjectStoreError::Code::validation);
    }
    EXPECT_EQ(context->mergePolicy(), MergePolicyType::error);
    EXPECT_TRUE(context->hasChanges());

    CapturedOutput output;
    const int line = __LINE__ + 1;
    noThrowSave(*context);
    ASSERT_EQ(output.lines().size(), 1u);
    EXPECT_EQ(output.lines()[0], "Error saving core data context (" + std::to_string(line) + ":" +
                                     __FILE__ + ") - The attribute \"title\" of Book is required");
    setMergeConflictResolutionPolicy(*context, std::nullopt);
    EXPECT_EQ(mergeConflictResolutionPolicy(*context), MergePolicyType::error);
}

TEST_F(CoreDataStackTest, ResettingRegisteredTypesEmptiesThemAndTellsOfEachThenAll) {
    auto stack = makeStack();
    auto context = stack->mainContext();
    addBook(*context, "Emma");
    context->insertNewObject("Author")->setValue("name", std::string("Austen"));
    context->save();
    stack->registerModel("Book");
    stack->registerModel("Author");
    EXPECT_EQ(stack->registeredModels(), (std::vector<std::string>{"Book", "Author"}));

    std::vector<std::string> told;
    auto one = NotificationCenter::defaultCenter().addObserver(
        CoreDataStack::didResetRegisteredTypeNotification, [&](const Notification& notification) {
            told.push_back(std::any_cast<std::string>(notification.object));
        });
    auto all = NotificationCenter::defaultCenter().addObserver(
        CoreDataStack::didResetRegisteredTypesNotification, [&](const Notification& notification) {
            EXPECT_EQ(std::any_cast<CoreDataStack*>(notification.object), stack.get());
            told.push_back("all");
        });
    stack->resetRegisteredTypesInContainer();
    EXPECT_EQ(told, (std::vector<std::string>{"Book", "Author", "all"}));
    EXPECT_TRUE(titles(*context).empty());
    EXPECT_TRUE(context->fetch({"Author", {}, {}, 0}).empty());
}

TEST_F(CoreDataStackTest, FileStoreOptionsReachTheFile) {
    const auto file = root() / "custom" / "books.sqlite";
    auto writer = makeStack(fileStore(file));
    auto context = writer->mainContext();
    for (int i = 0; i < 300; ++i)
        addBook(*context, "Volume " + std::to_string(i));
    context->save();
    for (const auto& book : context->fetch(booksByTitle()))
        context->deleteObject(book);
    addBook(*context, "Emma");
    context->save();
    EXPECT_GT(queryNumber(file, "PRAGMA freelist_count"), 0);

    auto configuration = SQLConfiguration(file);
    configuration.pragmas =
        std::map<std::string, SQLConfiguration::PragmaValue>{{"user_version", std::int64_t{42}}};
    configuration.analyze = true;
    configuration.vacuum = true;
    makeStack(StoreOption::sql(configuration))->configureContainer();
    EXPECT_EQ(queryNumber(file, "PRAGMA user_version"), 42);
    EXPECT_EQ(queryNumber(file, "PRAGMA freelist_count"), 0);
    EXPECT_EQ(queryNumber(file, "SELECT COUNT(*) FROM sqlite_master WHERE name = 'sqlite_stat1'"),
              1);

    configuration = SQLConfiguration(file);
    configuration.readOnly = true;
    auto reader = makeStack(StoreOption::sql(configuration));
    auto readingContext = reader->mainContext();
    EXPECT_EQ(titles(*readingContext), (std::vector<std::string>{"Emma"}));
    addBook(*readingContext, "Sanditon");
    try {
        readingContext->save();
        FAIL() << "saved into a read-only store";
    } catch (const platform::ObjectStoreError& error) {
        EXPECT_EQ(error.code(), platform::ObjectStoreError::Code::readOnlyStore);
    }
    EXPECT_EQ(queryNumber(file, "SELECT COUNT(*) FROM Book"), 1);

    auto missing = SQLConfiguration(root() / "nowhere.sqlite");
    missing.readOnly = true;
    EXPECT_THROW(makeStack(StoreOption::sql(missing))->configureContainer(),
                 platform::ObjectStoreError);
    EXPECT_FALSE(std::filesystem::exists(root() / "nowhere.sqlite"));
}

TEST_F(CoreDataStackTest, AModelConfigurationLimitsTheStoreToItsEntities) {
    const auto file = root() / "catalogue.sqlite";
    auto configuration = SQLConfiguration(file);
    configuration.modelConfiguration = "Catalogue";
    auto stack = makeStack(StoreOption::sql(configuration));
    auto context = stack->mainContext();
    addBook(*context, "Emma");
    context->save();
    EXPECT_EQ(queryNumber(file, "SELECT COUNT(*) FROM sqlite_master WHERE name = 'Author'"), 0);
    EXPECT_THROW(context->fetch({"Author", {}, {}, 0}), platform::ObjectStoreError);
    EXPECT_THROW(context->fetch({"Poem", {}, {}, 0}), platform::ObjectStoreError);
}

TEST_F(CoreDataStackTest, InMemoryAndCustomStoresKeepNothingOnDisk) {
    auto first = makeStack();
    auto second = makeStack();
    addBook(*first->mainContext(), "Emma");
    first->mainContext()->save();
    EXPECT_TRUE(titles(*second->mainContext()).empty());
    EXPECT_FALSE(std::filesystem::exists(root() / "stores"));

    int loads = 0;
    auto custom = makeStack(StoreOption::custom([&](platform::PersistentContainer& container) {
        ++loads;
        platform::PersistentStoreDescription description;
        description.type = platform::PersistentStoreDescription::Type::inMemory;
        container.addPersistentStore(description);
    }));
    EXPECT_EQ(custom->configuredContainer()->persistentStoreCount(), 1u);
    EXPECT_EQ(loads, 1);

    auto failing = makeStack(StoreOption::custom(
        [](platform::PersistentContainer&) { throw std::runtime_error("no disk"); }));
    EXPECT_THROW(failing->configureContainer(), std::runtime_error);
    EXPECT_EQ(failing->container(), nullptr);
}

TEST_F(CoreDataStackTest, ADefaultStoreThatCannotBeOpenedStopsTheProcess) {
    std::ofstream(root() / "stores") << "a file where the folder should be";
    auto stack = makeStack(StoreOption::sqlDefaults());
    EXPECT_DEATH(stack->configureContainer(), "Failed to load persistent store: ");
}
