#pragma once

#include <algorithm>
#include <cstdint>

namespace platform {

// Screen geometry in points, with the origin of screen coordinates at the
// bottom left, as every backend reports it.
struct CGPoint {
    double x = 0;
    double y = 0;
    friend bool operator==(const CGPoint&, const CGPoint&) = default;
};

struct CGSize {
    double width = 0;
    double height = 0;
    friend bool operator==(const CGSize&, const CGSize&) = default;
};

struct CGRect {
    CGPoint origin;
    CGSize size;

    double minX() const { return origin.x; }
    double minY() const { return origin.y; }
    double maxX() const { return origin.x + size.width; }
    double maxY() const { return origin.y + size.height; }

    // Half-open on the far edges, as the platform's containment test is.
    bool contains(CGPoint p) const {
        return p.x >= minX() && p.x < maxX() && p.y >= minY() && p.y < maxY();
    }
    friend bool operator==(const CGRect&, const CGRect&) = default;
};

struct CFRange {
    std::int64_t location = 0;
    std::int64_t length = 0;
    friend bool operator==(const CFRange&, const CFRange&) = default;
};

}  // namespace platform
