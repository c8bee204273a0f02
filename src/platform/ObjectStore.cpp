#include "platform/ObjectStore.h"

#include <algorithm>

namespace platform {

std::string ObjectID::uriRepresentation() const {
    return entityName + (isTemporaryID() ? "/t" + std::to_string(-primaryKey)
                                         : "/p" + std::to_string(primaryKey));
}

bool ObjectsDidChange::touches(const std::string& entityName) const {
    auto named = [&](const ObjectID& id) { return id.entityName == entityName; };
    return std::any_of(inserted.begin(), inserted.end(), named) ||
           std::any_of(updated.begin(), updated.end(), named) ||
           std::any_of(deleted.begin(), deleted.end(), named);
}

}  // namespace platform
