#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "geometry/PathElement.h"
#include "geometry/PathSection.h"
#include "geometry/Segment.h"

namespace plumbline {

// A vector path: subpaths of lines and curves, built element by element and
// taken apart into segments that can be measured and split.
class Path {
  public:
    Path() = default;
    explicit Path(std::vector<PathElement> elements) : elements_(std::move(elements)) {}

    void moveTo(CGPoint point) { elements_.push_back(PathElement::moveTo(point)); }
    void addLineTo(CGPoint point) { elements_.push_back(PathElement::addLineTo(point)); }
    void addQuadCurveTo(CGPoint point, CGPoint controlPoint) {
        elements_.push_back(PathElement::addQuadCurveTo(point, controlPoint));
    }
    void addCurveTo(CGPoint point, CGPoint controlPoint1, CGPoint controlPoint2) {
        elements_.push_back(PathElement::addCurveTo(point, controlPoint1, controlPoint2));
    }
    void closeSubpath() { elements_.push_back(PathElement::close()); }

    const std::vector<PathElement>& elements() const { return elements_; }
    // The first section of the linked list of elements; null for an empty
    // path.
    std::shared_ptr<PathSection> sections() const;
    // Each element with the point it starts from: the end of the one before,
    // none for an element that comes first; a close runs back to the last
    // move's point.
    std::vector<Segment> segments() const;

    double length() const { return plumbline::length(segments()); }
    // The segments' path data, separated by blanks: "M0.0,0.0 L10.0,0.0 z".
    std::string svgString() const;
    // How far along the path, as a share of its length (0...1), it comes
    // nearest the point; 0 for a path of no length.
    double percentAlongPath(CGPoint point) const;
    // The point at that share of the path's length (clamped to 0...1), the
    // length measured now unless given; nothing for an empty path.
    std::optional<CGPoint> pointAlongPath(double atPercent,
                                          std::optional<double> precalculatedLength = {}) const;

  private:
    std::vector<PathElement> elements_;
};

// The summed length of the elements of a list of sections, from `first` on.
double length(const std::shared_ptr<PathSection>& first);

}  // namespace plumbline
