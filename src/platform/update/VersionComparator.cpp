#include "platform/update/VersionComparator.h"

#include <vector>

namespace platform::update {

namespace {

enum class PartKind { number, separator, text };

struct Part {
    PartKind kind;
    std::string_view text;
};

PartKind kindOf(char c) {
    if (c >= '0' && c <= '9')
        return PartKind::number;
    if (c == '.')
        return PartKind::separator;
    return PartKind::text;
}

std::vector<Part> partsOf(std::string_view version) {
    std::vector<Part> parts;
    std::size_t start = 0;
    while (start < version.size()) {
        const auto kind = kindOf(version[start]);
        std::size_t end = start + 1;
        // Every full stop is a part of its own.
        if (kind != PartKind::separator) {
            while (end < version.size() && kindOf(version[end]) == kind)
                ++end;
        }
        parts.push_back({kind, version.substr(start, end - start)});
        start = end;
    }
    return parts;
}

// Numbers of any length: no digits are lost to an integer type.
std::strong_ordering compareNumbers(std::string_view a, std::string_view b) {
    a.remove_prefix(std::min(a.find_first_not_of('0'), a.size()));
    b.remove_prefix(std::min(b.find_first_not_of('0'), b.size()));
    if (a.size() != b.size())
        return a.size() <=> b.size();
    return a.compare(b) <=> 0;
}

std::strong_ordering compareSameKind(const Part& a, const Part& b) {
    switch (a.kind) {
        case PartKind::number:
            return compareNumbers(a.text, b.text);
        case PartKind::text:
            return a.text.compare(b.text) <=> 0;
        case PartKind::separator:
            break;
    }
    return std::strong_ordering::equal;
}

// Where the kinds differ, text loses to anything (1.0.1 > 1.0b) and a number
// beats a separator.
std::strong_ordering compareDifferentKinds(const Part& a, const Part& b) {
    if (a.kind == PartKind::text)
        return std::strong_ordering::less;
    if (b.kind == PartKind::text)
        return std::strong_ordering::greater;
    return a.kind == PartKind::number ? std::strong_ordering::greater : std::strong_ordering::less;
}

}  // namespace

std::strong_ordering compareVersions(std::string_view a, std::string_view b) {
    const auto partsA = partsOf(a);
    const auto partsB = partsOf(b);
    const auto common = std::min(partsA.size(), partsB.size());
    for (std::size_t i = 0; i < common; ++i) {
        const auto& pa = partsA[i];
        const auto& pb = partsB[i];
        const auto order =
            pa.kind == pb.kind ? compareSameKind(pa, pb) : compareDifferentKinds(pa, pb);
        if (order != std::strong_ordering::equal)
            return order;
    }
    if (partsA.size() == partsB.size())
        return std::strong_ordering::equal;
    // The longer one goes on: with text it is a pre-release of the shorter
    // one (1.0b1 < 1.0); with a number or separator a later release.
    const bool aIsLonger = partsA.size() > partsB.size();
    const auto& next = aIsLonger ? partsA[common] : partsB[common];
    const bool longerIsNewer = next.kind != PartKind::text;
    return aIsLonger == longerIsNewer ? std::strong_ordering::greater : std::strong_ordering::less;
}

}  // namespace platform::update
