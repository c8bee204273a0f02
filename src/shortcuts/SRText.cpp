#include "shortcuts/SRText.h"

#include <cstdint>

namespace lirixkro::detail {

namespace {

constexpr char32_t replacementCharacter = 0xFFFD;

// The length of a UTF-8 sequence from its lead byte; 0 for a byte that can't
// lead one.
int sequenceLength(unsigned char lead) {
    if (lead < 0x80)
        return 1;
    if (lead >= 0xC2 && lead <= 0xDF)
        return 2;
    if (lead >= 0xE0 && lead <= 0xEF)
        return 3;
    if (lead >= 0xF0 && lead <= 0xF4)
        return 4;
    return 0;
}

bool isValidCharacter(char32_t c, int length) {
    static constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    if (c < smallest[length] || c > 0x10FFFF)
        return false;
    return c < 0xD800 || c > 0xDFFF;
}

// Upper to lower case for the scripts of the keyboards the program knows:
// Latin-1, Latin Extended-A, Greek and Cyrillic.
char32_t lowerCharacter(char32_t c) {
    if (c >= 'A' && c <= 'Z')
        return c + 0x20;
    if ((c >= 0xC0 && c <= 0xDE && c != 0xD7))
        return c + 0x20;
    if (c >= 0x100 && c <= 0x17F && c != 0x130 && c != 0x138 && c != 0x149 && c != 0x17F) {
        const bool oddPairs = (c >= 0x139 && c <= 0x148) || (c >= 0x179 && c <= 0x17E);
        if (oddPairs)
            return (c % 2 == 1) ? c + 1 : c;
        if (c == 0x178)
            return 0xFF;
        return (c % 2 == 0) ? c + 1 : c;
    }
    if (c >= 0x391 && c <= 0x3AB && c != 0x3A2)
        return c + 0x20;
    if (c == 0x386)
        return 0x3AC;
    if (c >= 0x388 && c <= 0x38A)
        return c + 0x25;
    if (c == 0x38C)
        return 0x3CC;
    if (c == 0x38E || c == 0x38F)
        return c + 0x3F;
    if (c >= 0x410 && c <= 0x42F)
        return c + 0x20;
    if (c >= 0x400 && c <= 0x40F)
        return c + 0x50;
    return c;
}

char32_t upperCharacter(char32_t c) {
    if (c >= 'a' && c <= 'z')
        return c - 0x20;
    if (c >= 0xE0 && c <= 0xFE && c != 0xF7)
        return c - 0x20;
    if (c == 0xFF)
        return 0x178;
    if (c >= 0x100 && c <= 0x17F && lowerCharacter(c) == c) {
        for (char32_t candidate : {c - 1, c + 1}) {
            if (candidate != c && lowerCharacter(candidate) == c)
                return candidate;
        }
        return c;
    }
    if (c >= 0x3B1 && c <= 0x3CB && c != 0x3C2)
        return c - 0x20;
    if (c == 0x3AC)
        return 0x386;
    if (c >= 0x3AD && c <= 0x3AF)
        return c - 0x25;
    if (c == 0x3CC)
        return 0x38C;
    if (c == 0x3CD || c == 0x3CE)
        return c - 0x3F;
    if (c >= 0x430 && c <= 0x44F)
        return c - 0x20;
    if (c >= 0x450 && c <= 0x45F)
        return c - 0x50;
    return c;
}

template <typename Map>
std::string mapped(std::string_view text, Map map) {
    std::u32string characters = SRCharacters(text);
    for (auto& c : characters)
        c = map(c);
    return SRUTF8(characters);
}

}  // namespace

std::u32string SRCharacters(std::string_view text) {
    std::u32string characters;
    std::size_t i = 0;
    while (i < text.size()) {
        const auto lead = static_cast<unsigned char>(text[i]);
        const int length = sequenceLength(lead);
        if (length == 0 || i + static_cast<std::size_t>(length) > text.size()) {
            characters.push_back(replacementCharacter);
            ++i;
            continue;
        }
        char32_t c = length == 1 ? lead : (lead & (0xFF >> (length + 1)));
        bool wellFormed = true;
        for (int k = 1; k < length; ++k) {
            const auto next = static_cast<unsigned char>(text[i + static_cast<std::size_t>(k)]);
            if ((next & 0xC0) != 0x80)
                wellFormed = false;
            c = (c << 6) | (next & 0x3F);
        }
        if (!wellFormed || !isValidCharacter(c, length)) {
            characters.push_back(replacementCharacter);
            ++i;
            continue;
        }
        characters.push_back(c);
        i += static_cast<std::size_t>(length);
    }
    return characters;
}

std::string SRUTF8(char32_t c) {
    std::string out;
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
    return out;
}

std::string SRUTF8(std::u32string_view characters) {
    std::string out;
    for (char32_t c : characters)
        out += SRUTF8(c);
    return out;
}

std::string SRLowercased(std::string_view text) {
    return mapped(text, lowerCharacter);
}

std::string SRUppercased(std::string_view text) {
    return mapped(text, upperCharacter);
}

}  // namespace lirixkro::detail
