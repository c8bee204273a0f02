#include "support/EmailErrors.h"

#include <array>
#include <cstddef>

namespace quillbox {

namespace {

// The raw texts in the order of the cases, so that a case's number indexes
// its name.
constexpr std::array<std::string_view, 10> emailErrorNames = {
    "quotesMustCoverEntireLocalSection",
    "escapesAndSpacesOnlyAllowedWithinQuotes",
    "invalidFormat",
    "escapedSequenceUnfinished",
    "scannerError",
    "noAtSign",
    "invalidLength",
    "localSectionInvalidLength",
    "localSectionStartsOrEndsWithDot",
    "localSectionHasConsecutiveDots",
};

constexpr std::array<std::string_view, 7> domainErrorNames = {
    "invalidLength",
    "hasConsecutiveDots",
    "hasNoTLD",
    "hasInvalidCharacters",
    "startsOrEndsWithDot",
    "startsOrEndsWithHyphen",
    "hasSectionWithInvalidCharacterCount",
};

template <typename Case, std::size_t count>
std::optional<Case> caseNamed(const std::array<std::string_view, count>& names,
                              std::string_view rawValue) {
    for (std::size_t i = 0; i < count; ++i) {
        if (names[i] == rawValue)
            return static_cast<Case>(i);
    }
    return std::nullopt;
}

}  // namespace

EmailError::EmailError(Case errorCase)
    : case_(errorCase), description_("EmailError." + rawValue()) {}

std::optional<EmailError> EmailError::fromRawValue(std::string_view rawValue) {
    if (auto found = caseNamed<Case>(emailErrorNames, rawValue))
        return EmailError(*found);
    return std::nullopt;
}

std::string EmailError::rawValue() const {
    return std::string(emailErrorNames[static_cast<std::size_t>(case_)]);
}

DomainError::DomainError(Case errorCase)
    : case_(errorCase), description_("DomainError." + rawValue()) {}

std::optional<DomainError> DomainError::fromRawValue(std::string_view rawValue) {
    if (auto found = caseNamed<Case>(domainErrorNames, rawValue))
        return DomainError(*found);
    return std::nullopt;
}

std::string DomainError::rawValue() const {
    return std::string(domainErrorNames[static_cast<std::size_t>(case_)]);
}

}  // namespace quillbox
