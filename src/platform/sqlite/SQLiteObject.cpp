#include "platform/sqlite/SQLiteObject.h"

#include <algorithm>
#include <mutex>

#include "platform/sqlite/SQLiteContext.h"

namespace platform::sqlite {

namespace {

// Holds the gate of the object's context while it lives; nothing when the
// context is gone.
class ContextAccess {
  public:
    explicit ContextAccess(const std::weak_ptr<Context>& context) : context_(context.lock()) {
        if (context_)
            context_->gate().lock();
    }
    ~ContextAccess() {
        if (context_)
            context_->gate().unlock();
    }
    ContextAccess(const ContextAccess&) = delete;
    ContextAccess& operator=(const ContextAccess&) = delete;
    Context* context() const { return context_.get(); }

  private:
    std::shared_ptr<Context> context_;
};

}  // namespace

Object::Object(std::shared_ptr<const EntityDescription> described, ObjectID identity,
               std::weak_ptr<Context> context)
    : described_(std::move(described)),
      entity(*described_),
      id(std::move(identity)),
      values(entity.attributes.size()),
      committed(entity.attributes.size()),
      changed(entity.attributes.size(), false),
      context_(std::move(context)) {}

ObjectID Object::objectID() const {
    ContextAccess access(context_);
    return id;
}

std::size_t Object::indexOf(const std::string& attribute) const {
    for (std::size_t i = 0; i < entity.attributes.size(); ++i) {
        if (entity.attributes[i].name == attribute)
            return i;
    }
    throw ObjectStoreError(ObjectStoreError::Code::unknownAttribute,
                           "The entity " + entity.name + " has no attribute \"" + attribute + "\"");
}

AttributeValue Object::value(const std::string& attribute) const {
    ContextAccess access(context_);
    return values[indexOf(attribute)];
}

void Object::setValue(const std::string& attribute, AttributeValue value) {
    ContextAccess access(context_);
    const auto index = indexOf(attribute);
    if (!fitsAttributeType(value, entity.attributes[index].type))
        throw ObjectStoreError(
            ObjectStoreError::Code::wrongValueType,
            "The value doesn't fit the attribute \"" + attribute + "\" of " + entity.name);
    values[index] = std::move(value);
    changed[index] = inserted || values[index] != committed[index];
    if (access.context() && !inserted && !deleted)
        access.context()->noteUpdated(shared_from_this());
}

bool Object::hasChanges() const {
    ContextAccess access(context_);
    return inserted || deleted || changedAny();
}

bool Object::isInserted() const {
    ContextAccess access(context_);
    return inserted;
}

bool Object::isDeleted() const {
    ContextAccess access(context_);
    return deleted;
}

bool Object::changedAny() const {
    return std::find(changed.begin(), changed.end(), true) != changed.end();
}

void Object::settle(std::vector<AttributeValue> stored, std::int64_t storedVersion) {
    committed = std::move(stored);
    values = committed;
    version = storedVersion;
    std::fill(changed.begin(), changed.end(), false);
    inserted = false;
}

void Object::refresh(const std::vector<AttributeValue>& stored, std::int64_t storedVersion) {
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (!changed[i])
            values[i] = stored[i];
    }
    committed = stored;
    version = storedVersion;
}

void Object::revert() {
    values = committed;
    std::fill(changed.begin(), changed.end(), false);
    deleted = false;
}

}  // namespace platform::sqlite
