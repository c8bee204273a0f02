#include "accessibility/Vocabulary.h"

namespace corvane::vocabulary {

// Each list is made from the same word file as the constants, so that the
// two can't drift apart.
#define CORVANE_IGNORE(constant, text)

const std::vector<AXNotification>& AXNotification::allCases() {
#define CORVANE_WORD(constant, text) constant,
    static const std::vector<AXNotification> all{
#include "accessibility/NotificationWords.inc"
    };
#undef CORVANE_WORD
    return all;
}

const std::vector<Action>& Action::allCases() {
#define CORVANE_WORD(constant, text) constant,
    static const std::vector<Action> all{
#include "accessibility/ActionWords.inc"
    };
#undef CORVANE_WORD
    return all;
}

const std::vector<Attribute>& Attribute::allCases() {
#define CORVANE_WORD(constant, text) constant,
#define CORVANE_TEXT CORVANE_IGNORE
    static const std::vector<Attribute> all{
#include "accessibility/AttributeWords.inc"
    };
#undef CORVANE_WORD
#undef CORVANE_TEXT
    return all;
}

const std::vector<std::string>& Attribute::textMembers() {
#define CORVANE_WORD CORVANE_IGNORE
#define CORVANE_TEXT(constant, text) constant,
    static const std::vector<std::string> all{
#include "accessibility/AttributeWords.inc"
    };
#undef CORVANE_WORD
#undef CORVANE_TEXT
    return all;
}

const std::vector<Subrole>& Subrole::allCases() {
#define CORVANE_WORD(constant, text) constant,
    static const std::vector<Subrole> all{
#include "accessibility/SubroleWords.inc"
    };
#undef CORVANE_WORD
    return all;
}

const std::vector<Role>& Role::allCases() {
#define CORVANE_WORD(constant, text) constant,
    static const std::vector<Role> all{
#include "accessibility/RoleWords.inc"
    };
#undef CORVANE_WORD
    return all;
}

}  // namespace corvane::vocabulary
