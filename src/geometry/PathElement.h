#pragma once

#include "geometry/Bezier.h"

namespace plumbline {

// One raw element of a path, as a path is built and enumerated: where to
// move or draw to, with the control points of a curve.
struct PathElement {
    enum class Kind { moveTo, addLineTo, addQuadCurveTo, addCurveTo, close };

    Kind kind = Kind::close;
    CGPoint point;
    CGPoint controlPoint1;  // the one control point of a quadratic curve
    CGPoint controlPoint2;

    static PathElement moveTo(CGPoint point) { return {Kind::moveTo, point, {}, {}}; }
    static PathElement addLineTo(CGPoint point) { return {Kind::addLineTo, point, {}, {}}; }
    static PathElement addQuadCurveTo(CGPoint point, CGPoint controlPoint) {
        return {Kind::addQuadCurveTo, point, controlPoint, {}};
    }
    static PathElement addCurveTo(CGPoint point, CGPoint controlPoint1, CGPoint controlPoint2) {
        return {Kind::addCurveTo, point, controlPoint1, controlPoint2};
    }
    static PathElement close() { return {}; }

    friend bool operator==(const PathElement&, const PathElement&) = default;
};

}  // namespace plumbline
