#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "geometry/Distance.h"
#include "platform/Geometry.h"

namespace plumbline {

using CGPoint = platform::CGPoint;

inline CGPoint interpolate(CGPoint from, CGPoint to, double t) {
    return {from.x + (to.x - from.x) * t, from.y + (to.y - from.y) * t};
}

// The control points of a Bézier curve of any degree, start first and end
// last, cut at t (clamped to 0...1) by de Casteljau's construction: the
// points are interpolated pairwise at t until one is left; the first and
// last point of each round are the control points of the two halves.
template <std::size_t count>
std::pair<std::array<CGPoint, count>, std::array<CGPoint, count>> splitControlPoints(
    std::array<CGPoint, count> points, double t) {
    t = std::clamp(t, 0.0, 1.0);
    std::array<CGPoint, count> first{};
    std::array<CGPoint, count> second{};
    for (std::size_t round = 0; round < count; ++round) {
        first[round] = points[0];
        second[count - 1 - round] = points[count - 1 - round];
        for (std::size_t i = 0; i + 1 < count - round; ++i)
            points[i] = interpolate(points[i], points[i + 1], t);
    }
    return {first, second};
}

// The point of the curve at t (clamped to 0...1).
template <std::size_t count>
CGPoint pointOnCurve(const std::array<CGPoint, count>& points, double t) {
    return splitControlPoints(points, t).second.front();
}

// The length of the control polygon, start to end through every control point.
template <std::size_t count>
double polygonLength(const std::array<CGPoint, count>& points) {
    double length = 0;
    for (std::size_t i = 0; i + 1 < count; ++i)
        length += distance(points[i], points[i + 1]);
    return length;
}

}  // namespace plumbline
