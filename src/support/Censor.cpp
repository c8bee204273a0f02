#include "support/Censor.h"

#include <string_view>
#include <vector>

#include "support/TextCharacters.h"

namespace quillbox {

namespace {

constexpr std::string_view mask = "***";

std::string firstAndLast(const std::vector<std::string_view>& characters, std::size_t hidden) {
    std::string text(characters.front());
    text.append(hidden, '*');
    text.append(characters.back());
    return text;
}

}  // namespace

std::string Censor::description() const {
    const auto characters = charactersOf(rawValue_);
    const auto count = characters.size();
    switch (level_) {
        case Level::complete:
            return std::string(mask);
        case Level::allowCharCount:
            return std::string(count, '*');
        case Level::firstAndLastRevealedNoCharCount:
            return count < 5 ? std::string(mask) : firstAndLast(characters, mask.size());
        case Level::firstAndLastRevealedAndCharCount:
            return count < 5 ? std::string(mask) : firstAndLast(characters, count - 2);
    }
    return std::string(mask);
}

}  // namespace quillbox
