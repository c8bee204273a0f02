#include "support/TextCharacters.h"

namespace quillbox {

namespace {

std::size_t announcedContinuations(unsigned char lead) {
    if ((lead & 0xE0) == 0xC0)
        return 1;
    if ((lead & 0xF0) == 0xE0)
        return 2;
    if ((lead & 0xF8) == 0xF0)
        return 3;
    return 0;
}

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

}  // namespace

std::size_t characterLength(std::string_view text, std::size_t at) {
    const auto expected = announcedContinuations(static_cast<unsigned char>(text[at]));
    std::size_t length = 1;
    while (length <= expected && at + length < text.size() && isContinuation(text[at + length]))
        ++length;
    return length;
}

std::size_t characterCount(std::string_view text) {
    std::size_t count = 0;
    for (std::size_t at = 0; at < text.size(); at += characterLength(text, at))
        ++count;
    return count;
}

std::vector<std::string_view> charactersOf(std::string_view text) {
    std::vector<std::string_view> characters;
    for (std::size_t at = 0; at < text.size();) {
        const auto length = characterLength(text, at);
        characters.push_back(text.substr(at, length));
        at += length;
    }
    return characters;
}

}  // namespace quillbox
