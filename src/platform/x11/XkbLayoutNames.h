#pragma once

#include <xkbcommon/xkbcommon.h>

#include <map>
#include <memory>
#include <mutex>
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
// Safe from any thread: it compiles with a context of its own.
class XkbLayoutNamer {
  public:
    std::vector<std::string> identifiers(xkb_keymap* keymap,
                                         const std::optional<XkbRulesNames>& names);

  private:
    const std::vector<std::string>& descriptionsFor(const XkbRulesNames& names);

    std::mutex lock_;
    std::shared_ptr<xkb_context> context_;
    // Descriptions of the groups each set of rule names compiles to; a
    // compilation costs milliseconds, and layouts are switched back and
    // forth.
    std::map<std::string, std::vector<std::string>> descriptions_;
};

std::vector<std::string> groupDescriptions(xkb_keymap* keymap);

// The identifiers of one keymap's groups, named when first asked for:
// naming compiles a second keymap from the rule names, milliseconds that
// the start and each layout change need not wait for. Safe from any thread.
class XkbGroupIdentifiers {
  public:
    XkbGroupIdentifiers(std::shared_ptr<XkbLayoutNamer> namer, std::shared_ptr<xkb_keymap> keymap,
                        std::optional<XkbRulesNames> names);

    std::string of(xkb_layout_index_t group) const;

  private:
    std::shared_ptr<XkbLayoutNamer> namer_;
    std::shared_ptr<xkb_keymap> keymap_;
    std::optional<XkbRulesNames> names_;
    mutable std::once_flag named_;
    mutable std::vector<std::string> identifiers_;
};

}  // namespace platform::x11
