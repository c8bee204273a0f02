#pragma once

#include <string>

#include "platform/Geometry.h"

namespace plumbline {

// A coordinate as path data writes it: the shortest text that reads back as
// the same double, with ".0" on whole numbers ("10.0", "0.25", "-3.5e-07").
std::string svgNumber(double value);
// "x,y"
std::string svgPoint(platform::CGPoint point);

}  // namespace plumbline
