#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform::xdg {

// The grouped key-value text that desktop entries and the lists of default
// applications are written in:
//
//   # comment
//   [Group Name]
//   Key=value
//   Name[de_DE]=localised value
//
// Values are kept raw; the value readers below undo the escapes.
class DesktopEntryKeyFile {
  public:
    // Keys, with their locale suffix where they have one ("Name[de]"), to
    // raw values.
    using Group = std::map<std::string, std::string, std::less<>>;

    // Nothing for damaged text: an entry before any group, a line that is
    // neither comment, group nor entry, a group named twice, a NUL byte.
    static std::optional<DesktopEntryKeyFile> parse(std::string_view text);

    const Group* group(std::string_view name) const;
    // The name of the first group, or empty when there is none.
    const std::string& firstGroupName() const { return firstGroup_; }

  private:
    std::map<std::string, Group, std::less<>> groups_;
    std::string firstGroup_;
};

// The value readers. Escapes: \s space, \n newline, \t tab, \r return,
// \\ backslash; any other backslash stays as it is.
namespace desktop_entry_value {

std::string unescaped(std::string_view raw);
// The raw form of a value, which unescaped() reads back as it stands.
std::string escaped(std::string_view value);
// A list separated by ';', where "\;" is a ';' within an element; a final
// separator is optional, and empty elements are dropped.
std::vector<std::string> list(std::string_view raw);
// "true" and "false" (and 1 and 0, as older files write them); anything
// else is no Boolean.
std::optional<bool> boolean(std::string_view raw);

}  // namespace desktop_entry_value

}  // namespace platform::xdg
