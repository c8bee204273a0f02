#include "platform/sqlite/ModelFile.h"

#include <cctype>
#include <charconv>
#include <fstream>
#include <optional>
#include <sstream>
#include <vector>

#include "platform/ObjectStore.h"

namespace platform::sqlite {

const std::string_view modelFileExtension = ".datamodel";

namespace {

[[noreturn]] void malformed(std::size_t line, const std::string& what) {
    throw ObjectStoreError(ObjectStoreError::Code::modelUnreadable,
                           "Model line " + std::to_string(line) + ": " + what);
}

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.front())))
        text.remove_prefix(1);
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back())))
        text.remove_suffix(1);
    return text;
}

bool isName(std::string_view text) {
    if (text.empty() || !std::isalpha(static_cast<unsigned char>(text.front())) ||
        text.substr(0, 2) == "Z_")
        return false;
    for (char c : text) {
        if (!std::isalnum(static_cast<unsigned char>(c)) && c != '_')
            return false;
    }
    return true;
}

std::vector<std::string_view> words(std::string_view text) {
    std::vector<std::string_view> found;
    std::size_t at = 0;
    while (at < text.size()) {
        auto start = text.find_first_not_of(" \t", at);
        if (start == std::string_view::npos)
            break;
        auto end = text.find_first_of(" \t", start);
        found.push_back(text.substr(start, end - start));
        at = end == std::string_view::npos ? text.size() : end;
    }
    return found;
}

std::optional<AttributeType> typeNamed(std::string_view name) {
    if (name == "string")
        return AttributeType::string;
    if (name == "integer")
        return AttributeType::integer;
    if (name == "decimal")
        return AttributeType::decimal;
    if (name == "boolean")
        return AttributeType::boolean;
    if (name == "data")
        return AttributeType::data;
    return std::nullopt;
}

std::optional<AttributeValue> literal(std::string_view text, AttributeType type) {
    const char* end = text.data() + text.size();
    switch (type) {
        case AttributeType::string:
            if (text.size() >= 2 && text.front() == '"' && text.back() == '"')
                return std::string(text.substr(1, text.size() - 2));
            return std::nullopt;
        case AttributeType::integer: {
            std::int64_t number = 0;
            auto [stop, error] = std::from_chars(text.data(), end, number);
            if (error != std::errc() || stop != end)
                return std::nullopt;
            return number;
        }
        case AttributeType::decimal: {
            double number = 0;
            std::istringstream stream{std::string(text)};
            stream.imbue(std::locale::classic());
            if (!(stream >> number) || !stream.eof())
                return std::nullopt;
            return number;
        }
        case AttributeType::boolean:
            if (text == "true" || text == "false")
                return text == "true";
            return std::nullopt;
        case AttributeType::data:
            return std::nullopt;
    }
    return std::nullopt;
}

AttributeDescription attributeLine(std::string_view text, std::size_t line) {
    auto colon = text.find(':');
    if (colon == std::string_view::npos)
        malformed(line, "expected \"name: type\"");
    AttributeDescription attribute;
    const auto name = trimmed(text.substr(0, colon));
    if (!isName(name))
        malformed(line, "\"" + std::string(name) + "\" is not a usable attribute name");
    attribute.name = std::string(name);

    auto rest = text.substr(colon + 1);
    std::optional<std::string_view> defaultText;
    if (auto equals = rest.find('='); equals != std::string_view::npos) {
        defaultText = trimmed(rest.substr(equals + 1));
        rest = rest.substr(0, equals);
    }
    auto typeText = trimmed(rest);
    if (!typeText.empty() && typeText.back() == '?') {
        attribute.optional = true;
        typeText = trimmed(typeText.substr(0, typeText.size() - 1));
    }
    auto type = typeNamed(typeText);
    if (!type)
        malformed(line, "unknown type \"" + std::string(typeText) + "\"");
    attribute.type = *type;
    if (defaultText) {
        auto value = literal(*defaultText, *type);
        if (!value)
            malformed(line, "the default doesn't fit the type \"" + std::string(typeText) + "\"");
        attribute.defaultValue = std::move(*value);
    }
    return attribute;
}

class Parser {
  public:
    ObjectModel parse(std::string_view text) {
        std::size_t line = 0;
        while (!text.empty()) {
            auto newline = text.find('\n');
            auto current = text.substr(0, newline);
            text =
                newline == std::string_view::npos ? std::string_view() : text.substr(newline + 1);
            ++line;
            declaration(trimmed(current), line);
        }
        if (model_.entities.empty())
            malformed(line, "the model declares no entity");
        return std::move(model_);
    }

  private:
    void declaration(std::string_view text, std::size_t line) {
        if (text.empty() || text.front() == '#')
            return;
        auto first = words(text).front();
        if (first == "entity")
            entity(text, line);
        else if (first == "configuration")
            configuration(text, line);
        else
            attribute(text, line);
    }

    void entity(std::string_view text, std::size_t line) {
        auto parts = words(text);
        if (parts.size() != 2 || !isName(parts[1]))
            malformed(line, "expected \"entity Name\"");
        if (model_.entity(parts[1]))
            malformed(line, "the entity \"" + std::string(parts[1]) + "\" is declared twice");
        model_.entities.push_back(EntityDescription{std::string(parts[1]), {}});
    }

    void attribute(std::string_view text, std::size_t line) {
        if (model_.entities.empty())
            malformed(line, "an attribute outside any entity");
        auto described = attributeLine(text, line);
        auto& entity = model_.entities.back();
        if (entity.attribute(described.name))
            malformed(line, "the attribute \"" + described.name + "\" is declared twice");
        entity.attributes.push_back(std::move(described));
    }

    void configuration(std::string_view text, std::size_t line) {
        auto colon = text.find(':');
        auto head = words(text.substr(0, colon));
        if (colon == std::string_view::npos || head.size() != 2 || !isName(head[1]))
            malformed(line, "expected \"configuration Name: Entity ...\"");
        std::vector<std::string> members;
        for (auto member : words(text.substr(colon + 1))) {
            if (!model_.entity(member))
                malformed(line, "no entity \"" + std::string(member) + "\" declared above");
            members.emplace_back(member);
        }
        model_.configurations[std::string(head[1])] = std::move(members);
    }

    ObjectModel model_;
};

}  // namespace

ObjectModel parseModel(std::string_view text) {
    return Parser().parse(text);
}

ObjectModel readModelFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file)
        throw ObjectStoreError(ObjectStoreError::Code::modelUnreadable,
                               "Can't read the model file " + path.string());
    std::ostringstream contents;
    contents << file.rdbuf();
    return parseModel(contents.str());
}

}  // namespace platform::sqlite
