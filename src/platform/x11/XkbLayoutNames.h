#pragma once

#include <xkbcommon/xkbcommon.h>

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform::x11 {

// The rule names a keyboard configuration tool leaves on the root window
// (rules, model, layouts, variants, options), and the short names of the
// layout groups they give: "us", "de(nodeadkeys)".
struct XkbRulesNames {
    std::string rules;
    std::string model;
    std::string layout;
    std::string variant;
    std::string options;

    // Nothing unless the property holds at least the rules and layouts.
    static std::optional<XkbRulesNames> parse(std::string_view property);
    std::vector<std::string> groupNames() const;
};

// Names the groups of a keymap. The rule names on the root window can lag
// behind the keymap (the tool sets them after loading the keymap), so a
// short name is used only for a group whose layout really is what the rule
// names say; any other group is named by the keymap's own description.
class XkbLayoutNamer {
  public:
    explicit XkbLayoutNamer(xkb_context* context) : context_(context) {}

    std::vector<std::string> identifiers(xkb_keymap* keymap,
                                         const std::optional<XkbRulesNames>& names);

  private:
    const std::vector<std::string>& descriptionsFor(const XkbRulesNames& names);

    xkb_context* context_;
    // Descriptions of the groups each set of rule names compiles to; a
    // compilation costs milliseconds, and layouts are switched back and
    // forth.
    std::map<std::string, std::vector<std::string>> descriptions_;
};

std::vector<std::string> groupDescriptions(xkb_keymap* keymap);

}  // namespace platform::x11
