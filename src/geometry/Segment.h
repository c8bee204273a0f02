#pragma once

#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "geometry/SegmentTypes.h"
#include "support/Codable.h"

namespace plumbline {

// One segment of a path, of one of the five kinds.
class Segment {
  public:
    using Curve = std::variant<MoveSegment, LineSegment, QuadCurve, CubicCurve, CloseSegment>;
    enum class Kind { moveTo, addLineTo, addQuadCurveTo, addCurveTo, close };

    // How closely a curve's length is measured: a piece counts as measured
    // once its control polygon's length squared is within this of its
    // chord's length squared.
    static double lengthThreshold;

    Segment(Curve curve) : curve_(std::move(curve)) {}
    template <typename Payload>
    requires std::is_constructible_v<Curve, Payload> Segment(Payload payload)
        : curve_(std::move(payload)) {}

    const Curve& curve() const { return curve_; }
    Kind kind() const { return static_cast<Kind>(curve_.index()); }
    // "moveTo", "addLineTo", "addQuadCurveTo", "addCurveTo", "close"
    std::string caseName() const;

    bool isSplitable() const;
    CGPoint startPoint() const;
    CGPoint endPoint() const;
    double length() const;
    std::string svgString() const;
    // The point at parameter t (clamped to 0...1).
    CGPoint pointAlongCurve(double t) const;
    // The parameter (0...1) at which the segment comes nearest the point:
    // exact for straight segments, for curves the best of
    // PathSection::curveResolution steps.
    double percentAlongCurve(CGPoint point) const;

    // The two halves at t (clamped to 0...1); nothing for a move or close.
    std::optional<std::pair<Segment, Segment>> split(double t) const;
    // n pieces of equal parameter span, in order; the segment itself alone
    // when it can't be split or n is below 1.
    std::vector<Segment> splitIntoSegments(int n) const;

    // "addLineTo(L10.0,20.0)"
    std::string description() const;
    // The same with the start point: "addLineTo(from 0.0,0.0: L10.0,20.0)"
    std::string debugDescription() const;

    friend bool operator==(const Segment&, const Segment&) = default;

  private:
    Curve curve_;
};

// The summed length of segments.
double length(const std::vector<Segment>& segments);

}  // namespace plumbline

// A segment is stored as a dictionary with one entry, named after its kind,
// whose "_0" entry holds the payload under its field names ("_startPoint",
// left out when unknown, "controlPoint", "control1", "control2",
// "endPoint"); a point is an array of x and y.
template <>
struct quillbox::Coding<plumbline::Segment> {
    static platform::PropertyList encode(const plumbline::Segment& segment);
    // Throws DecodingError.
    static plumbline::Segment decode(const platform::PropertyList& list);
};
