#include "platform/sqlite/SaveChanges.h"

#include <optional>
#include <set>

namespace platform::sqlite {

namespace {

void validate(const Object& object) {
    for (std::size_t i = 0; i < object.entity.attributes.size(); ++i) {
        const auto& attribute = object.entity.attributes[i];
        if (!attribute.optional && std::holds_alternative<std::monostate>(object.values[i]))
            throw ObjectStoreError(ObjectStoreError::Code::validation,
                                   "The attribute \"" + attribute.name + "\" of " +
                                       object.entity.name + " is required");
    }
}

// The values to write for an object whose stored row moved on since it was
// read, or nothing when the policy keeps the stored row.
std::optional<std::vector<AttributeValue>> resolved(const Object& object,
                                                    const std::vector<AttributeValue>& stored,
                                                    MergePolicyType policy) {
    auto merged = stored;
    switch (policy) {
        case MergePolicyType::overwrite:
            return object.values;
        case MergePolicyType::rollback:
        case MergePolicyType::error:
            return std::nullopt;
        case MergePolicyType::mergeByPropertyObjectTrump:
            for (std::size_t i = 0; i < merged.size(); ++i) {
                if (object.changed[i])
                    merged[i] = object.values[i];
            }
            return merged;
        case MergePolicyType::mergeByPropertyStoreTrump:
            for (std::size_t i = 0; i < merged.size(); ++i) {
                if (object.changed[i] && stored[i] == object.committed[i])
                    merged[i] = object.values[i];
            }
            return merged;
    }
    return std::nullopt;
}

bool keepsObjectOverDeletion(MergePolicyType policy) {
    return policy == MergePolicyType::overwrite ||
           policy == MergePolicyType::mergeByPropertyObjectTrump;
}

// What happens to each object of one store, decided inside its transaction
// and applied to the objects only once it is committed.
struct StorePlan {
    struct Settle {
        std::shared_ptr<Object> object;
        std::vector<AttributeValue> values;
        std::int64_t version;
        std::optional<ObjectID> newID;
    };
    std::vector<Settle> settled;
    std::vector<std::shared_ptr<Object>> gone;
    std::vector<std::string> conflicts;
};

class StoreSave {
  public:
    StoreSave(Store& store, MergePolicyType policy) : store_(store), policy_(policy) {}

    void remove(const Object& object) { store_.remove(object.entity, object.id.primaryKey); }

    void update(const std::shared_ptr<Object>& object) {
        const auto& entity = object->entity;
        auto stored = store_.row(entity, object->id.primaryKey);
        if (!stored) {
            deletedMeanwhile(object);
            return;
        }
        if (stored->version == object->version) {
            write(object, object->values, stored->version + 1);
            return;
        }
        if (policy_ == MergePolicyType::error) {
            plan.conflicts.push_back(object->id.uriRepresentation());
            return;
        }
        if (auto values = resolved(*object, stored->values, policy_))
            write(object, std::move(*values), stored->version + 1);
        else
            plan.settled.push_back({object, stored->values, stored->version, std::nullopt});
    }

    void insert(const std::shared_ptr<Object>& object) {
        const auto key = store_.insert(object->entity, object->values);
        plan.settled.push_back({object, object->values, 1, ObjectID{object->entity.name, key}});
    }

    StorePlan plan;

  private:
    void write(const std::shared_ptr<Object>& object, std::vector<AttributeValue> values,
               std::int64_t version) {
        store_.update(object->entity, object->id.primaryKey, values, version);
        plan.settled.push_back({object, std::move(values), version, std::nullopt});
    }

    void deletedMeanwhile(const std::shared_ptr<Object>& object) {
        if (policy_ == MergePolicyType::error) {
            plan.conflicts.push_back(object->id.uriRepresentation() + " (deleted)");
        } else if (keepsObjectOverDeletion(policy_)) {
            store_.insert(object->entity, object->values, object->id.primaryKey,
                          object->version + 1);
            plan.settled.push_back({object, object->values, object->version + 1, std::nullopt});
        } else {
            plan.gone.push_back(object);
        }
    }

    Store& store_;
    MergePolicyType policy_;
};

[[noreturn]] void failConflicts(const std::vector<std::string>& conflicts) {
    std::string list;
    for (const auto& conflict : conflicts)
        list += (list.empty() ? "" : ", ") + conflict;
    throw ObjectStoreError(ObjectStoreError::Code::mergeConflict,
                           "Another save changed the objects first: " + list);
}

StorePlan saveToStore(Store& store, const PendingChanges& pending, MergePolicyType policy) {
    return store.access([&](Store& open) {
        if (open.isReadOnly())
            throw ObjectStoreError(ObjectStoreError::Code::readOnlyStore,
                                   "The store is open read-only");
        Transaction transaction(open.database());
        StoreSave save(open, policy);
        for (const auto& [id, object] : pending.deleted)
            save.remove(*object);
        for (const auto& [id, object] : pending.updated)
            save.update(object);
        for (const auto& [id, object] : pending.inserted)
            save.insert(object);
        if (!save.plan.conflicts.empty())
            failConflicts(save.plan.conflicts);
        transaction.commit();
        return std::move(save.plan);
    });
}

// The part of the pending changes whose entities live in the store.
PendingChanges changesIn(ContainerCore& container, const PendingChanges& pending, Store& store) {
    PendingChanges part;
    auto take = [&](const auto& from, auto& to) {
        for (const auto& [id, object] : from) {
            if (&container.storeFor(id.entityName) == &store)
                to.emplace(id, object);
        }
    };
    take(pending.inserted, part.inserted);
    take(pending.updated, part.updated);
    take(pending.deleted, part.deleted);
    return part;
}

void settle(const StorePlan& plan, SavedChanges& saved) {
    for (const auto& step : plan.settled) {
        auto& object = *step.object;
        const bool wasInserted = object.inserted;
        object.settle(step.values, step.version);
        if (step.newID)
            object.id = *step.newID;
        if (wasInserted)
            saved.inserted.push_back(object.id);
        else
            saved.updated.push_back({object.id, step.values, step.version});
    }
    for (const auto& object : plan.gone) {
        object->deleted = true;
        saved.deleted.push_back(object->id);
    }
}

}  // namespace

SavedChanges saveChanges(ContainerCore& container, PendingChanges& pending,
                         MergePolicyType policy) {
    for (const auto* changes : {&pending.inserted, &pending.updated}) {
        for (const auto& [id, object] : *changes)
            validate(*object);
    }
    std::set<Store*> stores;
    for (const auto* changes : {&pending.inserted, &pending.updated, &pending.deleted}) {
        for (const auto& [id, object] : *changes)
            stores.insert(&container.storeFor(id.entityName));
    }
    SavedChanges saved;
    for (auto* store : stores) {
        auto part = changesIn(container, pending, *store);
        auto plan = saveToStore(*store, part, policy);
        settle(plan, saved);
        for (const auto& [id, object] : part.deleted)
            saved.deleted.push_back(id);
        for (const auto* changes : {&part.inserted, &part.updated, &part.deleted}) {
            for (const auto& [id, object] : *changes) {
                pending.inserted.erase(id);
                pending.updated.erase(id);
                pending.deleted.erase(id);
            }
        }
    }
    return saved;
}

}  // namespace platform::sqlite
