#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "platform/VariantValue.h"

namespace platform {

class PropertyList;

// The kinds a property-list value holds. Integers keep their signedness so
// that an unsigned value written comes back unsigned.
using PropertyListKinds =
    std::variant<std::string, std::vector<std::uint8_t>, bool, std::int64_t, std::uint64_t, double,
                 std::chrono::system_clock::time_point, std::vector<PropertyList>,
                 std::map<std::string, PropertyList>>;

// A property-list value: the types the preferences store, bundle
// information and the property-list coder hold.
class PropertyList : public VariantValue<PropertyListKinds> {
  public:
    using Data = std::vector<std::uint8_t>;
    using Date = std::chrono::system_clock::time_point;
    using Array = std::vector<PropertyList>;
    using Dictionary = std::map<std::string, PropertyList>;

    PropertyList() : VariantValue(Dictionary{}) {}
    PropertyList(std::string v) : VariantValue(std::move(v)) {}
    PropertyList(const char* v) : VariantValue(std::string(v)) {}
    PropertyList(Data v) : VariantValue(std::move(v)) {}
    PropertyList(bool v) : VariantValue(v) {}
    PropertyList(int v) : VariantValue(std::int64_t{v}) {}
    PropertyList(long v) : VariantValue(std::int64_t{v}) {}
    PropertyList(long long v) : VariantValue(std::int64_t{v}) {}
    PropertyList(unsigned v) : VariantValue(std::uint64_t{v}) {}
    PropertyList(unsigned long v) : VariantValue(std::uint64_t{v}) {}
    PropertyList(unsigned long long v) : VariantValue(std::uint64_t{v}) {}
    PropertyList(double v) : VariantValue(v) {}
    PropertyList(Date v) : VariantValue(v) {}
    PropertyList(Array v) : VariantValue(std::move(v)) {}
    PropertyList(Dictionary v) : VariantValue(std::move(v)) {}

    const std::string* string() const { return get<std::string>(); }
    const Array* array() const { return get<Array>(); }
    const Dictionary* dictionary() const { return get<Dictionary>(); }
    const bool* boolean() const { return get<bool>(); }

    // The value of an integer of either signedness, when it fits.
    std::optional<std::int64_t> signedInteger() const;
    std::optional<std::uint64_t> unsignedInteger() const;
    bool isInteger() const { return is<std::int64_t>() || is<std::uint64_t>(); }
    // Any number (integer or real) as a double.
    std::optional<double> number() const;

    // Integers compare by value whatever their signedness, as the platform's
    // numbers do.
    friend bool operator==(const PropertyList& a, const PropertyList& b);

    // A short readable rendering, for messages and tests.
    std::string debugDescription() const;
};

}  // namespace platform
