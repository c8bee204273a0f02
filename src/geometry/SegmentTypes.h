#pragma once

#include <array>
#include <optional>
#include <string>
#include <utility>

#include "geometry/Bezier.h"

namespace plumbline {

// The five kinds of segment of a path. Each knows where it starts only if
// told (a path's first move has nothing before it); a missing start counts
// as the origin. Lines and curves can be split; a move draws nothing and a
// close is the straight way back to the start of its subpath.

struct MoveSegment {
    std::optional<CGPoint> declaredStartPoint;
    CGPoint endPoint;

    static constexpr bool isSplitable = false;
    CGPoint startPoint() const { return declaredStartPoint.value_or(CGPoint{}); }
    // A move is a jump, not a stroke: it has no length, and every point
    // along it is where it lands.
    double length() const { return 0; }
    CGPoint pointAlongCurve(double) const { return endPoint; }
    std::string svgString() const;
    friend bool operator==(const MoveSegment&, const MoveSegment&) = default;
};

struct LineSegment {
    std::optional<CGPoint> declaredStartPoint;
    CGPoint endPoint;

    static constexpr bool isSplitable = true;
    CGPoint startPoint() const { return declaredStartPoint.value_or(CGPoint{}); }
    double length() const { return distance(startPoint(), endPoint); }
    CGPoint pointAlongCurve(double t) const;
    std::pair<LineSegment, LineSegment> split(double t) const;
    std::string svgString() const;
    friend bool operator==(const LineSegment&, const LineSegment&) = default;
};

struct QuadCurve {
    std::optional<CGPoint> declaredStartPoint;
    CGPoint controlPoint;
    CGPoint endPoint;

    static constexpr bool isSplitable = true;
    CGPoint startPoint() const { return declaredStartPoint.value_or(CGPoint{}); }
    std::array<CGPoint, 3> controlPolygon() const { return {startPoint(), controlPoint, endPoint}; }
    double length() const;
    CGPoint pointAlongCurve(double t) const { return pointOnCurve(controlPolygon(), t); }
    std::pair<QuadCurve, QuadCurve> split(double t) const;
    std::string svgString() const;
    friend bool operator==(const QuadCurve&, const QuadCurve&) = default;
};

struct CubicCurve {
    std::optional<CGPoint> declaredStartPoint;
    CGPoint control1;
    CGPoint control2;
    CGPoint endPoint;

    static constexpr bool isSplitable = true;
    CGPoint startPoint() const { return declaredStartPoint.value_or(CGPoint{}); }
    std::array<CGPoint, 4> controlPolygon() const {
        return {startPoint(), control1, control2, endPoint};
    }
    double length() const;
    CGPoint pointAlongCurve(double t) const { return pointOnCurve(controlPolygon(), t); }
    std::pair<CubicCurve, CubicCurve> split(double t) const;
    std::string svgString() const;
    friend bool operator==(const CubicCurve&, const CubicCurve&) = default;
};

struct CloseSegment {
    std::optional<CGPoint> declaredStartPoint;
    CGPoint endPoint;

    static constexpr bool isSplitable = false;
    CGPoint startPoint() const { return declaredStartPoint.value_or(CGPoint{}); }
    double length() const { return distance(startPoint(), endPoint); }
    CGPoint pointAlongCurve(double t) const { return interpolate(startPoint(), endPoint, t); }
    std::string svgString() const { return "z"; }
    friend bool operator==(const CloseSegment&, const CloseSegment&) = default;
};

}  // namespace plumbline
