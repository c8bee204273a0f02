#include "support/CoreDataStackConfiguration.h"

#include <sstream>

namespace quillbox {

namespace {

std::string pragmaText(const SQLConfiguration::PragmaValue& value) {
    if (auto* text = std::get_if<std::string>(&value))
        return *text;
    if (auto* flag = std::get_if<bool>(&value))
        return *flag ? "1" : "0";
    if (auto* integer = std::get_if<std::int64_t>(&value))
        return std::to_string(*integer);
    std::ostringstream number;
    number.imbue(std::locale::classic());
    number << std::get<double>(value);
    return number.str();
}

}  // namespace

platform::PersistentStoreDescription SQLConfiguration::storeDescription() const {
    platform::PersistentStoreDescription description;
    description.url = storeURL;
    description.configuration = modelConfiguration;
    description.readOnly = readOnly;
    if (pragmas) {
        for (const auto& [name, value] : *pragmas)
            description.pragmas[name] = pragmaText(value);
    }
    description.analyze = analyze.value_or(false);
    description.vacuum = vacuum.value_or(false);
    return description;
}

}  // namespace quillbox
