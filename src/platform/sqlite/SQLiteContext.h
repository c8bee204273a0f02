#pragma once

#include <map>
#include <memory>
#include <string>

#include "platform/ObjectStore.h"
#include "platform/sqlite/ContainerCore.h"
#include "platform/sqlite/ContextGate.h"
#include "platform/sqlite/SQLiteObject.h"
#include "support/Signal.h"

namespace platform::sqlite {

// The objects a context has fetched or made, and its unsaved changes.
struct PendingChanges {
    std::map<ObjectID, std::shared_ptr<Object>> inserted;
    std::map<ObjectID, std::shared_ptr<Object>> updated;
    std::map<ObjectID, std::shared_ptr<Object>> deleted;

    bool empty() const { return inserted.empty() && updated.empty() && deleted.empty(); }
    bool touches(const std::string& entityName) const;
};

class Context final : public ManagedObjectContext, public std::enable_shared_from_this<Context> {
  public:
    static std::shared_ptr<Context> make(std::shared_ptr<ContainerCore> container,
                                         std::string name);

    std::string name() const override;
    void setName(std::string name) override;
    MergePolicyType mergePolicy() const override;
    void setMergePolicy(MergePolicyType policy) override;
    bool automaticallyMergesChangesFromParent() const override;
    void setAutomaticallyMergesChangesFromParent(bool merges) override;

    void performAndWait(const std::function<void()>& block) override;

    ManagedObjectPtr insertNewObject(const std::string& entityName) override;
    std::vector<ManagedObjectPtr> fetch(const FetchRequest& request) override;
    ManagedObjectPtr existingObject(const ObjectID& id) override;
    void deleteObject(const ManagedObjectPtr& object) override;

    bool hasChanges() const override;
    void save() override;
    void rollback() override;

    Subscription observeObjectsDidChange(
        std::function<void(const ObjectsDidChange&)> handler) override;

    ContextGate& gate() const { return gate_; }
    // An object of this context changed an attribute.
    void noteUpdated(const std::shared_ptr<Object>& object);
    // Another context's save, posted through the gate.
    void mergeSaved(const SavedChanges& saved);

  private:
    Context(std::shared_ptr<ContainerCore> container, std::string name);

    std::shared_ptr<Object> registeredObject(const ObjectID& id) const;
    std::shared_ptr<Object> objectForRow(const EntityDescription& entity, const StoredRow& row);
    void applyPendingChanges(const FetchRequest& request,
                             std::vector<std::shared_ptr<Object>>& objects) const;
    void settleSaved(const SavedChanges& saved);

    const std::shared_ptr<ContainerCore> container_;
    mutable ContextGate gate_;
    std::string name_;
    MergePolicyType mergePolicy_ = MergePolicyType::error;
    bool mergesAutomatically_ = false;
    std::map<ObjectID, std::weak_ptr<Object>> registered_;
    PendingChanges pending_;
    std::int64_t lastTemporaryKey_ = 0;
    quillbox::Signal<ObjectsDidChange> didChange_;
};

}  // namespace platform::sqlite
