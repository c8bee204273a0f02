#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/Event.h"

namespace platform::sim {

// What one key gives under Shift and Option. An empty text falls back: Shift
// with Option to Shift, Option to the plain key.
struct SimKeyTexts {
    std::string plain = {};
    std::string shift = {};
    std::string option = {};
    std::string shiftOption = {};
};

// One keyboard layout as a table from key code to texts.
struct SimKeyboardLayoutTable {
    std::string identifier;
    bool asciiCapable = true;
    std::map<KeyCode, SimKeyTexts> keys;
};

namespace layoutIdentifier {
inline constexpr const char* us = "com.apple.keylayout.US";
inline constexpr const char* german = "com.apple.keylayout.German";
inline constexpr const char* french = "com.apple.keylayout.French";
inline constexpr const char* russian = "com.apple.keylayout.Russian";
}  // namespace layoutIdentifier

// US, German (QWERTZ), French (AZERTY) and Russian, the last not
// ASCII-capable.
const std::vector<SimKeyboardLayoutTable>& simKeyboardLayoutTables();

}  // namespace platform::sim
