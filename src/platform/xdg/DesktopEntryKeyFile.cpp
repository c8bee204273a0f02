#include "platform/xdg/DesktopEntryKeyFile.h"

namespace platform::xdg {

namespace {

std::string_view trimmed(std::string_view text) {
    const auto isSpace = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
    while (!text.empty() && isSpace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isSpace(text.back()))
        text.remove_suffix(1);
    return text;
}

// Desktop entries keep to letters, digits and '-', but the lists of default
// applications key by content type ("inode/directory", "image/svg+xml").
bool isKeyCharacter(char c) {
    return c != ' ' && c != '\t' && c != '[' && c != ']' && c != '=';
}

// "Name" or "Name[locale]", where the locale has no brackets or spaces.
bool isWellFormedKey(std::string_view key) {
    const auto open = key.find('[');
    const auto name = key.substr(0, open);
    if (name.empty())
        return false;
    for (char c : name) {
        if (!isKeyCharacter(c))
            return false;
    }
    if (open == std::string_view::npos)
        return true;
    const auto locale = key.substr(open + 1);
    if (locale.size() < 2 || locale.back() != ']')
        return false;
    return locale.substr(0, locale.size() - 1).find_first_of("[] \t") == std::string_view::npos;
}

// The escape that stands for a character in a raw value; nothing for a
// character that stands for itself.
const char* escapeFor(char c) {
    switch (c) {
        case '\\':
            return "\\\\";
        case '\n':
            return "\\n";
        case '\t':
            return "\\t";
        case '\r':
            return "\\r";
        default:
            return nullptr;
    }
}

// The character an escape stands for; zero for no known escape.
char escapedCharacter(char code) {
    switch (code) {
        case 's':
            return ' ';
        case 'n':
            return '\n';
        case 't':
            return '\t';
        case 'r':
            return '\r';
        case '\\':
            return '\\';
        default:
            return 0;
    }
}

}  // namespace

std::optional<DesktopEntryKeyFile> DesktopEntryKeyFile::parse(std::string_view text) {
    if (text.find('\0') != std::string_view::npos)
        return std::nullopt;
    DesktopEntryKeyFile file;
    Group* current = nullptr;
    std::size_t start = 0;
    while (start < text.size()) {
        const auto end = std::min(text.find('\n', start), text.size());
        const auto line = trimmed(text.substr(start, end - start));
        start = end + 1;
        if (line.empty() || line.front() == '#')
            continue;
        if (line.front() == '[') {
            if (line.back() != ']' || line.size() < 3)
                return std::nullopt;
            std::string name(line.substr(1, line.size() - 2));
            if (name.find_first_of("[]") != std::string::npos)
                return std::nullopt;
            auto [it, inserted] = file.groups_.try_emplace(name);
            if (!inserted)
                return std::nullopt;
            if (file.firstGroup_.empty())
                file.firstGroup_ = name;
            current = &it->second;
            continue;
        }
        const auto equals = line.find('=');
        if (!current || equals == std::string_view::npos)
            return std::nullopt;
        const auto key = trimmed(line.substr(0, equals));
        if (!isWellFormedKey(key))
            return std::nullopt;
        // The first entry of a key counts; a repeated key is ignored.
        current->try_emplace(std::string(key), std::string(trimmed(line.substr(equals + 1))));
    }
    return file;
}

const DesktopEntryKeyFile::Group* DesktopEntryKeyFile::group(std::string_view name) const {
    const auto it = groups_.find(name);
    return it == groups_.end() ? nullptr : &it->second;
}

namespace desktop_entry_value {

std::string unescaped(std::string_view raw) {
    std::string value;
    value.reserve(raw.size());
    for (std::size_t i = 0; i < raw.size(); ++i) {
        const char c = raw[i];
        const char escaped = (c == '\\' && i + 1 < raw.size()) ? escapedCharacter(raw[i + 1]) : 0;
        if (escaped) {
            value += escaped;
            ++i;
        } else {
            value += c;
        }
    }
    return value;
}

std::string escaped(std::string_view value) {
    std::string raw;
    raw.reserve(value.size());
    for (std::size_t i = 0; i < value.size(); ++i) {
        const char c = value[i];
        // Blanks around a value are trimmed when it is read, so those two
        // are written as escapes.
        const bool edgeBlank = c == ' ' && (i == 0 || i + 1 == value.size());
        if (const char* escape = edgeBlank ? "\\s" : escapeFor(c)) {
            raw += escape;
        } else {
            raw += c;
        }
    }
    return raw;
}

std::vector<std::string> list(std::string_view raw) {
    std::vector<std::string> elements;
    std::string element;
    for (std::size_t i = 0; i < raw.size(); ++i) {
        const char c = raw[i];
        if (c == '\\' && i + 1 < raw.size()) {
            const char next = raw[++i];
            const char escaped = next == ';' ? ';' : escapedCharacter(next);
            if (escaped) {
                element += escaped;
            } else {
                element += c;
                element += next;
            }
        } else if (c == ';') {
            if (!element.empty())
                elements.push_back(std::move(element));
            element.clear();
        } else {
            element += c;
        }
    }
    if (!element.empty())
        elements.push_back(std::move(element));
    return elements;
}

std::optional<bool> boolean(std::string_view raw) {
    if (raw == "true" || raw == "1")
        return true;
    if (raw == "false" || raw == "0")
        return false;
    return std::nullopt;
}

}  // namespace desktop_entry_value

}  // namespace platform::xdg
