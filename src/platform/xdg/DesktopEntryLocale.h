#pragma once

#include <cstdlib>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace platform::xdg {

// The locale that picks localised values ("Name[de_DE]") out of a desktop
// entry: lang_COUNTRY.ENCODING@MODIFIER, where all but the language are
// optional and the encoding plays no part in matching.
class DesktopEntryLocale {
  public:
    using Environment = std::function<const char*(const char*)>;

    // The "C" locale: no localised values at all.
    DesktopEntryLocale() = default;
    explicit DesktopEntryLocale(std::string_view name);

    // The first non-empty of LC_ALL, LC_MESSAGES and LANG.
    static DesktopEntryLocale fromEnvironment(const Environment& getenv = ::getenv);

    // The locale suffixes to look for, best first: lang_COUNTRY@MODIFIER,
    // lang_COUNTRY, lang@MODIFIER, lang. Empty for the "C" and "POSIX"
    // locales.
    const std::vector<std::string>& candidates() const { return candidates_; }

  private:
    std::vector<std::string> candidates_;
};

}  // namespace platform::xdg
