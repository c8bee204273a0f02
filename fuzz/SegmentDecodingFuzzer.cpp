// Arbitrary bytes read as a stored path segment: they decode to a segment or
// fail with a DecodingError, never crash; a decoded segment can be
// measured, split and written as path data in bounded time, and reads back
// as itself.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "geometry/Segment.h"
#include "support/Codable.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::uint8_t> bytes(data, data + size);
    try {
        const auto segment = quillbox::PropertyListDecoder().decode<plumbline::Segment>(bytes);
        (void)segment.length();
        (void)segment.svgString();
        (void)segment.debugDescription();
        (void)segment.percentAlongCurve({1, 1});
        (void)segment.splitIntoSegments(3);
        const auto encoded = quillbox::PropertyListEncoder().encode(segment);
        const auto again = quillbox::PropertyListDecoder().decode<plumbline::Segment>(encoded);
        // NaN coordinates never compare equal; everything else must.
        if (!std::isnan(segment.length()) && !(again == segment))
            std::abort();
    } catch (const quillbox::DecodingError&) {
    }
    return 0;
}
