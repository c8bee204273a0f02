#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/ObjectStore.h"

namespace platform::sqlite {

class Context;

// An object of a context. Its public fields belong to its context and are
// used with the context's gate held; the ManagedObject operations take the
// gate themselves.
class Object final : public ManagedObject, public std::enable_shared_from_this<Object> {
  public:
    Object(std::shared_ptr<const EntityDescription> entity, ObjectID id,
           std::weak_ptr<Context> context);

    std::string entityName() const override { return entity.name; }
    ObjectID objectID() const override;
    AttributeValue value(const std::string& attribute) const override;
    void setValue(const std::string& attribute, AttributeValue value) override;
    bool hasChanges() const override;
    bool isInserted() const override;
    bool isDeleted() const override;

    // The attribute's place in the entity; throws unknownAttribute.
    std::size_t indexOf(const std::string& attribute) const;
    bool changedAny() const;
    // Takes the store's state as its own, dropping its changes.
    void settle(std::vector<AttributeValue> stored, std::int64_t storedVersion);
    // Takes the store's newer state and keeps its own changes on top.
    void refresh(const std::vector<AttributeValue>& stored, std::int64_t storedVersion);
    // Drops its changes.
    void revert();

  private:
    const std::shared_ptr<const EntityDescription> described_;

  public:
    const EntityDescription& entity;
    ObjectID id;
    std::vector<AttributeValue> values;
    // The attributes as the store had them at `version`.
    std::vector<AttributeValue> committed;
    std::int64_t version = 0;
    std::vector<bool> changed;
    bool inserted = false;
    bool deleted = false;

  private:
    std::weak_ptr<Context> context_;
};

}  // namespace platform::sqlite
