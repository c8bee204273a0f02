#include "platform/sqlite/SQLiteObjectStore.h"

#include "platform/sqlite/ModelFile.h"
#include "platform/sqlite/SQLiteContainer.h"
#include "platform/xdg/DesktopEntryDirectories.h"

namespace platform::sqlite {

SQLiteObjectStore::SQLiteObjectStore(std::vector<std::filesystem::path> modelDirectories,
                                     std::filesystem::path storeDirectory)
    : modelDirectories_(std::move(modelDirectories)), storeDirectory_(std::move(storeDirectory)) {}

// Under the data home of the base-directory conventions, which is never
// relative: a store is never made in the working directory.
std::filesystem::path SQLiteObjectStore::defaultStoreDirectory() {
    return xdg::DesktopEntryDirectories::fromEnvironment().dataHome / "tarnwick" / "stores";
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
