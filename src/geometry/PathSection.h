#pragma once

#include <memory>

#include "geometry/PathElement.h"

namespace plumbline {

// One element of a path in a doubly linked list of the path's elements:
// each section owns the next and looks back at the previous one.
class PathSection {
  public:
    // The number of steps in which a curve is sampled to find a point on it.
    static long curveResolution;

    explicit PathSection(PathElement pathElement) : element(pathElement) {}

    PathElement element;
    std::shared_ptr<PathSection> next;
    std::weak_ptr<PathSection> previous;
};

}  // namespace plumbline
