#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <vector>

#include "geometry/Segment.h"

using namespace plumbline;

namespace {

// A quarter of the circle of radius r round the origin, from (r, 0) to
// (0, r), as the usual cubic approximation draws it.
constexpr double kappa = 0.5522847498;
CubicCurve quarterCircleOfRadius(double r) {
    return CubicCurve{CGPoint{r, 0}, {r, r * kappa}, {r * kappa, r}, {0, r}};
}
const CubicCurve quarterCircle = quarterCircleOfRadius(100);

// The length of a cubic by Simpson's rule over its speed, far finer than any
// test asks.
double integratedLength(const CubicCurve& curve) {
    const auto p = curve.controlPolygon();
    auto speed = [&](double t) {
        const double u = 1 - t;
        const double dx = 3 * u * u * (p[1].x - p[0].x) + 6 * u * t * (p[2].x - p[1].x) +
                          3 * t * t * (p[3].x - p[2].x);
        const double dy = 3 * u * u * (p[1].y - p[0].y) + 6 * u * t * (p[2].y - p[1].y) +
                          3 * t * t * (p[3].y - p[2].y);
        return std::hypot(dx, dy);
    };
    constexpr int steps = 20'000;
    double sum = speed(0) + speed(1);
    for (int i = 1; i < steps; ++i)
        sum += (i % 2 ? 4 : 2) * speed(static_cast<double>(i) / steps);
    return sum / (3.0 * steps);
}

void expectNear(CGPoint actual, CGPoint expected, double tolerance = 1e-9) {
    EXPECT_NEAR(actual.x, expected.x, tolerance);
    EXPECT_NEAR(actual.y, expected.y, tolerance);
}

}  // namespace

TEST(Segment, MeasuresLinesAndCurves) {
    EXPECT_EQ(Segment(LineSegment{CGPoint{1, 1}, {4, 5}}).length(), 5);
    EXPECT_EQ(Segment(LineSegment{std::nullopt, {3, 4}}).length(), 5) << "no start is the origin";
    EXPECT_EQ(Segment(CubicCurve{CGPoint{7, 7}, {7, 7}, {7, 7}, {7, 7}}).length(), 0);
    EXPECT_EQ(Segment(QuadCurve{CGPoint{7, 7}, {7, 7}, {7, 7}}).length(), 0);
    EXPECT_EQ(Segment(MoveSegment{CGPoint{0, 0}, {30, 40}}).length(), 0);
    EXPECT_EQ(Segment(CloseSegment{CGPoint{0, 3}, {4, 0}}).length(), 5);

    const auto quarter = quarterCircleOfRadius(10);
    EXPECT_NEAR(integratedLength(quarter), std::numbers::pi * 5, 0.005);
    EXPECT_NEAR(Segment(quarter).length(), integratedLength(quarter), 0.01);
    // The threshold bounds how far each accepted piece's polygon may exceed
    // its chord, squared; the pieces shrink with the curve, so the excess
    // summed over a quarter circle stays about a hundredth at any size.
    for (double radius : {0.5, 1.0, 5.0, 100.0, 1000.0}) {
        const auto curve = quarterCircleOfRadius(radius);
        EXPECT_NEAR(curve.length(), integratedLength(curve), 0.015) << "radius " << radius;
    }
    const double exact = integratedLength(quarterCircle);
    // A straight cubic and quad are as long as their chord.
    EXPECT_NEAR(Segment(CubicCurve{CGPoint{0, 0}, {10, 0}, {20, 0}, {30, 0}}).length(), 30, 0.01);
    EXPECT_NEAR(Segment(QuadCurve{CGPoint{0, 0}, {10, 0}, {20, 0}}).length(), 20, 0.01);

    const std::vector<Segment> pieces{LineSegment{CGPoint{0, 0}, {3, 4}}, quarterCircle};
    EXPECT_NEAR(length(pieces), 5 + exact, 0.015);
}

