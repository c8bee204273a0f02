// Stored shortcut data, damaged in every way: reading it must give a value
// or a DecodingError, never a crash.
#include <cstddef>
#include <cstdint>
#include <string>

#include "FuzzDesktop.h"
#include "platform/Platform.h"
#include "platform/PropertyList.h"
#include "platform/PropertyListCodec.h"
#include "platform/sim/SimKeyboardLayouts.h"
#include "platform/sim/SimMainLoop.h"
#include "shortcuts/SRShortcut.h"
#include "support/Codable.h"

using fuzzing::installDesktopOnce;

namespace {

using platform::PropertyList;
using SelfCodable = lirixkro::SRShortcut::SelfCodable;

// Builds an entry of a type the input chooses, so that the decoder meets
// every kind of value under the keys it knows.
PropertyList entryFrom(const std::uint8_t*& data, std::size_t& size) {
    if (size < 9)
        return PropertyList(std::string());
    const std::uint8_t kind = data[0];
    std::uint64_t bits = 0;
    for (int i = 1; i <= 8; ++i)
        bits = (bits << 8) | data[i];
    data += 9;
    size -= 9;
    switch (kind % 6) {
        case 0:
            return PropertyList(bits);
        case 1:
            return PropertyList(static_cast<long long>(bits));
        case 2:
            return PropertyList(static_cast<double>(bits));
        case 3:
            return PropertyList(std::string(reinterpret_cast<const char*>(data - 8), 8));
        case 4:
            return PropertyList(bits % 2 == 0);
        default:
            return PropertyList(PropertyList::Array{});
    }
}

void decodeEveryWay(const PropertyList::Data& bytes) {
    try {
        auto value = quillbox::PropertyListDecoder().decode<SelfCodable>(bytes);
        auto shortcut = value.toShortcut();
        (void)shortcut->description();
        (void)quillbox::PropertyListEncoder().encode(value);
    } catch (const quillbox::DecodingError&) {
    }
    if (auto list = platform::PropertyListCodec::decode(bytes)) {
        if (auto shortcut = lirixkro::SRShortcut::decode(*list)) {
            (void)shortcut->readableStringRepresentation(true);
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    installDesktopOnce();
    decodeEveryWay(PropertyList::Data(data, data + size));

    PropertyList::Dictionary dictionary;
    const char* keys[] = {"keyCode", "modifierFlags", "characters", "charactersIgnoringModifiers",
                          "other"};
    for (const char* key : keys) {
        if (size == 0)
            break;
        const bool present = data[0] & 1;
        ++data;
        --size;
        if (present)
            dictionary[key] = entryFrom(data, size);
    }
    decodeEveryWay(platform::PropertyListCodec::encodeBinary(dictionary));
    return 0;
}
