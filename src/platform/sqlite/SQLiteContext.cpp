#include "platform/sqlite/SQLiteContext.h"

#include <algorithm>
#include <mutex>

#include "platform/LockedAccess.h"
#include "platform/sqlite/SaveChanges.h"
#include "platform/sqlite/ValueOrder.h"

namespace platform::sqlite {

namespace {

void requireAttributes(const EntityDescription& entity, const FetchRequest& request) {
    auto require = [&](const std::string& key) {
        if (!entity.attribute(key))
            throw ObjectStoreError(
                ObjectStoreError::Code::unknownAttribute,
                "The entity " + entity.name + " has no attribute \"" + key + "\"");
    };
    for (const auto& condition : request.predicate)
        require(condition.key);
    for (const auto& sort : request.sortDescriptors)
        require(sort.key);
}

bool matches(const Object& object, const FetchRequest& request) {
    return std::all_of(
        request.predicate.begin(), request.predicate.end(), [&](const auto& condition) {
            return satisfies(object.values[object.indexOf(condition.key)], condition);
        });
}

// The request's order, then the order of identity, as the store sorts.
bool precedes(const Object& left, const Object& right, const FetchRequest& request) {
    for (const auto& sort : request.sortDescriptors) {
        const int order = compareValues(left.values[left.indexOf(sort.key)],
                                        right.values[right.indexOf(sort.key)]);
        if (order != 0)
            return sort.ascending ? order < 0 : order > 0;
    }
    return left.id < right.id;
}

}  // namespace

bool PendingChanges::touches(const std::string& entityName) const {
    auto named = [&](const auto& entry) { return entry.first.entityName == entityName; };
    return std::any_of(inserted.begin(), inserted.end(), named) ||
           std::any_of(updated.begin(), updated.end(), named) ||
           std::any_of(deleted.begin(), deleted.end(), named);
}

std::shared_ptr<Context> Context::make(std::shared_ptr<ContainerCore> container, std::string name) {
    std::shared_ptr<Context> context(new Context(container, std::move(name)));
    container->enroll(context);
    return context;
}

Context::Context(std::shared_ptr<ContainerCore> container, std::string name)
    : container_(std::move(container)), name_(std::move(name)) {}

std::string Context::name() const {
    return readLocked(gate_, name_);
}

void Context::setName(std::string name) {
    writeLocked(gate_, name_, std::move(name));
}

MergePolicyType Context::mergePolicy() const {
    return readLocked(gate_, mergePolicy_);
}

void Context::setMergePolicy(MergePolicyType policy) {
    writeLocked(gate_, mergePolicy_, policy);
}

bool Context::automaticallyMergesChangesFromParent() const {
    return readLocked(gate_, mergesAutomatically_);
}

void Context::setAutomaticallyMergesChangesFromParent(bool merges) {
    writeLocked(gate_, mergesAutomatically_, merges);
}

void Context::performAndWait(const std::function<void()>& block) {
    std::lock_guard access(gate_);
    block();
}

ManagedObjectPtr Context::insertNewObject(const std::string& entityName) {
    std::lock_guard access(gate_);
    const auto& entity = container_->entity(entityName);
    auto object =
        std::make_shared<Object>(container_->sharedEntity(entity),
                                 ObjectID{entity.name, --lastTemporaryKey_}, weak_from_this());
    for (std::size_t i = 0; i < entity.attributes.size(); ++i)
        object->values[i] = entity.attributes[i].defaultValue;
    object->inserted = true;
    std::fill(object->changed.begin(), object->changed.end(), true);
    registered_[object->id] = object;
    pending_.inserted[object->id] = object;
    return object;
}

std::shared_ptr<Object> Context::registeredObject(const ObjectID& id) const {
    auto found = registered_.find(id);
    return found == registered_.end() ? nullptr : found->second.lock();
}

// A registered object without changes takes the row's state, so that a
// fetch shows what is stored; one with changes keeps them and the version it
// read, so that its save still sees a conflict.
std::shared_ptr<Object> Context::objectForRow(const EntityDescription& entity,
                                              const StoredRow& row) {
    const ObjectID id{entity.name, row.primaryKey};
    auto object = registeredObject(id);
    if (!object) {
        object = std::make_shared<Object>(container_->sharedEntity(entity), id, weak_from_this());
        registered_[id] = object;
        object->settle(row.values, row.version);
    } else if (!object->changedAny() && !object->deleted) {
        object->settle(row.values, row.version);
    }
    return object;
}

std::vector<ManagedObjectPtr> Context::fetch(const FetchRequest& request) {
    std::lock_guard access(gate_);
    const auto& entity = container_->entity(request.entityName);
    requireAttributes(entity, request);
    auto& store = container_->storeFor(entity.name);
    // With unsaved changes the store's answer isn't final: take every row and
    // decide here, on the objects as this context has them.
    const bool changedHere = pending_.touches(entity.name);
    auto rows =
        store.access([&](Store& open) { return open.select(entity, request, changedHere); });
    std::vector<std::shared_ptr<Object>> objects;
    objects.reserve(rows.size());
    for (const auto& row : rows)
        objects.push_back(objectForRow(entity, row));
    if (changedHere)
        applyPendingChanges(request, objects);
    return {objects.begin(), objects.end()};
}

void Context::applyPendingChanges(const FetchRequest& request,
                                  std::vector<std::shared_ptr<Object>>& objects) const {
    for (const auto& [id, object] : pending_.inserted) {
        if (id.entityName == request.entityName)
            objects.push_back(object);
    }
    std::erase_if(
        objects, [&](const auto& object) { return object->deleted || !matches(*object, request); });
    std::stable_sort(objects.begin(), objects.end(), [&](const auto& left, const auto& right) {
        return precedes(*left, *right, request);
    });
    if (request.fetchLimit > 0 && objects.size() > request.fetchLimit)
        objects.resize(request.fetchLimit);
}

ManagedObjectPtr Context::existingObject(const ObjectID& id) {
    std::lock_guard access(gate_);
    if (auto object = registeredObject(id); object && !object->deleted)
        return object;
    if (!id.isTemporaryID()) {
        const auto& entity = container_->entity(id.entityName);
        auto row = container_->storeFor(entity.name).access([&](Store& open) {
            return open.row(entity, id.primaryKey);
        });
        if (row)
            return objectForRow(entity, *row);
    }
    throw ObjectStoreError(ObjectStoreError::Code::objectNotFound,
                           "No object " + id.uriRepresentation() + " in the store");
}

void Context::deleteObject(const ManagedObjectPtr& managed) {
    std::lock_guard access(gate_);
    auto object = std::dynamic_pointer_cast<Object>(managed);
    if (!object || object->deleted)
        return;
    object->deleted = true;
    pending_.updated.erase(object->id);
    if (object->inserted) {
        pending_.inserted.erase(object->id);
        registered_.erase(object->id);
    } else {
        pending_.deleted[object->id] = object;
    }
}

void Context::noteUpdated(const std::shared_ptr<Object>& object) {
    if (object->changedAny())
        pending_.updated[object->id] = object;
    else
        pending_.updated.erase(object->id);
}

bool Context::hasChanges() const {
    std::lock_guard access(gate_);
    return !pending_.empty();
}

void Context::save() {
    std::lock_guard access(gate_);
    if (pending_.empty())
        return;
    auto inserted = pending_.inserted;
    auto saved = std::make_shared<SavedChanges>(saveChanges(*container_, pending_, mergePolicy_));
    for (const auto& [temporaryID, object] : inserted) {
        registered_.erase(temporaryID);
        registered_[object->id] = object;
    }
    for (const auto& id : saved->deleted)
        registered_.erase(id);
    didChange_.emit(saved->summary());
    container_->broadcast(*this, saved);
}

void Context::rollback() {
    std::lock_guard access(gate_);
    for (const auto& [id, object] : pending_.inserted) {
        object->deleted = true;
        registered_.erase(id);
    }
    for (const auto* changes : {&pending_.updated, &pending_.deleted}) {
        for (const auto& [id, object] : *changes)
            object->revert();
    }
    pending_ = PendingChanges();
}

Subscription Context::observeObjectsDidChange(
    std::function<void(const ObjectsDidChange&)> handler) {
    return didChange_.connect(std::move(handler));
}

// Objects this context holds take the saved state under their own changes;
// objects deleted there leave it. Observers are told even when none of the
// saved objects was held here, since a new object may belong in their
// fetch.
void Context::mergeSaved(const SavedChanges& saved) {
    if (!mergesAutomatically_)
        return;
    for (const auto& update : saved.updated) {
        if (auto object = registeredObject(update.id))
            object->refresh(update.values, update.version);
    }
    for (const auto& id : saved.deleted) {
        if (auto object = registeredObject(id)) {
            object->deleted = true;
            pending_.updated.erase(id);
        }
        registered_.erase(id);
    }
    didChange_.emit(saved.summary());
}

}  // namespace platform::sqlite
