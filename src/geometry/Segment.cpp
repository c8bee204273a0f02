#include "geometry/Segment.h"

#include <algorithm>
#include <array>
#include <limits>
#include <type_traits>

#include "geometry/PathSection.h"
#include "geometry/SvgNumber.h"

namespace plumbline {

double Segment::lengthThreshold = 0.01;

namespace {

constexpr std::array<const char*, 5> caseNames = {"moveTo", "addLineTo", "addQuadCurveTo",
                                                  "addCurveTo", "close"};

// The parameter of the point on a straight piece nearest `point`.
double nearestOnLine(CGPoint start, CGPoint end, CGPoint point) {
    const double dx = end.x - start.x;
    const double dy = end.y - start.y;
    const double squared = dx * dx + dy * dy;
    if (squared == 0)
        return 0;
    return std::clamp(((point.x - start.x) * dx + (point.y - start.y) * dy) / squared, 0.0, 1.0);
}

// The best of curveResolution + 1 evenly spaced parameters.
template <typename Curve>
double nearestBySampling(const Curve& curve, CGPoint point) {
    const long steps = std::max<long>(1, PathSection::curveResolution);
    double best = 0;
    double bestDistance = std::numeric_limits<double>::infinity();
    for (long step = 0; step <= steps; ++step) {
        const double t = static_cast<double>(step) / static_cast<double>(steps);
        const double d = distance(curve.pointAlongCurve(t), point);
        if (d < bestDistance) {
            bestDistance = d;
            best = t;
        }
    }
    return best;
}

}  // namespace

std::string Segment::caseName() const {
    return caseNames[curve_.index()];
}

bool Segment::isSplitable() const {
    return std::visit([](const auto& curve) { return curve.isSplitable; }, curve_);
}

CGPoint Segment::startPoint() const {
    return std::visit([](const auto& curve) { return curve.startPoint(); }, curve_);
}

CGPoint Segment::endPoint() const {
    return std::visit([](const auto& curve) { return curve.endPoint; }, curve_);
}

double Segment::length() const {
    return std::visit([](const auto& curve) { return curve.length(); }, curve_);
}

std::string Segment::svgString() const {
    return std::visit([](const auto& curve) { return curve.svgString(); }, curve_);
}

CGPoint Segment::pointAlongCurve(double t) const {
    return std::visit([t](const auto& curve) { return curve.pointAlongCurve(t); }, curve_);
}

double Segment::percentAlongCurve(CGPoint point) const {
    return std::visit(
        [point](const auto& curve) -> double {
            using Type = std::decay_t<decltype(curve)>;
            if constexpr (std::is_same_v<Type, MoveSegment>)
                return 0;
            else if constexpr (std::is_same_v<Type, QuadCurve> || std::is_same_v<Type, CubicCurve>)
                return nearestBySampling(curve, point);
            else
                return nearestOnLine(curve.startPoint(), curve.endPoint, point);
        },
        curve_);
}

std::optional<std::pair<Segment, Segment>> Segment::split(double t) const {
    return std::visit(
        [t](const auto& curve) -> std::optional<std::pair<Segment, Segment>> {
            if constexpr (std::decay_t<decltype(curve)>::isSplitable) {
                auto [first, second] = curve.split(t);
                return std::pair<Segment, Segment>{Segment(first), Segment(second)};
            } else {
                return std::nullopt;
            }
        },
        curve_);
}

// Cut k of n pieces off the front of what is left at 1 / (n - k), so that
// every piece spans the same share of the original parameter.
std::vector<Segment> Segment::splitIntoSegments(int n) const {
    if (!isSplitable() || n < 1)
        return {*this};
    std::vector<Segment> pieces;
    Segment rest = *this;
    for (int cut = 0; cut + 1 < n; ++cut) {
        auto halves = rest.split(1.0 / static_cast<double>(n - cut));
        pieces.push_back(halves->first);
        rest = halves->second;
    }
    pieces.push_back(rest);
    return pieces;
}

std::string Segment::description() const {
    return caseName() + "(" + svgString() + ")";
}

std::string Segment::debugDescription() const {
    return caseName() + "(from " + svgPoint(startPoint()) + ": " + svgString() + ")";
}

double length(const std::vector<Segment>& segments) {
    double total = 0;
    for (const auto& segment : segments)
        total += segment.length();
    return total;
}

}  // namespace plumbline
