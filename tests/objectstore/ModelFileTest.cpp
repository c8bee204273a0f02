#include <gtest/gtest.h>

#include <string>

#include "StoreFixture.h"
#include "platform/ObjectStore.h"
#include "platform/sqlite/ModelFile.h"
#include "platform/sqlite/SQLiteObjectStore.h"
#include "support/ScopedEnvironment.h"

using platform::AttributeType;
using platform::AttributeValue;
using platform::sqlite::parseModel;

TEST(ModelFile, DeclaresEntitiesAttributesDefaultsAndConfigurations) {
    const auto model = parseModel(objectstore::libraryModel);
    ASSERT_EQ(model.entities.size(), 2u);
    const auto* book = model.entity("Book");
    ASSERT_NE(book, nullptr);
    ASSERT_EQ(book->attributes.size(), 6u);
    EXPECT_EQ(book->attribute("pages")->type, AttributeType::integer);
    EXPECT_EQ(book->attribute("pages")->defaultValue, AttributeValue(std::int64_t{0}));
    EXPECT_FALSE(book->attribute("title")->optional);
    EXPECT_TRUE(book->attribute("rating")->optional);
    EXPECT_EQ(book->attribute("rating")->type, AttributeType::decimal);
    EXPECT_EQ(book->attribute("finished")->defaultValue, AttributeValue(false));
    EXPECT_EQ(model.entitiesInConfiguration("Catalogue").size(), 1u);
    EXPECT_EQ(model.entitiesInConfiguration(std::nullopt).size(), 2u);
    EXPECT_TRUE(model.entitiesInConfiguration("Attic").empty());

    const auto quoted =
        parseModel("entity Note\n  text: string = \"a = b\"\n  weight: decimal = 2.5\n");
    EXPECT_EQ(quoted.entity("Note")->attribute("text")->defaultValue,
              AttributeValue(std::string("a = b")));
    EXPECT_EQ(quoted.entity("Note")->attribute("weight")->defaultValue, AttributeValue(2.5));
}

TEST(ModelFile, MalformedDeclarationsNameTheirLine) {
    const std::pair<const char*, const char*> cases[] = {
        {"", "declares no entity"},
        {"  title: string\n", "line 1: an attribute outside any entity"},
        {"entity Book\n  title: text\n", "line 2: unknown type \"text\""},
        {"entity Book\nentity Book\n", "line 2: the entity \"Book\" is declared twice"},
        {"entity Book\n  a: string\n  a: integer\n",
         "line 3: the attribute \"a\" is declared twice"},
        {"entity Book\n  pages: integer = many\n", "line 2: the default doesn't fit"},
        {"entity Book\n  Z_PK: integer\n", "line 2: \"Z_PK\" is not a usable attribute name"},
        {"entity Book\nconfiguration Shelf: Poem\n", "line 2: no entity \"Poem\""},
        {"entity 9Lives\n", "line 1: expected \"entity Name\""},
    };
    for (const auto& [text, message] : cases) {
        try {
            parseModel(text);
            ADD_FAILURE() << "accepted: " << text;
        } catch (const platform::ObjectStoreError& error) {
            EXPECT_EQ(error.code(), platform::ObjectStoreError::Code::modelUnreadable);
            EXPECT_NE(std::string(error.what()).find(message), std::string::npos) << error.what();
        }
    }
}

namespace {

TEST(DefaultStoreDirectory, IsUnderTheDataHomeAndNeverRelative) {
    testsupport::ScopedEnvironment environment;
    environment.set("XDG_DATA_HOME", "/srv/data");
    EXPECT_EQ(platform::sqlite::SQLiteObjectStore::defaultStoreDirectory(),
              "/srv/data/tarnwick/stores");

    // Relative places are ignored, as the base-directory conventions say:
    // nothing is made in the working directory.
    environment.set("XDG_DATA_HOME", "data");
    environment.set("HOME", "home");
    const auto fallback = platform::sqlite::SQLiteObjectStore::defaultStoreDirectory();
    EXPECT_TRUE(fallback.is_absolute()) << fallback;
    EXPECT_EQ(fallback.filename(), "stores");
}

}  // namespace
