#include "platform/sqlite/ContainerCore.h"

#include <algorithm>

#include "platform/sqlite/SQLiteContext.h"

namespace platform::sqlite {

ObjectsDidChange SavedChanges::summary() const {
    ObjectsDidChange change{inserted, {}, deleted};
    for (const auto& update : updated)
        change.updated.push_back(update.id);
    return change;
}

const EntityDescription& ContainerCore::entity(const std::string& entityName) const {
    if (auto* found = model_->entity(entityName))
        return *found;
    throw ObjectStoreError(ObjectStoreError::Code::unknownEntity,
                           "The model has no entity \"" + entityName + "\"");
}

Store& ContainerCore::storeFor(const std::string& entityName) {
    std::lock_guard guard(mutex_);
    for (const auto& store : stores_) {
        if (store->holds(entityName))
            return *store;
    }
    throw ObjectStoreError(ObjectStoreError::Code::unknownEntity,
                           "No store holds the entity \"" + entityName + "\"");
}

void ContainerCore::addStore(const PersistentStoreDescription& description) {
    auto store = std::make_unique<Store>(description, *model_);
    std::lock_guard guard(mutex_);
    stores_.push_back(std::move(store));
}

std::size_t ContainerCore::storeCount() const {
    std::lock_guard guard(mutex_);
    return stores_.size();
}

void ContainerCore::enroll(const std::shared_ptr<Context>& context) {
    std::lock_guard guard(mutex_);
    std::erase_if(contexts_, [](const auto& weak) { return weak.expired(); });
    contexts_.push_back(context);
}

void ContainerCore::broadcast(const Context& from,
                              const std::shared_ptr<const SavedChanges>& saved) {
    std::vector<std::shared_ptr<Context>> others;
    {
        std::lock_guard guard(mutex_);
        for (const auto& weak : contexts_) {
            auto context = weak.lock();
            if (context && context.get() != &from)
                others.push_back(std::move(context));
        }
    }
    for (const auto& context : others) {
        context->gate().post([weak = std::weak_ptr<Context>(context), saved] {
            if (auto alive = weak.lock())
                alive->mergeSaved(*saved);
        });
    }
}

}  // namespace platform::sqlite
