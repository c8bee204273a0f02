#include "platform/PropertyList.h"

#include <limits>
#include <sstream>

namespace platform {

std::optional<std::int64_t> PropertyList::signedInteger() const {
    if (auto v = get<std::int64_t>())
        return *v;
    if (auto v = get<std::uint64_t>()) {
        if (*v <= static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
            return static_cast<std::int64_t>(*v);
        }
    }
    return std::nullopt;
}

std::optional<std::uint64_t> PropertyList::unsignedInteger() const {
    if (auto v = get<std::uint64_t>())
        return *v;
    if (auto v = get<std::int64_t>()) {
        if (*v >= 0)
            return static_cast<std::uint64_t>(*v);
    }
    return std::nullopt;
}

std::optional<double> PropertyList::number() const {
    if (auto v = get<double>())
        return *v;
    if (auto v = get<std::int64_t>())
        return static_cast<double>(*v);
    if (auto v = get<std::uint64_t>())
        return static_cast<double>(*v);
    return std::nullopt;
}

bool operator==(const PropertyList& a, const PropertyList& b) {
    if (a.isInteger() && b.isInteger()) {
        auto as = a.signedInteger(), bs = b.signedInteger();
        if (as && bs)
            return *as == *bs;
        auto au = a.unsignedInteger(), bu = b.unsignedInteger();
        return au && bu && *au == *bu;
    }
    return a.value() == b.value();
}

namespace {

void describe(std::ostream& out, const PropertyList& value) {
    std::visit(
        [&out](const auto& v) {
            using T = std::decay_t<decltype(v)>;
            if constexpr (std::is_same_v<T, std::string>) {
                out << '"' << v << '"';
            } else if constexpr (std::is_same_v<T, PropertyList::Data>) {
                out << "<" << v.size() << " bytes>";
            } else if constexpr (std::is_same_v<T, bool>) {
                out << (v ? "true" : "false");
            } else if constexpr (std::is_same_v<T, PropertyList::Date>) {
                out << "@" << std::chrono::duration<double>(v.time_since_epoch()).count();
            } else if constexpr (std::is_same_v<T, PropertyList::Array>) {
                out << "[";
                for (std::size_t i = 0; i < v.size(); ++i) {
                    if (i)
                        out << ", ";
                    describe(out, v[i]);
                }
                out << "]";
            } else if constexpr (std::is_same_v<T, PropertyList::Dictionary>) {
                out << "{";
                bool first = true;
                for (const auto& [key, item] : v) {
                    if (!first)
                        out << ", ";
                    first = false;
                    out << '"' << key << "\": ";
                    describe(out, item);
                }
                out << "}";
            } else {
                out << v;
            }
        },
        value.value());
}

}  // namespace

std::string PropertyList::debugDescription() const {
    std::ostringstream out;
    describe(out, *this);
    return out.str();
}

}  // namespace platform
