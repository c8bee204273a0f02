#include "shortcuts/SRTextPropertyList.h"

#include <cstdint>
#include <string>

#include "platform/PropertyListCodec.h"
#include "shortcuts/SRText.h"

namespace lirixkro {

using platform::PropertyList;

namespace {

constexpr int maximumDepth = 256;
constexpr char32_t replacementCharacter = 0xFFFD;

bool isBareCharacter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
           c == '$' || c == '+' || c == '/' || c == ':' || c == '.' || c == '-';
}

int hexValue(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

bool isHighSurrogate(char32_t c) {
    return c >= 0xD800 && c <= 0xDBFF;
}
bool isLowSurrogate(char32_t c) {
    return c >= 0xDC00 && c <= 0xDFFF;
}

// A recursive-descent reader over the text; every failure gives nothing.
class Reader {
  public:
    explicit Reader(std::string_view text) : text_(text) {}

    std::optional<PropertyList> readDocument() {
        auto value = readValue(0);
        if (!value || !skipSpace() || position_ != text_.size())
            return std::nullopt;
        return value;
    }

  private:
    bool atEnd() const { return position_ >= text_.size(); }
    char peek() const { return text_[position_]; }

    // Skips blanks and comments; false for a comment left open.
    bool skipSpace() {
        while (!atEnd()) {
            const char c = peek();
            if (c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v') {
                ++position_;
            } else if (text_.substr(position_, 2) == "//") {
                const auto end = text_.find('\n', position_);
                position_ = end == std::string_view::npos ? text_.size() : end + 1;
            } else if (text_.substr(position_, 2) == "/*") {
                const auto end = text_.find("*/", position_ + 2);
                if (end == std::string_view::npos)
                    return false;
                position_ = end + 2;
            } else {
                break;
            }
        }
        return true;
    }

    // Skips blanks and comments; true when the next character is the one
    // given, which is then taken.
    bool take(char expected) {
        if (!skipSpace() || atEnd() || peek() != expected)
            return false;
        ++position_;
        return true;
    }

    std::optional<PropertyList> readValue(int depth) {
        if (depth > maximumDepth || !skipSpace() || atEnd())
            return std::nullopt;
        switch (peek()) {
            case '{':
                return readDictionary(depth);
            case '(':
                return readArray(depth);
            case '<':
                return readData();
            default: {
                auto text = readString();
                return text ? std::optional<PropertyList>(std::move(*text)) : std::nullopt;
            }
        }
    }

    std::optional<PropertyList> readDictionary(int depth) {
        ++position_;
        PropertyList::Dictionary dictionary;
        while (true) {
            if (take('}'))
                return PropertyList(std::move(dictionary));
            auto key = readString();
            if (!key || !take('='))
                return std::nullopt;
            auto value = readValue(depth + 1);
            if (!value)
                return std::nullopt;
            dictionary.insert_or_assign(std::move(*key), std::move(*value));
            // The last entry may leave out its semicolon.
            if (!take(';') && !(skipSpace() && !atEnd() && peek() == '}'))
                return std::nullopt;
        }
    }

    std::optional<PropertyList> readArray(int depth) {
        ++position_;
        PropertyList::Array array;
        if (take(')'))
            return PropertyList(std::move(array));
        while (true) {
            auto value = readValue(depth + 1);
            if (!value)
                return std::nullopt;
            array.push_back(std::move(*value));
            if (take(')'))
                return PropertyList(std::move(array));
            if (!take(','))
                return std::nullopt;
            // A comma may end the list.
            if (take(')'))
                return PropertyList(std::move(array));
        }
    }

    std::optional<PropertyList> readData() {
        ++position_;
        PropertyList::Data data;
        int high = -1;
        while (!atEnd()) {
            const char c = text_[position_++];
            if (c == '>')
                return high < 0 ? std::optional<PropertyList>(std::move(data)) : std::nullopt;
            if (c == ' ' || c == '\t' || c == '\n' || c == '\r')
                continue;
            const int value = hexValue(c);
            if (value < 0)
                return std::nullopt;
            if (high < 0) {
                high = value;
            } else {
                data.push_back(static_cast<std::uint8_t>(high << 4 | value));
                high = -1;
            }
        }
        return std::nullopt;
    }

    std::optional<std::string> readString() {
        if (!skipSpace() || atEnd())
            return std::nullopt;
        const char first = peek();
        if (first == '"' || first == '\'')
            return readQuoted(first);
        const std::size_t start = position_;
        while (!atEnd() && isBareCharacter(peek()))
            ++position_;
        if (position_ == start)
            return std::nullopt;
        return std::string(text_.substr(start, position_ - start));
    }

    std::optional<std::string> readQuoted(char quote) {
        ++position_;
        std::u32string characters;
        std::size_t runStart = position_;
        const auto flushRun = [&] {
            characters += detail::SRCharacters(text_.substr(runStart, position_ - runStart));
        };
        while (!atEnd()) {
            const char c = peek();
            if (c == quote) {
                flushRun();
                ++position_;
                return utf8Replacing(std::move(characters));
            }
            if (c != '\\') {
                ++position_;
                continue;
            }
            flushRun();
            ++position_;
            auto escaped = readEscape();
            if (!escaped)
                return std::nullopt;
            appendCharacter(characters, *escaped);
            runStart = position_;
        }
        return std::nullopt;
    }

    // Joins a surrogate pair given as two \U escapes.
    static void appendCharacter(std::u32string& characters, char32_t c) {
        if (isLowSurrogate(c) && !characters.empty() && isHighSurrogate(characters.back())) {
            characters.back() = 0x10000 + ((characters.back() - 0xD800) << 10) + (c - 0xDC00);
            return;
        }
        characters.push_back(c);
    }

    // A surrogate left alone is no character: it reads as the replacement
    // character.
    static std::string utf8Replacing(std::u32string characters) {
        for (char32_t& c : characters) {
            if (isHighSurrogate(c) || isLowSurrogate(c))
                c = replacementCharacter;
        }
        return detail::SRUTF8(characters);
    }

    std::optional<char32_t> readEscape() {
        if (atEnd())
            return std::nullopt;
        const char c = text_[position_++];
        switch (c) {
            case 'a':
                return U'\a';
            case 'b':
                return U'\b';
            case 'f':
                return U'\f';
            case 'n':
                return U'\n';
            case 'r':
                return U'\r';
            case 't':
                return U'\t';
            case 'v':
                return U'\v';
            case 'U':
            case 'u':
                return readHexEscape();
            default:
                break;
        }
        if (c >= '0' && c <= '7')
            return readOctalEscape(c);
        // Any other character stands for itself ("\"", "\\", "\'").
        return static_cast<char32_t>(static_cast<unsigned char>(c));
    }

    std::optional<char32_t> readHexEscape() {
        char32_t value = 0;
        int digits = 0;
        while (digits < 4 && !atEnd() && hexValue(peek()) >= 0) {
            value = value * 16 + static_cast<char32_t>(hexValue(peek()));
            ++position_;
            ++digits;
        }
        return digits == 0 ? std::nullopt : std::optional<char32_t>(value);
    }

    char32_t readOctalEscape(char first) {
        char32_t value = static_cast<char32_t>(first - '0');
        for (int digits = 1; digits < 3 && !atEnd() && peek() >= '0' && peek() <= '7'; ++digits) {
            value = value * 8 + static_cast<char32_t>(peek() - '0');
            ++position_;
        }
        return value;
    }

    std::string_view text_;
    std::size_t position_ = 0;
};

bool startsWith(std::string_view bytes, std::string_view prefix) {
    return bytes.substr(0, prefix.size()) == prefix;
}

}  // namespace

std::optional<PropertyList> SRReadTextPropertyList(std::string_view text) {
    // A byte order mark may lead a file written by a text editor.
    if (startsWith(text, "\xEF\xBB\xBF"))
        text.remove_prefix(3);
    return Reader(text).readDocument();
}

std::optional<PropertyList> SRReadPropertyList(std::string_view bytes) {
    if (startsWith(bytes, "bplist") || startsWith(bytes, "<?xml") || startsWith(bytes, "<plist") ||
        startsWith(bytes, "<!DOCTYPE")) {
        return platform::PropertyListCodec::decode(bytes);
    }
    return SRReadTextPropertyList(bytes);
}

}  // namespace lirixkro
