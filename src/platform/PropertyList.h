#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace platform {

// A property-list value: the types the preferences store, bundle
// information and the property-list coder hold.
class PropertyList {
  public:
    using Data = std::vector<std::uint8_t>;
    using Date = std::chrono::system_clock::time_point;
    using Array = std::vector<PropertyList>;
    using Dictionary = std::map<std::string, PropertyList>;
    // Integers keep their signedness so that an unsigned value written
    // comes back unsigned.
    using Value = std::variant<std::string, Data, bool, std::int64_t, std::uint64_t, double, Date,
                               Array, Dictionary>;

    PropertyList() : value_(Dictionary{}) {}
    PropertyList(std::string v) : value_(std::move(v)) {}
    PropertyList(const char* v) : value_(std::string(v)) {}
    PropertyList(Data v) : value_(std::move(v)) {}
    PropertyList(bool v) : value_(v) {}
    PropertyList(int v) : value_(std::int64_t{v}) {}
    PropertyList(long v) : value_(std::int64_t{v}) {}
    PropertyList(long long v) : value_(std::int64_t{v}) {}
    PropertyList(unsigned v) : value_(std::uint64_t{v}) {}
    PropertyList(unsigned long v) : value_(std::uint64_t{v}) {}
    PropertyList(unsigned long long v) : value_(std::uint64_t{v}) {}
    PropertyList(double v) : value_(v) {}
    PropertyList(Date v) : value_(v) {}
    PropertyList(Array v) : value_(std::move(v)) {}
    PropertyList(Dictionary v) : value_(std::move(v)) {}

    const Value& value() const { return value_; }

    template <typename T>
    bool is() const {
        return std::holds_alternative<T>(value_);
    }
    template <typename T>
    const T* get() const {
        return std::get_if<T>(&value_);
    }

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

  private:
    Value value_;
};

}  // namespace platform
