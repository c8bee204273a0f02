#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "platform/Platform.h"
#include "platform/sqlite/SQLiteDatabase.h"
#include "platform/sqlite/SQLiteObjectStore.h"
#include "support/CoreDataStack.h"

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

// A scratch folder with the model "Library" in it, and the SQLite object
// store installed as the platform's for the test.
class StoreFixture : public ::testing::Test {
  protected:
    StoreFixture()
        : root_(makeRoot()),
          objectStore_({root_ / "models"}, root_ / "stores"),
          install_(services(objectStore_)) {
        std::filesystem::create_directories(root_ / "models");
        std::ofstream(root_ / "models" / "Library.datamodel") << libraryModel;
    }
    ~StoreFixture() override {
        std::error_code ignored;
        std::filesystem::remove_all(root_, ignored);
    }

    const std::filesystem::path& root() const { return root_; }
    std::filesystem::path modelURL() const { return root_ / "models" / "Library.datamodel"; }

    std::unique_ptr<quillbox::CoreDataStack> makeStack(
        quillbox::StoreOption option = quillbox::StoreOption::inMemory()) {
        auto configuration = quillbox::CoreDataStack::Configuration(modelURL());
        configuration.storeOption = std::move(option);
        return std::make_unique<quillbox::CoreDataStack>(configuration);
    }

    static quillbox::StoreOption fileStore(const std::filesystem::path& path) {
        return quillbox::StoreOption::sql(quillbox::SQLConfiguration(path));
    }

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

  private:
    static std::filesystem::path makeRoot() {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "objectstore-XXXXXX").string();
        return ::mkdtemp(pattern.data());
    }
    static platform::Services services(platform::ObjectStore& store) {
        platform::Services services;
        services.objectStore = &store;
        return services;
    }

    std::filesystem::path root_;
    platform::sqlite::SQLiteObjectStore objectStore_;
    platform::ScopedInstall install_;
};

}  // namespace objectstore
