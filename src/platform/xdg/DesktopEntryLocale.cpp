#include "platform/xdg/DesktopEntryLocale.h"

#include <cstdlib>

namespace platform::xdg {

namespace {

// The part of the name from the separator up to the next of the given
// terminators, without the separator; empty when the separator is missing.
std::string_view part(std::string_view name, char separator, std::string_view terminators) {
    const auto start = name.find(separator);
    if (start == std::string_view::npos)
        return {};
    const auto rest = name.substr(start + 1);
    return rest.substr(0, rest.find_first_of(terminators));
}

}  // namespace

DesktopEntryLocale::DesktopEntryLocale(std::string_view name) {
    const auto language = name.substr(0, name.find_first_of("_.@"));
    if (language.empty() || language == "C" || language == "POSIX")
        return;
    const auto country = part(name.substr(0, name.find('@')), '_', ".@");
    const auto modifier = part(name, '@', "");
    const std::string lang(language);
    if (!country.empty() && !modifier.empty()) {
        candidates_.push_back(lang + "_" + std::string(country) + "@" + std::string(modifier));
    }
    if (!country.empty())
        candidates_.push_back(lang + "_" + std::string(country));
    if (!modifier.empty())
        candidates_.push_back(lang + "@" + std::string(modifier));
    candidates_.push_back(lang);
}

DesktopEntryLocale DesktopEntryLocale::fromEnvironment(const Environment& getenv) {
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* value = getenv(variable);
        if (value && *value)
            return DesktopEntryLocale(value);
    }
    return DesktopEntryLocale();
}

}  // namespace platform::xdg
