#include "geometry/SegmentTypes.h"

#include <cmath>
#include <vector>

#include "geometry/Segment.h"
#include "geometry/SvgNumber.h"

namespace plumbline {

namespace {

// A curve with more halvings than this is measured by its control polygon
// at that depth, so that a curve far too large for the threshold (or with
// coordinates too large to square) ends in bounded time; 2^16 pieces
// measure any curve of a screen's size far finer than the threshold asks.
constexpr int deepestHalving = 16;

// Sums the pieces whose control polygon is as long as their chord, to within
// the threshold, halving the others.
template <typename Curve>
double lengthByHalving(const Curve& curve) {
    const double whole = polygonLength(curve.controlPolygon());
    if (!std::isfinite(whole))
        return whole;
    double total = 0;
    std::vector<std::pair<Curve, int>> stack{{curve, 0}};
    while (!stack.empty()) {
        const auto [piece, depth] = stack.back();
        stack.pop_back();
        const auto polygon = piece.controlPolygon();
        const double length = polygonLength(polygon);
        const double chord = distance(polygon.front(), polygon.back());
        if (std::abs(length * length - chord * chord) <= Segment::lengthThreshold ||
            depth >= deepestHalving) {
            total += length;
            continue;
        }
        const auto [first, second] = piece.split(0.5);
        stack.push_back({first, depth + 1});
        stack.push_back({second, depth + 1});
    }
    return total;
}

template <typename Curve, std::size_t count>
Curve curveThrough(const std::array<CGPoint, count>& points);

template <>
QuadCurve curveThrough(const std::array<CGPoint, 3>& points) {
    return QuadCurve{points[0], points[1], points[2]};
}

template <>
CubicCurve curveThrough(const std::array<CGPoint, 4>& points) {
    return CubicCurve{points[0], points[1], points[2], points[3]};
}

template <typename Curve>
std::pair<Curve, Curve> splitCurve(const Curve& curve, double t) {
    const auto [first, second] = splitControlPoints(curve.controlPolygon(), t);
    return {curveThrough<Curve>(first), curveThrough<Curve>(second)};
}

}  // namespace

std::string MoveSegment::svgString() const {
    return "M" + svgPoint(endPoint);
}

CGPoint LineSegment::pointAlongCurve(double t) const {
    return pointOnCurve(std::array{startPoint(), endPoint}, t);
}

std::pair<LineSegment, LineSegment> LineSegment::split(double t) const {
    const auto middle = pointAlongCurve(t);
    return {LineSegment{startPoint(), middle}, LineSegment{middle, endPoint}};
}

std::string LineSegment::svgString() const {
    return "L" + svgPoint(endPoint);
}

double QuadCurve::length() const {
    return lengthByHalving(*this);
}

std::pair<QuadCurve, QuadCurve> QuadCurve::split(double t) const {
    return splitCurve(*this, t);
}

std::string QuadCurve::svgString() const {
    return "Q" + svgPoint(controlPoint) + " " + svgPoint(endPoint);
}

double CubicCurve::length() const {
    return lengthByHalving(*this);
}

std::pair<CubicCurve, CubicCurve> CubicCurve::split(double t) const {
    return splitCurve(*this, t);
}

std::string CubicCurve::svgString() const {
    return "C" + svgPoint(control1) + " " + svgPoint(control2) + " " + svgPoint(endPoint);
}

}  // namespace plumbline
