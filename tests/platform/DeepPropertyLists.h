#pragma once

#include <cstdint>
#include <string>

namespace platform::fixtures {

// Property lists nested `depth` arrays deep below a dictionary { "k": ... },
// built byte by byte: the codec itself refuses to build them.

inline std::string deepXMLPropertyList(std::size_t depth) {
    std::string text =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">"
        "<dict><key>k</key>";
    for (std::size_t i = 0; i < depth; ++i)
        text += "<array>";
    text += "<true/>";
    for (std::size_t i = 0; i < depth; ++i)
        text += "</array>";
    return text + "</dict></plist>\n";
}

// Object 0 is the dictionary, 1 its key, 2 to depth + 1 the arrays, each
// holding the next, and the last holds object 0 again when `cyclic`, else
// the value true.
inline std::string deepBinaryPropertyList(std::size_t depth, bool cyclic = false) {
    const auto bigEndian = [](std::string& out, std::uint64_t value, int width) {
        for (int shift = (width - 1) * 8; shift >= 0; shift -= 8)
            out += static_cast<char>((value >> shift) & 0xFF);
    };
    const std::uint64_t objects = depth + 3;
    std::string bytes = "bplist00";
    std::string offsets;
    const auto object = [&](std::string body) {
        bigEndian(offsets, bytes.size(), 4);
        bytes += body;
    };
    std::string dictionary = "\xD1";
    bigEndian(dictionary, 1, 4);
    bigEndian(dictionary, 2, 4);
    object(dictionary);
    object("\x51k");
    for (std::size_t i = 0; i < depth; ++i) {
        std::string array = "\xA1";
        const bool last = i + 1 == depth;
        bigEndian(array, last ? (cyclic ? 0 : objects - 1) : 3 + i, 4);
        object(array);
    }
    object("\x09");  // true
    const std::uint64_t offsetTable = bytes.size();
    bytes += offsets;
    bytes += std::string(6, '\0');
    bytes += '\x04';  // offset width
    bytes += '\x04';  // reference width
    bigEndian(bytes, objects, 8);
    bigEndian(bytes, 0, 8);
    bigEndian(bytes, offsetTable, 8);
    return bytes;
}

}  // namespace platform::fixtures
