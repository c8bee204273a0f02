#pragma once

#include <cmath>

namespace plumbline {

// The Euclidean distance between two points of any type with x and y.
template <typename Point>
double distance(const Point& a, const Point& b) {
    return std::hypot(a.x - b.x, a.y - b.y);
}

}  // namespace plumbline
