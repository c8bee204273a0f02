#pragma once

#include <filesystem>
#include <vector>

#include "platform/ObjectStore.h"

namespace platform::sqlite {

// The object store service over SQLite. Model files are looked up by name in
// the model folders, in order; default stores are files in the store folder.
class SQLiteObjectStore final : public ObjectStore {
  public:
    SQLiteObjectStore(std::vector<std::filesystem::path> modelDirectories,
                      std::filesystem::path storeDirectory);

    // "$XDG_DATA_HOME/tarnwick/stores", "~/.local/share/tarnwick/stores"
    // without it.
    static std::filesystem::path defaultStoreDirectory();

    std::optional<std::filesystem::path> urlForModel(const std::string& fileName) const override;
    ObjectModel loadModel(const std::filesystem::path& url) const override;
    PersistentContainerPtr makeContainer(const std::string& name, ObjectModel model) override;

  private:
    std::vector<std::filesystem::path> modelDirectories_;
    std::filesystem::path storeDirectory_;
};

}  // namespace platform::sqlite
