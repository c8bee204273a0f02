#pragma once

#include <compare>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/ObjectModel.h"
#include "platform/Subscription.h"

// The persistent object store: a model of entities, containers that hold
// stores of objects of that model, and contexts in which objects are
// fetched, changed and saved.
namespace platform {

class ObjectStoreError : public std::runtime_error {
  public:
    enum class Code {
        modelUnreadable,   // the model file is missing or malformed
        storeUnopenable,   // a store couldn't be opened or laid out
        readOnlyStore,     // a save into a store opened read-only
        unknownEntity,     // an entity the model (or the store) doesn't have
        unknownAttribute,  // an attribute the entity doesn't have
        wrongValueType,    // a value that doesn't fit the attribute's type
        validation,        // a required attribute without a value at save
        mergeConflict,     // another save changed the object first
        objectNotFound,    // no object of that identifier
        storeFailure,      // the store's own failure (disk full, locked)
    };

    ObjectStoreError(Code code, const std::string& message)
        : std::runtime_error(message), code_(code) {}
    Code code() const { return code_; }

  private:
    Code code_;
};

// How a save resolves a conflict with a change that another context or
// process saved to the same object since this context read it.
enum class MergePolicyType {
    error,                       // the save fails and nothing is written
    mergeByPropertyStoreTrump,   // attribute by attribute; the stored change wins
    mergeByPropertyObjectTrump,  // attribute by attribute; this context's change wins
    overwrite,                   // this context's object replaces the stored one
    rollback,                    // this context's changes to the object are dropped
};

// The permanent identity of a saved object, or a temporary one (a negative
// key) for an object inserted and not yet saved.
struct ObjectID {
    std::string entityName;
    std::int64_t primaryKey = 0;

    bool isTemporaryID() const { return primaryKey < 0; }
    // "<entity>/p<key>", "<entity>/t<key>" for a temporary identity.
    std::string uriRepresentation() const;

    friend auto operator<=>(const ObjectID&, const ObjectID&) = default;
    friend bool operator==(const ObjectID&, const ObjectID&) = default;
};

// An object of a context, whose attributes are read and written by name.
// Use it only on the context it came from.
class ManagedObject {
  public:
    virtual ~ManagedObject() = default;
    virtual std::string entityName() const = 0;
    virtual ObjectID objectID() const = 0;
    // Throws unknownAttribute.
    virtual AttributeValue value(const std::string& attribute) const = 0;
    // Throws unknownAttribute and wrongValueType.
    virtual void setValue(const std::string& attribute, AttributeValue value) = 0;
    virtual bool hasChanges() const = 0;
    virtual bool isInserted() const = 0;
    virtual bool isDeleted() const = 0;
};
using ManagedObjectPtr = std::shared_ptr<ManagedObject>;

struct SortDescriptor {
    std::string key;
    bool ascending = true;
};

// One condition of a fetch; the conditions of a request must all hold.
struct Comparison {
    enum class Operator { equal, notEqual, less, lessOrEqual, greater, greaterOrEqual };
    std::string key;
    Operator op = Operator::equal;
    AttributeValue value;
};

struct FetchRequest {
    std::string entityName;
    std::vector<Comparison> predicate;
    std::vector<SortDescriptor> sortDescriptors;
    // No limit when zero.
    std::size_t fetchLimit = 0;
};

// What a save, or the merge of another context's save, changed in a context.
struct ObjectsDidChange {
    std::vector<ObjectID> inserted;
    std::vector<ObjectID> updated;
    std::vector<ObjectID> deleted;
    // Entities with any change: for quick filtering.
    bool touches(const std::string& entityName) const;
};

// A scratch space of objects over the container's stores. A context is
// confined by its own lock rather than a queue: each call takes the lock, and
// performAndWait() holds it around a block, on the calling thread, so a
// context may be used from any thread.
class ManagedObjectContext {
  public:
    virtual ~ManagedObjectContext() = default;

    virtual std::string name() const = 0;
    virtual void setName(std::string name) = 0;
    virtual MergePolicyType mergePolicy() const = 0;
    virtual void setMergePolicy(MergePolicyType policy) = 0;
    // When set, the saves of the container's other contexts are merged into
    // this one's objects (their unsaved changes kept on top).
    virtual bool automaticallyMergesChangesFromParent() const = 0;
    virtual void setAutomaticallyMergesChangesFromParent(bool merges) = 0;

    // Runs the block with the context's lock held; blocks may nest.
    virtual void performAndWait(const std::function<void()>& block) = 0;

    // Throws unknownEntity.
    virtual ManagedObjectPtr insertNewObject(const std::string& entityName) = 0;
    // Saved objects that match, with this context's unsaved changes applied:
    // its inserted objects join, its deleted ones leave. Throws
    // unknownEntity, unknownAttribute and storeFailure.
    virtual std::vector<ManagedObjectPtr> fetch(const FetchRequest& request) = 0;
    // Throws objectNotFound.
    virtual ManagedObjectPtr existingObject(const ObjectID& id) = 0;
    virtual void deleteObject(const ManagedObjectPtr& object) = 0;

    virtual bool hasChanges() const = 0;
    // Writes the context's changes to the stores, each store in one
    // transaction, resolving conflicts by the merge policy. On failure
    // nothing of that store is written and the changes stay unsaved.
    virtual void save() = 0;
    // Drops the unsaved changes.
    virtual void rollback() = 0;

    // Told after this context saved, and after another context's save was
    // merged into this one, on the thread that did it, with the context's
    // lock held.
    virtual Subscription observeObjectsDidChange(
        std::function<void(const ObjectsDidChange&)> handler) = 0;
};
using ManagedObjectContextPtr = std::shared_ptr<ManagedObjectContext>;

// Where and how a store keeps its objects.
struct PersistentStoreDescription {
    enum class Type { sqlite, inMemory };
    Type type = Type::sqlite;
    std::filesystem::path url;
    // The model configuration whose entities this store holds; all when none.
    std::optional<std::string> configuration;
    bool readOnly = false;
    // Set on the store's connection when it is opened, by name.
    std::map<std::string, std::string> pragmas;
    // Gather statistics for the query planner when the store is opened.
    bool analyze = false;
    // Rebuild the file to its smallest size when the store is opened.
    bool vacuum = false;
};

// A model's stores and contexts, under one name.
class PersistentContainer {
  public:
    virtual ~PersistentContainer() = default;
    virtual std::string name() const = 0;
    virtual const ObjectModel& managedObjectModel() const = 0;
    // Opens the default store: a file named after the container in the
    // backend's store folder. Throws storeUnopenable.
    virtual void loadPersistentStores() = 0;
    // Opens a store; an entity lives in the first store whose configuration
    // holds it. Throws storeUnopenable.
    virtual void addPersistentStore(const PersistentStoreDescription& description) = 0;
    virtual std::size_t persistentStoreCount() const = 0;
    // The long-lived context of the program's main thread.
    virtual ManagedObjectContextPtr viewContext() = 0;
    virtual ManagedObjectContextPtr newBackgroundContext() = 0;
};
using PersistentContainerPtr = std::shared_ptr<PersistentContainer>;

// The platform's object store service.
class ObjectStore {
  public:
    virtual ~ObjectStore() = default;
    // Where a model file of that name (without extension) is, if anywhere.
    virtual std::optional<std::filesystem::path> urlForModel(const std::string& fileName) const = 0;
    // Throws modelUnreadable.
    virtual ObjectModel loadModel(const std::filesystem::path& url) const = 0;
    virtual PersistentContainerPtr makeContainer(const std::string& name, ObjectModel model) = 0;
};

}  // namespace platform
