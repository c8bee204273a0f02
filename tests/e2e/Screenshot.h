#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Geometry.h"

namespace e2e {

// The pixels of a region of the screen, for telling drawn text from faint
// text.
class Screenshot {
  public:
    Screenshot(Geometry region, std::vector<uint32_t> pixels);

    // The lowest brightness (0 to 255) in the part of the region, given in
    // screen coordinates; 255 for a part outside the region.
    int darkest(Geometry part) const;

    // Whether two parts of the same size, in screen coordinates, show the
    // same pixels.
    bool looksAlike(Geometry part, Geometry other) const;

  private:
    uint32_t at(int x, int y) const;

    Geometry region_;
    std::vector<uint32_t> pixels_;  // 0x00RRGGBB, row after row
};

// Saves the part of the screen as a PNG file; false when that failed.
bool saveScreenshot(Geometry region, const std::string& path);

}  // namespace e2e
