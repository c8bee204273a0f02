#include "platform/x11/XkbLayoutNames.h"

#include <memory>
#include <utility>

namespace platform::x11 {

namespace {

std::vector<std::string> splitOn(std::string_view text, char separator) {
    std::vector<std::string> parts;
    std::size_t start = 0;
    for (;;) {
        const std::size_t end = text.find(separator, start);
        parts.emplace_back(text.substr(start, end - start));
        if (end == std::string_view::npos)
            return parts;
        start = end + 1;
    }
}

constexpr std::string_view identifierPrefix = "xkb:";

}  // namespace

std::optional<XkbRulesNames> XkbRulesNames::parse(std::string_view property) {
    std::vector<std::string> fields = splitOn(property, '\0');
    if (fields.size() < 3 || fields[2].empty())
        return std::nullopt;
    fields.resize(5);
    return XkbRulesNames{fields[0], fields[1], fields[2], fields[3], fields[4]};
}

std::vector<std::string> XkbRulesNames::groupNames() const {
    std::vector<std::string> layouts = splitOn(layout, ',');
    const std::vector<std::string> variants = splitOn(variant, ',');
    for (std::size_t i = 0; i < layouts.size() && i < variants.size(); ++i) {
        if (!variants[i].empty())
            layouts[i] += "(" + variants[i] + ")";
    }
    return layouts;
}

std::vector<std::string> groupDescriptions(xkb_keymap* keymap) {
    std::vector<std::string> descriptions;
    const xkb_layout_index_t count = xkb_keymap_num_layouts(keymap);
    for (xkb_layout_index_t group = 0; group < count; ++group) {
        const char* name = xkb_keymap_layout_get_name(keymap, group);
        descriptions.emplace_back(name ? name : "group " + std::to_string(group + 1));
    }
    return descriptions;
}

const std::vector<std::string>& XkbLayoutNamer::descriptionsFor(const XkbRulesNames& names) {
    if (!context_)
        context_.reset(xkb_context_new(XKB_CONTEXT_NO_FLAGS), xkb_context_unref);
    const std::string key = names.rules + '\0' + names.model + '\0' + names.layout + '\0' +
                            names.variant + '\0' + names.options;
    auto it = descriptions_.find(key);
    if (it != descriptions_.end())
        return it->second;
    const xkb_rule_names ruleNames{names.rules.c_str(), names.model.c_str(), names.layout.c_str(),
                                   names.variant.c_str(), names.options.c_str()};
    std::unique_ptr<xkb_keymap, decltype(&xkb_keymap_unref)> compiled(
        context_
            ? xkb_keymap_new_from_names(context_.get(), &ruleNames, XKB_KEYMAP_COMPILE_NO_FLAGS)
            : nullptr,
        xkb_keymap_unref);
    std::vector<std::string> descriptions;
    if (compiled)
        descriptions = groupDescriptions(compiled.get());
    return descriptions_.emplace(key, std::move(descriptions)).first->second;
}

std::vector<std::string> XkbLayoutNamer::identifiers(xkb_keymap* keymap,
                                                     const std::optional<XkbRulesNames>& names) {
    const std::vector<std::string> actual = groupDescriptions(keymap);
    std::vector<std::string> shortNames;
    std::vector<std::string> expected;
    if (names) {
        shortNames = names->groupNames();
        std::lock_guard guard(lock_);
        expected = descriptionsFor(*names);
    }
    std::vector<std::string> identifiers;
    for (std::size_t group = 0; group < actual.size(); ++group) {
        const bool namesAgree = group < shortNames.size() && group < expected.size() &&
                                expected[group] == actual[group];
        identifiers.push_back(std::string(identifierPrefix) +
                              (namesAgree ? shortNames[group] : actual[group]));
    }
    return identifiers;
}

XkbGroupIdentifiers::XkbGroupIdentifiers(std::shared_ptr<XkbLayoutNamer> namer,
                                         std::shared_ptr<xkb_keymap> keymap,
                                         std::optional<XkbRulesNames> names)
    : namer_(std::move(namer)), keymap_(std::move(keymap)), names_(std::move(names)) {}

std::string XkbGroupIdentifiers::of(xkb_layout_index_t group) const {
    std::call_once(named_, [this] { identifiers_ = namer_->identifiers(keymap_.get(), names_); });
    return group < identifiers_.size() ? identifiers_[group] : std::string(identifierPrefix);
}

}  // namespace platform::x11
