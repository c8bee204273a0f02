#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace platform {

// The kinds of value an attribute of a stored object holds.
enum class AttributeType { string, integer, decimal, boolean, data };

// One attribute's value; std::monostate is "no value".
using AttributeValue = std::variant<std::monostate, std::string, std::int64_t, double, bool,
                                    std::vector<std::uint8_t>>;

// True when the value may be stored in an attribute of the type: a value of
// the type itself, or no value at all.
bool fitsAttributeType(const AttributeValue& value, AttributeType type);

struct AttributeDescription {
    std::string name;
    AttributeType type = AttributeType::string;
    // An attribute that isn't optional must have a value when its object is
    // saved.
    bool optional = false;
    // What a new object starts with.
    AttributeValue defaultValue;
};

struct EntityDescription {
    std::string name;
    std::vector<AttributeDescription> attributes;

    // Null when the entity has no such attribute.
    const AttributeDescription* attribute(std::string_view attributeName) const;
};

// The entities a store of objects knows, and its named configurations: sets
// of entities that one store holds.
struct ObjectModel {
    std::vector<EntityDescription> entities;
    std::map<std::string, std::vector<std::string>> configurations;

    // Null when the model has no such entity.
    const EntityDescription* entity(std::string_view entityName) const;
    // The entities of a configuration; every entity when no configuration is
    // named. Empty for an unknown configuration.
    std::vector<const EntityDescription*> entitiesInConfiguration(
        const std::optional<std::string>& configuration) const;
};

}  // namespace platform
