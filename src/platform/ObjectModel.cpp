#include "platform/ObjectModel.h"

#include <algorithm>

namespace platform {

bool fitsAttributeType(const AttributeValue& value, AttributeType type) {
    if (std::holds_alternative<std::monostate>(value))
        return true;
    switch (type) {
        case AttributeType::string:
            return std::holds_alternative<std::string>(value);
        case AttributeType::integer:
            return std::holds_alternative<std::int64_t>(value);
        case AttributeType::decimal:
            return std::holds_alternative<double>(value);
        case AttributeType::boolean:
            return std::holds_alternative<bool>(value);
        case AttributeType::data:
            return std::holds_alternative<std::vector<std::uint8_t>>(value);
    }
    return false;
}

const AttributeDescription* EntityDescription::attribute(std::string_view attributeName) const {
    auto found = std::find_if(attributes.begin(), attributes.end(), [&](const auto& attribute) {
        return attribute.name == attributeName;
    });
    return found == attributes.end() ? nullptr : &*found;
}

const EntityDescription* ObjectModel::entity(std::string_view entityName) const {
    auto found = std::find_if(entities.begin(), entities.end(),
                              [&](const auto& entity) { return entity.name == entityName; });
    return found == entities.end() ? nullptr : &*found;
}

std::vector<const EntityDescription*> ObjectModel::entitiesInConfiguration(
    const std::optional<std::string>& configuration) const {
    std::vector<const EntityDescription*> found;
    if (!configuration) {
        for (const auto& entity : entities)
            found.push_back(&entity);
        return found;
    }
    auto names = configurations.find(*configuration);
    if (names == configurations.end())
        return found;
    for (const auto& name : names->second) {
        if (auto* described = entity(name))
            found.push_back(described);
    }
    return found;
}

}  // namespace platform
