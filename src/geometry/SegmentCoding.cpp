#include <array>
#include <string>

#include "geometry/Segment.h"

namespace {

using platform::PropertyList;
using plumbline::CGPoint;
using quillbox::DecodingError;

PropertyList encodePoint(CGPoint point) {
    return PropertyList::Array{point.x, point.y};
}

CGPoint decodePoint(const PropertyList& list, const std::string& field) {
    const auto* array = list.array();
    if (!array || array->size() != 2)
        throw DecodingError("The segment's \"" + field + "\" is not a pair of numbers.");
    const auto x = (*array)[0].number();
    const auto y = (*array)[1].number();
    if (!x || !y)
        throw DecodingError("The segment's \"" + field + "\" is not a pair of numbers.");
    return {*x, *y};
}

// The payload's fields, in the order they are declared.
class PayloadWriter {
  public:
    explicit PayloadWriter(const std::optional<CGPoint>& startPoint) {
        if (startPoint)
            fields_["_startPoint"] = encodePoint(*startPoint);
    }
    PayloadWriter& point(const char* field, CGPoint point) {
        fields_[field] = encodePoint(point);
        return *this;
    }
    PropertyList wrapped(const std::string& caseName) const {
        return PropertyList::Dictionary{{caseName, PropertyList::Dictionary{{"_0", fields_}}}};
    }

  private:
    PropertyList::Dictionary fields_;
};

class PayloadReader {
  public:
    explicit PayloadReader(const PropertyList& payload) {
        fields_ = payload.dictionary();
        if (!fields_)
            throw DecodingError("A segment's payload is not a dictionary.");
    }
    std::optional<CGPoint> startPoint() const {
        const auto found = fields_->find("_startPoint");
        if (found == fields_->end())
            return std::nullopt;
        return decodePoint(found->second, "_startPoint");
    }
    CGPoint point(const std::string& field) const {
        const auto found = fields_->find(field);
        if (found == fields_->end())
            throw DecodingError("The segment has no \"" + field + "\".");
        return decodePoint(found->second, field);
    }

  private:
    const PropertyList::Dictionary* fields_;
};

plumbline::Segment decodeCase(const std::string& caseName, const PayloadReader& payload) {
    using namespace plumbline;
    if (caseName == "moveTo")
        return MoveSegment{payload.startPoint(), payload.point("endPoint")};
    if (caseName == "addLineTo")
        return LineSegment{payload.startPoint(), payload.point("endPoint")};
    if (caseName == "addQuadCurveTo") {
        return QuadCurve{payload.startPoint(), payload.point("controlPoint"),
                         payload.point("endPoint")};
    }
    if (caseName == "addCurveTo") {
        return CubicCurve{payload.startPoint(), payload.point("control1"),
                          payload.point("control2"), payload.point("endPoint")};
    }
    if (caseName == "close")
        return CloseSegment{payload.startPoint(), payload.point("endPoint")};
    throw DecodingError("\"" + caseName + "\" is no kind of segment.");
}

}  // namespace

PropertyList quillbox::Coding<plumbline::Segment>::encode(const plumbline::Segment& segment) {
    using namespace plumbline;
    return std::visit(
        [&segment](const auto& curve) {
            PayloadWriter writer(curve.declaredStartPoint);
            using Type = std::decay_t<decltype(curve)>;
            if constexpr (std::is_same_v<Type, QuadCurve>)
                writer.point("controlPoint", curve.controlPoint);
            if constexpr (std::is_same_v<Type, CubicCurve>)
                writer.point("control1", curve.control1).point("control2", curve.control2);
            writer.point("endPoint", curve.endPoint);
            return writer.wrapped(segment.caseName());
        },
        segment.curve());
}

plumbline::Segment quillbox::Coding<plumbline::Segment>::decode(const PropertyList& list) {
    const auto* dictionary = list.dictionary();
    if (!dictionary || dictionary->size() != 1)
        throw DecodingError("A segment is a dictionary with one entry, named after its kind.");
    const auto& [caseName, wrapper] = *dictionary->begin();
    const auto* payload = wrapper.dictionary();
    if (!payload || !payload->contains("_0"))
        throw DecodingError("The segment \"" + caseName + "\" has no \"_0\" payload.");
    return decodeCase(caseName, PayloadReader(payload->at("_0")));
}
