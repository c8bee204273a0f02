#include "geometry/Path.h"

#include <algorithm>
#include <limits>

namespace plumbline {

long PathSection::curveResolution = 100;

namespace {

// Turns elements into segments one at a time, keeping the current point and
// the start of the current subpath.
class SegmentWalker {
  public:
    Segment next(const PathElement& element) {
        const auto start = current_;
        switch (element.kind) {
            case PathElement::Kind::moveTo:
                subpathStart_ = element.point;
                return land(MoveSegment{start, element.point});
            case PathElement::Kind::addLineTo:
                return land(LineSegment{start, element.point});
            case PathElement::Kind::addQuadCurveTo:
                return land(QuadCurve{start, element.controlPoint1, element.point});
            case PathElement::Kind::addCurveTo:
                return land(
                    CubicCurve{start, element.controlPoint1, element.controlPoint2, element.point});
            case PathElement::Kind::close:
                return land(CloseSegment{start, subpathStart_.value_or(CGPoint{})});
        }
        return land(CloseSegment{start, subpathStart_.value_or(CGPoint{})});
    }

  private:
    Segment land(Segment segment) {
        current_ = segment.endPoint();
        return segment;
    }

    std::optional<CGPoint> current_;
    std::optional<CGPoint> subpathStart_;
};

// The parameter at which a curve has come `share` (0...1) of its length,
// from the lengths of curveResolution straight steps along it.
double parameterAtShareOfLength(const Segment& segment, double share) {
    const long steps = std::max<long>(1, PathSection::curveResolution);
    std::vector<double> travelled{0.0};
    CGPoint previous = segment.pointAlongCurve(0);
    for (long step = 1; step <= steps; ++step) {
        const CGPoint point =
            segment.pointAlongCurve(static_cast<double>(step) / static_cast<double>(steps));
        travelled.push_back(travelled.back() + distance(previous, point));
        previous = point;
    }
    const double target = share * travelled.back();
    const auto after = std::lower_bound(travelled.begin() + 1, travelled.end(), target);
    if (after == travelled.end())
        return 1;
    const auto step = after - travelled.begin();
    const double before = *(after - 1);
    const double within = *after > before ? (target - before) / (*after - before) : 0;
    return (static_cast<double>(step - 1) + within) / static_cast<double>(steps);
}

}  // namespace

std::shared_ptr<PathSection> Path::sections() const {
    std::shared_ptr<PathSection> first;
    std::shared_ptr<PathSection> last;
    for (const auto& element : elements_) {
        auto section = std::make_shared<PathSection>(element);
        if (last) {
            section->previous = last;
            last->next = section;
        } else {
            first = section;
        }
        last = section;
    }
    return first;
}

std::vector<Segment> Path::segments() const {
    SegmentWalker walker;
    std::vector<Segment> segments;
    segments.reserve(elements_.size());
    for (const auto& element : elements_)
        segments.push_back(walker.next(element));
    return segments;
}

double length(const std::shared_ptr<PathSection>& first) {
    SegmentWalker walker;
    double total = 0;
    for (auto section = first; section; section = section->next)
        total += walker.next(section->element).length();
    return total;
}

std::string Path::svgString() const {
    std::string text;
    for (const auto& segment : segments()) {
        if (!text.empty())
            text += ' ';
        text += segment.svgString();
    }
    return text;
}

double Path::percentAlongPath(CGPoint point) const {
    const auto all = segments();
    double travelled = 0;
    double best = 0;
    double bestDistance = std::numeric_limits<double>::infinity();
    for (const auto& segment : all) {
        const double t = segment.percentAlongCurve(point);
        const double d = distance(segment.pointAlongCurve(t), point);
        if (d < bestDistance) {
            bestDistance = d;
            const auto halves = segment.split(t);
            best = travelled + (halves ? halves->first.length() : t * segment.length());
        }
        travelled += segment.length();
    }
    return travelled > 0 ? best / travelled : 0;
}

std::optional<CGPoint> Path::pointAlongPath(double atPercent,
                                            std::optional<double> precalculatedLength) const {
    const auto all = segments();
    if (all.empty())
        return std::nullopt;
    const double total = precalculatedLength.value_or(plumbline::length(all));
    const double target = std::clamp(atPercent, 0.0, 1.0) * total;
    double travelled = 0;
    for (const auto& segment : all) {
        const double length = segment.length();
        if (length > 0 && travelled + length >= target) {
            const double share = (target - travelled) / length;
            const bool straight = segment.kind() != Segment::Kind::addQuadCurveTo &&
                                  segment.kind() != Segment::Kind::addCurveTo;
            return segment.pointAlongCurve(straight ? share
                                                    : parameterAtShareOfLength(segment, share));
        }
        travelled += length;
    }
    return all.back().endPoint();
}

}  // namespace plumbline
