#pragma once

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "platform/Platform.h"
#include "platform/sqlite/SQLiteObjectStore.h"
#include "support/CoreDataStack.h"

namespace objectstore {

// A scratch folder holding one model file, "Library", with the SQLite object
// store installed as the platform's while it lives; the folder goes with it.
// Shared by the tests and the benchmarks.
class ScratchObjectStore {
  public:
    explicit ScratchObjectStore(const std::string& modelText)
        : root_(makeRoot()),
          objectStore_({root_ / "models"}, root_ / "stores"),
          install_(services(objectStore_)) {
        std::filesystem::create_directories(root_ / "models");
        std::ofstream(modelURL()) << modelText;
    }
    ~ScratchObjectStore() {
        std::error_code ignored;
        std::filesystem::remove_all(root_, ignored);
    }
    ScratchObjectStore(const ScratchObjectStore&) = delete;
    ScratchObjectStore& operator=(const ScratchObjectStore&) = delete;

    const std::filesystem::path& root() const { return root_; }
    std::filesystem::path modelURL() const { return root_ / "models" / "Library.datamodel"; }

    std::unique_ptr<quillbox::CoreDataStack> makeStack(
        quillbox::StoreOption option = quillbox::StoreOption::inMemory()) const {
        auto configuration = quillbox::CoreDataStack::Configuration(modelURL());
        configuration.storeOption = std::move(option);
        return std::make_unique<quillbox::CoreDataStack>(configuration);
    }

    static quillbox::StoreOption fileStore(const std::filesystem::path& path) {
        return quillbox::StoreOption::sql(quillbox::SQLConfiguration(path));
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
