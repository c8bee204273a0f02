#include "shortcuts/SRKeyCodeTables.h"

#include <algorithm>
#include <array>
#include <map>
#include <utility>

namespace lirixkro::detail {

namespace {

constexpr std::array<SRKeyCode, 20> functionKeyCodes = {
    122, 120, 99, 118, 96, 97, 98, 100, 101, 109, 103, 111, 105, 107, 113, 106, 64, 79, 80, 90};

constexpr char32_t firstFunctionKeySymbol = 0xF704;

// Digits 0 to 9 on the number row.
constexpr std::array<SRKeyCode, 10> digitKeyCodes = {29, 18, 19, 20, 21, 23, 22, 26, 28, 25};

// The number-row and punctuation characters both reverse transformations
// read the same way.
std::optional<SRKeyCode> sharedCharacterKeyCode(char32_t c) {
    if (c >= '0' && c <= '9')
        return digitKeyCodes[c - '0'];
    switch (c) {
        case '-':
            return 27;
        case '.':
            return 47;
        case '/':
            return 44;
        case '=':
            return 24;
        case U'¥':
            return 93;
        case U'、':
            return 95;
        case U'＿':
            return 94;
        default:
            return std::nullopt;
    }
}

}  // namespace

const std::vector<SRKeyCode>& SRKnownKeyCodes() {
    static const std::vector<SRKeyCode> codes = {
        29,  18, 19, 20,  21,  23,  22,  26,  28,  25,  0,   11,  42,  8,  43,  2,   14,  24,
        3,   5,  50, 4,   34,  38,  40,  82,  83,  84,  85,  86,  87,  88, 89,  91,  92,  65,
        75,  76, 81, 78,  67,  69,  37,  33,  46,  27,  45,  31,  35,  47, 12,  39,  15,  30,
        1,   41, 44, 17,  32,  9,   13,  7,   16,  6,   51,  125, 119, 53, 122, 120, 99,  118,
        96,  97, 98, 100, 101, 109, 103, 111, 105, 107, 113, 106, 64,  79, 80,  90,  117, 114,
        115, 10, 95, 94,  93,  123, 121, 116, 36,  124, 49,  48,  126};
    return codes;
}

std::optional<int> SRFunctionKeyNumber(SRKeyCode keyCode) {
    auto found = std::find(functionKeyCodes.begin(), functionKeyCodes.end(), keyCode);
    if (found == functionKeyCodes.end())
        return std::nullopt;
    return static_cast<int>(found - functionKeyCodes.begin()) + 1;
}

SRKeyCode SRKeyCodeForFunctionKey(int number) {
    return functionKeyCodes.at(static_cast<std::size_t>(number - 1));
}

std::optional<std::string> SRFixedLiteral(SRKeyCode keyCode) {
    static const std::map<SRKeyCode, std::string> literals = {
        {36, "↩"},  {53, "⎋"},  {71, "⌧"},  {76, "⌅"},  {93, "¥"},  {94, "＿"},
        {95, "、"}, {114, "?⃝"}, {115, "↖"}, {116, "⇞"}, {119, "↘"}, {121, "⇟"},
        {123, "←"}, {124, "→"}, {125, "↓"}, {126, "↑"}};
    auto found = literals.find(keyCode);
    if (found == literals.end())
        return std::nullopt;
    return found->second;
}

std::optional<char32_t> SRFixedSymbol(SRKeyCode keyCode) {
    static const std::map<SRKeyCode, char32_t> symbols = {
        {36, 0x000D},  {48, 0x0009},  {49, 0x0020},  {51, 0x0008},  {53, 0x001B},
        {71, 0xF739},  {76, 0x0003},  {93, U'¥'},    {94, U'＿'},   {95, U'、'},
        {114, 0xF746}, {115, 0xF729}, {116, 0xF72C}, {117, 0x007F}, {119, 0xF72B},
        {121, 0xF72D}, {123, 0xF702}, {124, 0xF703}, {125, 0xF701}, {126, 0xF700}};
    if (auto number = SRFunctionKeyNumber(keyCode)) {
        return firstFunctionKeySymbol + static_cast<char32_t>(*number - 1);
    }
    auto found = symbols.find(keyCode);
    if (found == symbols.end())
        return std::nullopt;
    return found->second;
}

std::optional<SRKeyCode> SRKeyCodeForLiteralCharacter(char32_t c) {
    static const std::map<char32_t, SRKeyCode> literals = {
        {U' ', 49},  {U'←', 123}, {U'↑', 126}, {U'→', 124}, {U'↓', 125}, {U'↖', 115},
        {U'↘', 119}, {U'↩', 36},  {U'⇞', 116}, {U'⇟', 121}, {U'⇤', 48},  {U'⇥', 48},
        {U'⌅', 76},  {U'⌦', 117}, {U'⌧', 71},  {U'⌫', 51},  {U'⎋', 53}};
    if (auto shared = sharedCharacterKeyCode(c))
        return shared;
    auto found = literals.find(c);
    if (found == literals.end())
        return std::nullopt;
    return found->second;
}

std::optional<SRKeyCode> SRKeyCodeForSymbolCharacter(char32_t c) {
    static const std::map<char32_t, SRKeyCode> symbols = {
        {0x0019, 48},  {0xF700, 126}, {0xF701, 125}, {0xF702, 123}, {0xF703, 124},
        {0xF729, 115}, {0xF72B, 119}, {0xF72C, 116}, {0xF72D, 121}, {0xF746, 114}};
    if (auto shared = sharedCharacterKeyCode(c))
        return shared;
    if (c >= firstFunctionKeySymbol && c < firstFunctionKeySymbol + functionKeyCodes.size()) {
        return functionKeyCodes[c - firstFunctionKeySymbol];
    }
    auto found = symbols.find(c);
    if (found == symbols.end())
        return std::nullopt;
    return found->second;
}

bool SRIsKeypadKeyCode(SRKeyCode keyCode) {
    static constexpr std::array<SRKeyCode, 18> keypad = {65, 67, 69, 71, 75, 76, 78, 81, 82,
                                                         83, 84, 85, 86, 87, 88, 89, 91, 92};
    return std::find(keypad.begin(), keypad.end(), keyCode) != keypad.end();
}

std::optional<SRKeyCode> SRKeypadKeyCodeFor(SRKeyCode keyCode) {
    // Indexed by the key code minus 18: the number row, = and -.
    static constexpr std::array<SRKeyCode, 12> keypadTwins = {83, 84, 85, 86, 88, 87,
                                                              81, 92, 89, 78, 91, 82};
    if (keyCode < 18 || keyCode > 29)
        return std::nullopt;
    return keypadTwins[keyCode - 18];
}

}  // namespace lirixkro::detail
