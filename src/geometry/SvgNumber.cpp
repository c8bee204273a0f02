#include "geometry/SvgNumber.h"

#include <charconv>
#include <cmath>

namespace plumbline {

std::string svgNumber(double value) {
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    std::string text(buffer, result.ptr);
    if (std::isfinite(value) && text.find_first_of(".e") == std::string::npos)
        text += ".0";
    return text;
}

std::string svgPoint(platform::CGPoint point) {
    return svgNumber(point.x) + "," + svgNumber(point.y);
}

}  // namespace plumbline
