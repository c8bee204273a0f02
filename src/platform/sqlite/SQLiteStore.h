#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/ObjectStore.h"
#include "platform/sqlite/SQLiteDatabase.h"

namespace platform::sqlite {

// One stored object: its key, the version its last save gave it, and its
// attributes in the entity's order.
struct StoredRow {
    std::int64_t primaryKey = 0;
    std::int64_t version = 0;
    std::vector<AttributeValue> values;
};

// One store: an SQLite database with a table per entity of its
// configuration. A row keeps its object's key ("Z_PK", never reused) and a
// version ("Z_OPT") that each save of the row raises, which is how a save
// sees that someone else saved the object since it was read.
//
// The store's one connection is shared by every context of the container;
// access() serialises its users.
class Store {
  public:
    // Opens and lays out the store. Throws storeUnopenable.
    Store(const PersistentStoreDescription& description, const ObjectModel& model);

    bool holds(const std::string& entityName) const { return entities_.count(entityName) > 0; }
    bool isReadOnly() const { return readOnly_; }

    // Runs the body with the connection to itself.
    template <typename Body>
    decltype(auto) access(Body&& body) {
        std::lock_guard guard(mutex_);
        return body(*this);
    }

    // Everything below expects access() around it.

    // The rows that match, in the request's order; without the request's
    // conditions, order and limit when `whole` is set.
    std::vector<StoredRow> select(const EntityDescription& entity, const FetchRequest& request,
                                  bool whole);
    std::optional<StoredRow> row(const EntityDescription& entity, std::int64_t primaryKey);

    // Writes in a transaction opened with begin(); a new row starts at
    // version 1. insert() gives the new key; a key may be given to bring a
    // row back under its old key.
    std::int64_t insert(const EntityDescription& entity, const std::vector<AttributeValue>& values,
                        std::optional<std::int64_t> primaryKey = std::nullopt,
                        std::int64_t version = 1);
    void update(const EntityDescription& entity, std::int64_t primaryKey,
                const std::vector<AttributeValue>& values, std::int64_t version);
    void remove(const EntityDescription& entity, std::int64_t primaryKey);
    Database& database() { return database_; }

  private:
    // The statement for the text, prepared once and reset for this use.
    Statement& prepared(const std::string& sql);
    void applyPragmas(const std::map<std::string, std::string>& pragmas);
    void layOut(const std::vector<const EntityDescription*>& entities);
    void layOutEntity(const EntityDescription& entity);
    std::set<std::string> existingTables();

    std::mutex mutex_;
    Database database_;
    bool readOnly_;
    // The entities this store holds whose tables exist.
    std::set<std::string> entities_;
    std::map<std::string, std::unique_ptr<Statement>> statements_;
};

}  // namespace platform::sqlite
