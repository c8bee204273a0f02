#include "platform/x11/KeyCodeTable.h"

#include <array>
#include <utility>

namespace platform::x11 {

namespace {

struct KeyPair {
    KeyCode keyCode;
    KeyCodeTable::XKeyCode xKeyCode;
};

// Virtual key code, then evdev X keycode. Where two X keys stand for one
// virtual key, the first pair is the one a virtual key code goes to.
constexpr KeyPair pairs[] = {
    // Letters.
    {0, 38},
    {1, 39},
    {2, 40},
    {3, 41},
    {4, 43},
    {5, 42},
    {6, 52},
    {7, 53},
    {8, 54},
    {9, 55},
    {11, 56},
    {12, 24},
    {13, 25},
    {14, 26},
    {15, 27},
    {16, 29},
    {17, 28},
    {31, 32},
    {32, 30},
    {34, 31},
    {35, 33},
    {37, 46},
    {38, 44},
    {40, 45},
    {45, 57},
    {46, 58},
    // Digits of the number row.
    {18, 10},
    {19, 11},
    {20, 12},
    {21, 13},
    {23, 14},
    {22, 15},
    {26, 16},
    {28, 17},
    {25, 18},
    {29, 19},
    // Punctuation.
    {24, 21},
    {27, 20},
    {30, 35},
    {33, 34},
    {39, 48},
    {41, 47},
    {42, 51},
    {43, 59},
    {44, 61},
    {47, 60},
    {50, 49},
    // The ISO key beside the left Shift, and the Japanese keys.
    {10, 94},
    {93, 132},
    {94, 97},
    {95, 103},
    {102, 131},
    {104, 130},
    // Editing and navigation.
    {36, 36},
    {48, 23},
    {49, 65},
    {51, 22},
    {53, 9},
    {114, 118},
    {114, 146},
    {115, 110},
    {116, 112},
    {117, 119},
    {119, 115},
    {121, 117},
    {123, 113},
    {124, 114},
    {125, 116},
    {126, 111},
    // Modifiers. The Fn key, on the keyboards that report it, arrives as the
    // wake-up key: its own input code lies beyond the X keycode range.
    {54, 134},
    {55, 133},
    {56, 50},
    {57, 66},
    {58, 64},
    {59, 37},
    {60, 62},
    {61, 108},
    {62, 105},
    {63, 151},
    // Function keys F1 to F20.
    {122, 67},
    {120, 68},
    {99, 69},
    {118, 70},
    {96, 71},
    {97, 72},
    {98, 73},
    {100, 74},
    {101, 75},
    {109, 76},
    {103, 95},
    {111, 96},
    {105, 191},
    {107, 192},
    {113, 193},
    {106, 194},
    {64, 195},
    {79, 196},
    {80, 197},
    {90, 198},
    // Keypad. Clear sits where Num Lock is.
    {65, 91},
    {67, 63},
    {69, 86},
    {71, 77},
    {75, 106},
    {76, 104},
    {78, 82},
    {81, 125},
    {82, 90},
    {83, 87},
    {84, 88},
    {85, 89},
    {86, 83},
    {87, 84},
    {88, 85},
    {89, 79},
    {91, 80},
    {92, 81},
    // Volume.
    {72, 123},
    {73, 122},
    {74, 121},
};

constexpr KeyCode noKey = keycode::none;
constexpr std::size_t virtualKeyCount = 128;

struct Lookup {
    std::array<int, virtualKeyCount> toX{};
    std::array<KeyCode, 256> fromX{};
    std::array<KeyCode, std::size(pairs)> keyCodes{};
    std::size_t keyCodeCount = 0;
};

constexpr Lookup makeLookup() {
    Lookup lookup;
    lookup.toX.fill(-1);
    lookup.fromX.fill(noKey);
    for (const KeyPair& pair : pairs) {
        if (lookup.toX[pair.keyCode] < 0) {
            lookup.toX[pair.keyCode] = pair.xKeyCode;
            lookup.keyCodes[lookup.keyCodeCount++] = pair.keyCode;
        }
        lookup.fromX[pair.xKeyCode] = pair.keyCode;
    }
    return lookup;
}

constexpr Lookup lookup = makeLookup();

}  // namespace

std::optional<KeyCodeTable::XKeyCode> KeyCodeTable::xKeyCodeFor(KeyCode keyCode) {
    if (keyCode >= virtualKeyCount || lookup.toX[keyCode] < 0)
        return std::nullopt;
    return static_cast<XKeyCode>(lookup.toX[keyCode]);
}

std::optional<KeyCode> KeyCodeTable::keyCodeFor(XKeyCode xKeyCode) {
    const KeyCode keyCode = lookup.fromX[xKeyCode];
    if (keyCode == noKey)
        return std::nullopt;
    return keyCode;
}

ModifierFlags KeyCodeTable::modifierFlagOf(KeyCode keyCode) {
    switch (keyCode) {
        case keycode::shift:
        case keycode::rightShift:
            return modifier::shift;
        case keycode::control:
        case keycode::rightControl:
            return modifier::control;
        case keycode::option:
        case keycode::rightOption:
            return modifier::option;
        case keycode::command:
        case keycode::rightCommand:
            return modifier::command;
        case keycode::capsLock:
            return modifier::capsLock;
        case keycode::function:
            return modifier::function;
        default:
            return 0;
    }
}

ModifierFlags KeyCodeTable::deviceFlagsOf(KeyCode keyCode) {
    constexpr KeyCode arrows[] = {123, 124, 125, 126};
    constexpr KeyCode functionKeys[] = {122, 120, 99,  118, 96,  97,  98,  100, 101,
                                        109, 103, 111, 105, 107, 113, 106, 64,  79,
                                        80,  90,  114, 115, 116, 117, 119, 121};
    constexpr KeyCode keypad[] = {65, 67, 69, 71, 75, 76, 78, 81, 82,
                                  83, 84, 85, 86, 87, 88, 89, 91, 92};
    const auto contains = [keyCode](const auto& keys) {
        for (KeyCode key : keys) {
            if (key == keyCode)
                return true;
        }
        return false;
    };
    if (contains(arrows))
        return modifier::function | modifier::numericPad;
    if (contains(functionKeys))
        return modifier::function;
    if (contains(keypad))
        return modifier::numericPad;
    return 0;
}

const KeyCode* KeyCodeTable::begin() {
    return lookup.keyCodes.data();
}
const KeyCode* KeyCodeTable::end() {
    return lookup.keyCodes.data() + lookup.keyCodeCount;
}

}  // namespace platform::x11
