#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <variant>

#include "platform/ObjectStore.h"
#include "support/Withable.h"

namespace quillbox {

// A store in an SQLite file. Unset fields keep the store's own behaviour.
struct SQLConfiguration {
    using PragmaValue = std::variant<std::string, std::int64_t, double, bool>;

    explicit SQLConfiguration(std::filesystem::path url) : storeURL(std::move(url)) {}

    std::filesystem::path storeURL;
    // The model configuration whose entities the store holds; all when unset.
    std::optional<std::string> modelConfiguration;
    // Opens the file read-only: saves into it fail, and it is never created.
    bool readOnly = false;
    // Set on the connection when the store opens ("journal_mode", "cache_size").
    std::optional<std::map<std::string, PragmaValue>> pragmas;
    // Gathers statistics for the query planner when the store opens.
    std::optional<bool> analyze;
    // Rebuilds the file to its smallest size when the store opens.
    std::optional<bool> vacuum;

    platform::PersistentStoreDescription storeDescription() const;
};

// Where the container's objects are kept.
class StoreOption {
  public:
    using CustomLoader = std::function<void(platform::PersistentContainer&)>;

    // A file store: the container's default file with no configuration.
    static StoreOption sql(std::optional<SQLConfiguration> configuration = std::nullopt) {
        return StoreOption(Sql{std::move(configuration)});
    }
    static StoreOption sqlDefaults() { return sql(); }
    static StoreOption inMemory() { return StoreOption(InMemory{}); }
    // The loader adds the stores itself; what it throws passes on.
    static StoreOption custom(CustomLoader loader) {
        return StoreOption(Custom{std::move(loader)});
    }

    struct Sql {
        std::optional<SQLConfiguration> configuration;
    };
    struct InMemory {};
    struct Custom {
        CustomLoader loader;
    };
    std::variant<Sql, InMemory, Custom> kind;

  private:
    template <typename Kind>
    explicit StoreOption(Kind chosen) : kind(std::move(chosen)) {}
};

// How a stack sets up its container. By default the main context merges the
// saves of background contexts, and every context resolves conflicts
// attribute by attribute with its own changes winning: the last writer's
// edits survive, and nobody's unrelated edits are lost.
struct CoreDataStackConfiguration : Withable<CoreDataStackConfiguration> {
    explicit CoreDataStackConfiguration(std::filesystem::path url) : modelURL(std::move(url)) {}
    // The model file of that name (no extension) where the platform keeps
    // models; throws CoreDataStack::Error noCoreDataModel when there is none.
    static CoreDataStackConfiguration named(const std::string& modelFileName);

    std::filesystem::path modelURL;
    StoreOption storeOption = StoreOption::sqlDefaults();
    platform::MergePolicyType mainContextDefaultMergePolicy =
        platform::MergePolicyType::mergeByPropertyObjectTrump;
    bool mainContextAutomaticallyMergeChanges = true;
    platform::MergePolicyType newBackgroundContextDefaultMergePolicy =
        platform::MergePolicyType::mergeByPropertyObjectTrump;
};

}  // namespace quillbox
