#include <gtest/gtest.h>

#include <cmath>

#include "geometry/Path.h"

using namespace plumbline;

namespace {

// A square of side 10 from the origin, anticlockwise, closed.
Path square() {
    Path path;
    path.moveTo({0, 0});
    path.addLineTo({10, 0});
    path.addLineTo({10, 10});
    path.addLineTo({0, 10});
    path.closeSubpath();
    return path;
}

}  // namespace

TEST(Path, GivesEachElementTheStartOfTheOneBefore) {
    Path path;
    path.moveTo({1, 1});
    path.addQuadCurveTo({5, 1}, {3, 4});
    path.closeSubpath();
    path.moveTo({20, 20});
    path.addCurveTo({30, 20}, {22, 25}, {28, 25});
    const auto segments = path.segments();
    ASSERT_EQ(segments.size(), 5u);
    EXPECT_EQ(segments[0], Segment(MoveSegment{std::nullopt, {1, 1}}));
    EXPECT_EQ(segments[1], Segment(QuadCurve{CGPoint{1, 1}, {3, 4}, {5, 1}}));
    EXPECT_EQ(segments[2], Segment(CloseSegment{CGPoint{5, 1}, {1, 1}}));
    EXPECT_EQ(segments[3], Segment(MoveSegment{CGPoint{1, 1}, {20, 20}}));
    EXPECT_EQ(segments[4], Segment(CubicCurve{CGPoint{20, 20}, {22, 25}, {28, 25}, {30, 20}}));
    EXPECT_EQ(path.svgString(),
              "M1.0,1.0 Q3.0,4.0 5.0,1.0 z M20.0,20.0 C22.0,25.0 28.0,25.0 30.0,20.0");

    // Drawing before any move starts from the origin.
    Path loose;
    loose.addLineTo({3, 4});
    EXPECT_EQ(loose.length(), 5);
}

TEST(Path, LinksItsSectionsBothWays) {
    const auto path = square();
    auto first = path.sections();
    ASSERT_TRUE(first);
    EXPECT_FALSE(first->previous.lock());
    int count = 1;
    auto section = first;
    for (; section->next; section = section->next, ++count)
        EXPECT_EQ(section->next->previous.lock(), section);
    EXPECT_EQ(count, 5);
    EXPECT_EQ(section->element, PathElement::close());
    EXPECT_EQ(length(first), 40);
    EXPECT_FALSE(Path().sections());
    EXPECT_EQ(length(Path().sections()), 0);
}

TEST(Path, FindsPointsAtAShareOfItsLength) {
    const auto path = square();
    EXPECT_EQ(path.length(), 40);
    EXPECT_EQ(path.pointAlongPath(0.125), (CGPoint{5, 0}));
    EXPECT_EQ(path.pointAlongPath(0.5), (CGPoint{10, 10}));
    EXPECT_EQ(path.pointAlongPath(0.875), (CGPoint{0, 5}));
    EXPECT_EQ(path.pointAlongPath(-1), (CGPoint{0, 0}));
    EXPECT_EQ(path.pointAlongPath(2), (CGPoint{0, 0}));
    // A given length is trusted as it is.
    EXPECT_EQ(path.pointAlongPath(0.5, 20.0), (CGPoint{10, 0}));
    EXPECT_FALSE(Path().pointAlongPath(0.5));
    Path dot;
    dot.moveTo({3, 3});
    EXPECT_EQ(dot.pointAlongPath(0.5), (CGPoint{3, 3}));

    EXPECT_DOUBLE_EQ(path.percentAlongPath({10, 5}), 0.375);
    EXPECT_DOUBLE_EQ(path.percentAlongPath({-4, 5}), 0.875);
    EXPECT_EQ(dot.percentAlongPath({9, 9}), 0);
}

TEST(Path, FindsPointsOnCurvesByTheirLengthNotTheirParameter) {
    // A quarter circle whose parameter runs unevenly: the control points
    // crowd its start.
    Path arc;
    arc.moveTo({100, 0});
    arc.addCurveTo({0, 100}, {100, 10}, {55, 100});
    const double length = arc.length();
    const auto middle = arc.pointAlongPath(0.5);
    ASSERT_TRUE(middle);
    Path firstHalf;
    firstHalf.moveTo({100, 0});
    const auto [before, after] = CubicCurve{CGPoint{100, 0}, {100, 10}, {55, 100}, {0, 100}}.split(
        arc.segments()[1].percentAlongCurve(*middle));
    EXPECT_NEAR(before.length(), length / 2, length * 0.01);
    EXPECT_NEAR(arc.percentAlongPath(*middle), 0.5, 0.01);
}
