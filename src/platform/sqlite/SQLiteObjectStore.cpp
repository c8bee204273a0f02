#include "platform/sqlite/SQLiteObjectStore.h"

#include <cstdlib>

#include "platform/sqlite/ModelFile.h"
#include "platform/sqlite/SQLiteContainer.h"

namespace platform::sqlite {

SQLiteObjectStore::SQLiteObjectStore(std::vector<std::filesystem::path> modelDirectories,
                                     std::filesystem::path storeDirectory)
    : modelDirectories_(std::move(modelDirectories)), storeDirectory_(std::move(storeDirectory)) {}

std::filesystem::path SQLiteObjectStore::defaultStoreDirectory() {
    std::filesystem::path base;
    if (const char* data = std::getenv("XDG_DATA_HOME"); data && *data)
        base = data;
    else if (const char* home = std::getenv("HOME"); home && *home)
        base = std::filesystem::path(home) / ".local" / "share";
    return base / "tarnwick" / "stores";
}

std::optional<std::filesystem::path> SQLiteObjectStore::urlForModel(
    const std::string& fileName) const {
    for (const auto& directory : modelDirectories_) {
        auto candidate = directory / (fileName + std::string(modelFileExtension));
        std::error_code error;
        if (std::filesystem::is_regular_file(candidate, error))
            return candidate;
    }
    return std::nullopt;
}

ObjectModel SQLiteObjectStore::loadModel(const std::filesystem::path& url) const {
    return readModelFile(url);
}

PersistentContainerPtr SQLiteObjectStore::makeContainer(const std::string& name,
                                                        ObjectModel model) {
    return std::make_shared<Container>(name, std::move(model), storeDirectory_);
}

}  // namespace platform::sqlite
