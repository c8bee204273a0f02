#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "platform/ObjectStore.h"
#include "platform/sqlite/SQLiteStore.h"

namespace platform::sqlite {

class Context;

// What one save wrote, as the container's other contexts merge it.
struct SavedChanges {
    struct Update {
        ObjectID id;
        std::vector<AttributeValue> values;
        std::int64_t version = 0;
    };
    std::vector<ObjectID> inserted;
    std::vector<Update> updated;
    std::vector<ObjectID> deleted;

    ObjectsDidChange summary() const;
};

// What a container's contexts share: the model, the stores and the list of
// contexts to tell of each save. Contexts keep it alive.
class ContainerCore {
  public:
    explicit ContainerCore(ObjectModel model)
        : model_(std::make_shared<const ObjectModel>(std::move(model))) {}

    const ObjectModel& model() const { return *model_; }
    // Throws unknownEntity.
    const EntityDescription& entity(const std::string& entityName) const;
    // The entity of this model, kept alive with the model: objects hold it,
    // and may outlive their context and container.
    std::shared_ptr<const EntityDescription> sharedEntity(const EntityDescription& entity) const {
        return {model_, &entity};
    }
    // The first store that holds the entity; throws unknownEntity when none.
    Store& storeFor(const std::string& entityName);

    void addStore(const PersistentStoreDescription& description);
    std::size_t storeCount() const;

    void enroll(const std::shared_ptr<Context>& context);
    // Posts the save to every other context, which merges it if it merges
    // changes automatically.
    void broadcast(const Context& from, const std::shared_ptr<const SavedChanges>& saved);

  private:
    const std::shared_ptr<const ObjectModel> model_;
    mutable std::mutex mutex_;
    std::vector<std::unique_ptr<Store>> stores_;
    std::vector<std::weak_ptr<Context>> contexts_;
};

}  // namespace platform::sqlite
