#pragma once

#include <string>

namespace tarnwick {

// The text styles of the system font the first-run and About windows use,
// from the largest.
enum class TextStyle { largeTitle, title, headline, body, caption };

// A line of text as a window shows it: the words, the style, and whether it
// leans or steps back in a dimmer colour.
struct StyledText {
    std::string text;
    TextStyle style = TextStyle::body;
    bool italic = false;
    bool secondary = false;

    friend bool operator==(const StyledText&, const StyledText&) = default;
};

}  // namespace tarnwick
