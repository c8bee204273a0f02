#pragma once

namespace e2e {

// Screen positions and rectangles in the X server's root coordinates.
struct Point {
    int x = 0, y = 0;
};

struct Geometry {
    int x = 0, y = 0, width = 0, height = 0;
    Point centre() const { return {x + width / 2, y + height / 2}; }
};

}  // namespace e2e
