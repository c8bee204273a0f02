#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "platform/Geometry.h"
#include "platform/VariantValue.h"

namespace platform {

using AXErrorCode = std::int32_t;

// An accessibility element handle of the platform. Backends derive their own
// handle; the core compares, hashes and prints them only through this
// interface.
class AXUIElementHandle {
  public:
    virtual ~AXUIElementHandle() = default;
    virtual bool isEqual(const AXUIElementHandle& other) const = 0;
    virtual std::size_t hash() const = 0;
    // The handle's own textual form.
    virtual std::string description() const = 0;
};

using AXUIElementRef = std::shared_ptr<const AXUIElementHandle>;

inline bool CFEqual(const AXUIElementRef& a, const AXUIElementRef& b) {
    if (a == b)
        return true;
    return a && b && a->isEqual(*b);
}
inline std::size_t CFHash(const AXUIElementRef& a) {
    return a ? a->hash() : 0;
}

// A boxed geometry value or error code, in the platform's type numbering.
struct AXValue {
    enum class Type : std::int32_t {
        cgPoint = 1,
        cgSize = 2,
        cgRect = 3,
        cfRange = 4,
        axError = 5,
        illegal = 0,
    };
    Type type = Type::illegal;
    std::variant<std::monostate, CGPoint, CGSize, CGRect, CFRange, AXErrorCode> value;

    static AXValue point(CGPoint p) { return {Type::cgPoint, p}; }
    static AXValue size(CGSize s) { return {Type::cgSize, s}; }
    static AXValue rect(CGRect r) { return {Type::cgRect, r}; }
    static AXValue range(CFRange r) { return {Type::cfRange, r}; }
    static AXValue error(AXErrorCode e) { return {Type::axError, e}; }
};

struct CFNull {
    friend bool operator==(const CFNull&, const CFNull&) = default;
};

struct CFURL {
    std::filesystem::path path;
};

class CFValue;

// The kinds of value the accessibility interface hands over.
using CFValueKinds =
    std::variant<CFNull, bool, std::int64_t, double, std::string, CFURL, AXUIElementRef, AXValue,
                 std::vector<CFValue>, std::map<std::string, CFValue>>;

// A value the accessibility interface hands over: a platform object of any
// of these kinds.
class CFValue : public VariantValue<CFValueKinds> {
  public:
    using Array = std::vector<CFValue>;
    using Dictionary = std::map<std::string, CFValue>;

    CFValue() : VariantValue(CFNull{}) {}
    CFValue(bool v) : VariantValue(v) {}
    CFValue(int v) : VariantValue(std::int64_t{v}) {}
    CFValue(std::int64_t v) : VariantValue(v) {}
    CFValue(double v) : VariantValue(v) {}
    CFValue(std::string v) : VariantValue(std::move(v)) {}
    CFValue(const char* v) : VariantValue(std::string(v)) {}
    CFValue(CFURL v) : VariantValue(std::move(v)) {}
    CFValue(AXUIElementRef v) : VariantValue(std::move(v)) {}
    CFValue(AXValue v) : VariantValue(std::move(v)) {}
    CFValue(Array v) : VariantValue(std::move(v)) {}
    CFValue(Dictionary v) : VariantValue(std::move(v)) {}
    CFValue(CFNull v) : VariantValue(v) {}
};

}  // namespace platform
