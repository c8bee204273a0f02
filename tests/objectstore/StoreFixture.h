#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "ScratchObjectStore.h"
#include "platform/Platform.h"
#include "platform/sqlite/SQLiteDatabase.h"

namespace objectstore {

inline constexpr const char* libraryModel = R"(# A small library
entity Book
    title: string
    pages: integer = 0
    rating: decimal?
    shelf: string?
    cover: data?
    finished: boolean = false
entity Author
    name: string
configuration Catalogue: Book
)";

// The model "Library" in a scratch folder with the SQLite object store
// installed, and helpers over its books.
class StoreFixture : public ::testing::Test, protected ScratchObjectStore {
  protected:
    StoreFixture() : ScratchObjectStore(libraryModel) {}

    static platform::ManagedObjectPtr addBook(platform::ManagedObjectContext& context,
                                              const std::string& title, std::int64_t pages = 100) {
        auto book = context.insertNewObject("Book");
        book->setValue("title", title);
        book->setValue("pages", pages);
        return book;
    }

    static platform::FetchRequest booksByTitle() {
        return platform::FetchRequest{"Book", {}, {{"title", true}}, 0};
    }

    static std::vector<std::string> titles(platform::ManagedObjectContext& context,
                                           platform::FetchRequest request = booksByTitle()) {
        std::vector<std::string> found;
        for (const auto& book : context.fetch(request))
            found.push_back(std::get<std::string>(book->value("title")));
        return found;
    }

    // One number read straight from a store file, past the object store.
    static std::int64_t queryNumber(const std::filesystem::path& file, const std::string& sql) {
        platform::sqlite::Database database(file, platform::sqlite::Database::Mode::readOnly);
        platform::sqlite::Statement statement(database, sql);
        return statement.step() ? statement.integer(0) : -1;
    }
};

}  // namespace objectstore
