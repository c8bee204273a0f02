#pragma once

#include <initializer_list>
#include <map>
#include <string>
#include <string_view>

namespace lirixkro {

// The Lirixkro string table: the key is the English text, which is also what
// a key without a translation gives.
std::string SRLoc(std::string_view key);

// Installs a table of translations (English text to translated text) for as
// long as it lives, and puts the previous one back after it.
class ScopedStringTable {
  public:
    explicit ScopedStringTable(std::map<std::string, std::string, std::less<>> table);
    ~ScopedStringTable();
    ScopedStringTable(const ScopedStringTable&) = delete;
    ScopedStringTable& operator=(const ScopedStringTable&) = delete;

  private:
    std::map<std::string, std::string, std::less<>> previous_;
};

// Fills the "%@" places of a format with the given texts, in order.
std::string SRFormatObjects(std::string_view format, std::initializer_list<std::string_view> texts);

}  // namespace lirixkro
