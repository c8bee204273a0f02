#include "Screenshot.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <utility>

namespace e2e {

Screenshot::Screenshot(Geometry region, std::vector<uint32_t> pixels)
    : region_(region), pixels_(std::move(pixels)) {}

int Screenshot::darkest(Geometry part) const {
    int result = 255;
    for (int y = part.y; y < part.y + part.height; ++y) {
        for (int x = part.x; x < part.x + part.width; ++x) {
            const uint32_t pixel = at(x, y);
            const int red = (pixel >> 16) & 0xff, green = (pixel >> 8) & 0xff, blue = pixel & 0xff;
            result = std::min(result, (red * 299 + green * 587 + blue * 114) / 1000);
        }
    }
    return result;
}

bool Screenshot::looksAlike(Geometry part, Geometry other) const {
    for (int y = 0; y < part.height; ++y) {
        for (int x = 0; x < part.width; ++x) {
            if (at(part.x + x, part.y + y) != at(other.x + x, other.y + y))
                return false;
        }
    }
    return true;
}

// White outside the region.
uint32_t Screenshot::at(int x, int y) const {
    x -= region_.x;
    y -= region_.y;
    if (x < 0 || y < 0 || x >= region_.width || y >= region_.height)
        return 0xffffff;
    return pixels_[static_cast<std::size_t>(y * region_.width + x)] & 0xffffff;
}

// The image tools read the screen of the display the tests run on.
bool saveScreenshot(Geometry region, const std::string& path) {
    std::error_code ignored;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path(), ignored);
    const std::string command = "import -window root -crop " + std::to_string(region.width) + "x" +
                                std::to_string(region.height) + "+" + std::to_string(region.x) +
                                "+" + std::to_string(region.y) + " +repage '" + path + "'";
    return std::system(command.c_str()) == 0;
}

}  // namespace e2e