TEST(Segment, SplitsByDeCasteljauAndClampsTheParameter) {
    const auto [first, second] = quarterCircle.split(0.5);
    expectNear(first.endPoint, quarterCircle.pointAlongCurve(0.5));
    expectNear(second.startPoint(), first.endPoint);
    expectNear(first.control1, {100, 50 * kappa});
    expectNear(second.control2, {50 * kappa, 100});
    EXPECT_NEAR(first.length() + second.length(), quarterCircle.length(), 0.01);
    EXPECT_NEAR(first.length(), second.length(), 1e-6) << "the arc is symmetric";

    const auto [before, whole] = quarterCircle.split(-3);
    EXPECT_EQ(before.length(), 0);
    EXPECT_EQ(whole, quarterCircle);
    const auto [all, after] = quarterCircle.split(7);
    EXPECT_EQ(all, quarterCircle);
    expectNear(after.startPoint(), {0, 100});

    const auto quad = QuadCurve{CGPoint{0, 0}, {10, 20}, {20, 0}}.split(0.25);
    expectNear(quad.first.endPoint,
               QuadCurve{CGPoint{0, 0}, {10, 20}, {20, 0}}.pointAlongCurve(0.25));
    expectNear(quad.first.controlPoint, {2.5, 5});

    const auto line = LineSegment{CGPoint{0, 0}, {8, 4}}.split(0.25);
    EXPECT_EQ(line.first.endPoint, (CGPoint{2, 1}));
    EXPECT_EQ(line.second.startPoint(), (CGPoint{2, 1}));
}

TEST(Segment, SplitsIntoEqualParameterSpansOrGivesItselfBack) {
    const Segment curve(quarterCircle);
    const auto pieces = curve.splitIntoSegments(4);
    ASSERT_EQ(pieces.size(), 4u);
    for (int i = 0; i < 4; ++i) {
        expectNear(pieces[i].startPoint(), curve.pointAlongCurve(i / 4.0));
        expectNear(pieces[i].endPoint(), curve.pointAlongCurve((i + 1) / 4.0));
    }
    EXPECT_EQ(curve.splitIntoSegments(1), std::vector<Segment>{curve});
    EXPECT_EQ(curve.splitIntoSegments(0), std::vector<Segment>{curve});

    const Segment move(MoveSegment{std::nullopt, {5, 5}});
    const Segment close(CloseSegment{CGPoint{5, 5}, {0, 0}});
    EXPECT_FALSE(move.isSplitable());
    EXPECT_FALSE(close.isSplitable());
    EXPECT_EQ(move.splitIntoSegments(3), std::vector<Segment>{move});
    EXPECT_EQ(close.splitIntoSegments(3), std::vector<Segment>{close});
    EXPECT_FALSE(close.split(0.5));
}

TEST(Segment, WritesPathDataAndDescriptions) {
    EXPECT_EQ(Segment(MoveSegment{std::nullopt, {1, 2}}).svgString(), "M1.0,2.0");
    EXPECT_EQ(Segment(LineSegment{std::nullopt, {0.5, -3}}).svgString(), "L0.5,-3.0");
    EXPECT_EQ(Segment(QuadCurve{std::nullopt, {1, 2}, {3, 4}}).svgString(), "Q1.0,2.0 3.0,4.0");
    EXPECT_EQ(Segment(CubicCurve{std::nullopt, {1, 2}, {3, 4}, {5, 6}}).svgString(),
              "C1.0,2.0 3.0,4.0 5.0,6.0");
    EXPECT_EQ(Segment(CloseSegment{CGPoint{1, 1}, {0, 0}}).svgString(), "z");
    const Segment line(LineSegment{CGPoint{0, 0}, {10, 20}});
    EXPECT_EQ(line.description(), "addLineTo(L10.0,20.0)");
    EXPECT_EQ(line.debugDescription(), "addLineTo(from 0.0,0.0: L10.0,20.0)");
}

TEST(Segment, FindsHowFarAlongItComesNearestAPoint) {
    const Segment line(LineSegment{CGPoint{0, 0}, {10, 0}});
    EXPECT_DOUBLE_EQ(line.percentAlongCurve({2.5, 7}), 0.25);
    EXPECT_EQ(line.percentAlongCurve({-5, 0}), 0);
    EXPECT_EQ(line.percentAlongCurve({50, 0}), 1);
    const Segment curve(quarterCircle);
    EXPECT_NEAR(curve.percentAlongCurve(curve.pointAlongCurve(0.37)), 0.37, 0.005);
    EXPECT_EQ(Segment(LineSegment{CGPoint{1, 1}, {1, 1}}).percentAlongCurve({9, 9}), 0);
}
