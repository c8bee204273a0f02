#pragma once

#include <compare>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/CFValue.h"

// The words of the platform's accessibility interface: attributes, actions,
// roles, subroles and notifications. Each type wraps one text and has one
// constant per platform word; a word without a constant is still carried,
// since construction from text never fails. UIElement names these types as
// UIElement::Attribute, UIElement::Action, UIElement::Role,
// UIElement::Role::Subrole and UIElement::AXNotification.

namespace corvane::detail {

// The shared shape of the word types: the text, its platform string, and
// equality, order and hashing by the text alone.
template <typename Self>
struct Word {
    std::string rawValue;

    explicit Word(std::string text) : rawValue(std::move(text)) {}

    platform::CFValue rawCFStringValue() const { return platform::CFValue(rawValue); }

    friend bool operator==(const Self& a, const Self& b) { return a.rawValue == b.rawValue; }
    friend std::strong_ordering operator<=>(const Self& a, const Self& b) {
        return a.rawValue <=> b.rawValue;
    }
};

struct WordHash {
    template <typename Self>
    std::size_t operator()(const Word<Self>& word) const noexcept {
        return std::hash<std::string>{}(word.rawValue);
    }
};

}  // namespace corvane::detail

#define CORVANE_DECLARE_WORD(constant, text) static const Self constant;
#define CORVANE_DECLARE_TEXT(constant, text) static const std::string constant;

namespace corvane::vocabulary {

struct AXNotification : detail::Word<AXNotification> {
    using Self = AXNotification;
    using Word::Word;
#define CORVANE_WORD CORVANE_DECLARE_WORD
#include "accessibility/NotificationWords.inc"
#undef CORVANE_WORD
    // The constants, in the platform's order.
    static const std::vector<AXNotification>& allCases();
};

struct Action : detail::Word<Action> {
    using Self = Action;
    using Word::Word;
#define CORVANE_WORD CORVANE_DECLARE_WORD
#include "accessibility/ActionWords.inc"
#undef CORVANE_WORD
    static const std::vector<Action>& allCases();
};

struct Attribute : detail::Word<Attribute> {
    using Self = Attribute;
    using Word::Word;
#define CORVANE_WORD CORVANE_DECLARE_WORD
#define CORVANE_TEXT CORVANE_DECLARE_TEXT
#include "accessibility/AttributeWords.inc"
#undef CORVANE_WORD
#undef CORVANE_TEXT
    // The constants of type Attribute, in the platform's order.
    static const std::vector<Attribute>& allCases();
    // The two members that are plain texts, in their order among the others.
    static const std::vector<std::string>& textMembers();
};

struct Subrole : detail::Word<Subrole> {
    using Self = Subrole;
    using Word::Word;
#define CORVANE_WORD CORVANE_DECLARE_WORD
#include "accessibility/SubroleWords.inc"
#undef CORVANE_WORD
    static const std::vector<Subrole>& allCases();
};

struct Role : detail::Word<Role> {
    using Self = Role;
    using Subrole = vocabulary::Subrole;
    using Word::Word;
#define CORVANE_WORD CORVANE_DECLARE_WORD
#include "accessibility/RoleWords.inc"
#undef CORVANE_WORD
    static const std::vector<Role>& allCases();
};

// The constants are defined in this header, as inline variables, so that
// constants elsewhere that are built from them are initialised after them.
#define CORVANE_WORD(constant, text) inline const AXNotification AXNotification::constant{text};
#include "accessibility/NotificationWords.inc"
#undef CORVANE_WORD
#define CORVANE_WORD(constant, text) inline const Action Action::constant{text};
#include "accessibility/ActionWords.inc"
#undef CORVANE_WORD
#define CORVANE_WORD(constant, text) inline const Attribute Attribute::constant{text};
#define CORVANE_TEXT(constant, text) inline const std::string Attribute::constant{text};
#include "accessibility/AttributeWords.inc"
#undef CORVANE_WORD
#undef CORVANE_TEXT
#define CORVANE_WORD(constant, text) inline const Subrole Subrole::constant{text};
#include "accessibility/SubroleWords.inc"
#undef CORVANE_WORD
#define CORVANE_WORD(constant, text) inline const Role Role::constant{text};
#include "accessibility/RoleWords.inc"
#undef CORVANE_WORD

}  // namespace corvane::vocabulary

#undef CORVANE_DECLARE_WORD
#undef CORVANE_DECLARE_TEXT

template <>
struct std::hash<corvane::vocabulary::AXNotification> : corvane::detail::WordHash {};
template <>
struct std::hash<corvane::vocabulary::Action> : corvane::detail::WordHash {};
template <>
struct std::hash<corvane::vocabulary::Attribute> : corvane::detail::WordHash {};
template <>
struct std::hash<corvane::vocabulary::Role> : corvane::detail::WordHash {};
template <>
struct std::hash<corvane::vocabulary::Subrole> : corvane::detail::WordHash {};
