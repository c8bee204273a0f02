#include <gtest/gtest.h>

#include <vector>

#include "geometry/Segment.h"
#include "support/Codable.h"

using namespace plumbline;
using platform::PropertyList;
using Coding = quillbox::Coding<Segment>;

TEST(SegmentCoding, StoresTheKindWithThePayloadUnderItsFieldNames) {
    const Segment quad(QuadCurve{CGPoint{1, 2}, {3, 4}, {5, 6}});
    const PropertyList expected = PropertyList::Dictionary{
        {"addQuadCurveTo",
         PropertyList::Dictionary{
             {"_0", PropertyList::Dictionary{{"_startPoint", PropertyList::Array{1.0, 2.0}},
                                             {"controlPoint", PropertyList::Array{3.0, 4.0}},
                                             {"endPoint", PropertyList::Array{5.0, 6.0}}}}}}};
    EXPECT_EQ(Coding::encode(quad), expected);

    const PropertyList firstMove = PropertyList::Dictionary{
        {"moveTo",
         PropertyList::Dictionary{
             {"_0", PropertyList::Dictionary{{"endPoint", PropertyList::Array{0.0, 0.0}}}}}}};
    EXPECT_EQ(Coding::encode(MoveSegment{std::nullopt, {0, 0}}), firstMove);
    EXPECT_EQ(Coding::decode(firstMove), Segment(MoveSegment{std::nullopt, {0, 0}}));
}

TEST(SegmentCoding, ReadsBackEveryKind) {
    const std::vector<Segment> segments{
        MoveSegment{std::nullopt, {1, 1}},
        LineSegment{CGPoint{1, 1}, {2, 3}},
        QuadCurve{CGPoint{2, 3}, {4, 5}, {6, 7}},
        CubicCurve{CGPoint{6, 7}, {8, 9}, {10, 11}, {-0.5, 1e-3}},
        CloseSegment{CGPoint{-0.5, 1e-3}, {1, 1}},
    };
    const quillbox::PropertyListEncoder encoder;
    const quillbox::PropertyListDecoder decoder;
    for (const auto& segment : segments)
        EXPECT_EQ(decoder.decode<Segment>(encoder.encode(segment)), segment) << segment.caseName();
}

TEST(SegmentCoding, RefusesWhatIsNoSegment) {
    auto payload = [](PropertyList fields) {
        return PropertyList::Dictionary{{"_0", std::move(fields)}};
    };
    const PropertyList::Array point{1, 2};
    const std::vector<PropertyList> broken{
        PropertyList("addLineTo"),
        PropertyList::Dictionary{},
        PropertyList::Dictionary{{"addLineTo", payload(PropertyList::Dictionary{})}},
        PropertyList::Dictionary{{"bend", payload(PropertyList::Dictionary{{"endPoint", point}})}},
        PropertyList::Dictionary{{"addLineTo", PropertyList::Dictionary{{"endPoint", point}}}},
        PropertyList::Dictionary{
            {"addLineTo", payload(PropertyList::Dictionary{{"endPoint", PropertyList::Array{1}}})}},
        PropertyList::Dictionary{{"addLineTo", payload(PropertyList::Dictionary{
                                                   {"endPoint", PropertyList::Array{"x", 1}}})}},
        PropertyList::Dictionary{{"addCurveTo", payload(PropertyList::Dictionary{
                                                    {"endPoint", point}, {"control1", point}})}},
        PropertyList::Dictionary{{"moveTo", payload(PropertyList::Dictionary{{"endPoint", point}})},
                                 {"close", payload(PropertyList::Dictionary{{"endPoint", point}})}},
    };
    for (const auto& list : broken)
        EXPECT_THROW(Coding::decode(list), quillbox::DecodingError) << list.debugDescription();
}
