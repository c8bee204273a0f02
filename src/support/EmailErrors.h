#pragma once

#include <array>
#include <cstddef>
#include <exception>
#include <optional>
#include <string>
#include <string_view>

namespace quillbox {

// An error with a fixed set of cases, each known by its number (its
// position) and its raw text (its name). The description is the type's name,
// a dot and the raw text, so that a logged error can be read back as the
// case it was. Cases say what they are named through their Names.
template <typename Names>
class CaseError : public std::exception {
  public:
    using Case = typename Names::Case;

    explicit CaseError(Case errorCase)
        : case_(errorCase), description_(std::string(Names::typeName) + "." + rawValue()) {}

    static std::optional<CaseError> fromRawValue(std::string_view rawValue) {
        for (std::size_t i = 0; i < Names::rawValues.size(); ++i) {
            if (Names::rawValues[i] == rawValue)
                return CaseError(static_cast<Case>(i));
        }
        return std::nullopt;
    }

    Case errorCase() const { return case_; }
    int code() const { return static_cast<int>(case_); }
    std::string rawValue() const {
        return std::string(Names::rawValues[static_cast<std::size_t>(case_)]);
    }
    const std::string& description() const { return description_; }
    const char* what() const noexcept override { return description_.c_str(); }

    friend bool operator==(const CaseError& a, const CaseError& b) { return a.case_ == b.case_; }

  private:
    Case case_;
    std::string description_;
};

// Why an address was refused.
struct EmailErrorNames {
    enum class Case {
        quotesMustCoverEntireLocalSection,
        escapesAndSpacesOnlyAllowedWithinQuotes,
        invalidFormat,
        escapedSequenceUnfinished,
        scannerError,
        noAtSign,
        invalidLength,
        localSectionInvalidLength,
        localSectionStartsOrEndsWithDot,
        localSectionHasConsecutiveDots,
    };
    static constexpr std::string_view typeName = "EmailError";
    static constexpr std::array<std::string_view, 10> rawValues = {
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
};
using EmailError = CaseError<EmailErrorNames>;

// Why the part after the at sign was refused.
struct DomainErrorNames {
    enum class Case {
        invalidLength,
        hasConsecutiveDots,
        hasNoTLD,
        hasInvalidCharacters,
        startsOrEndsWithDot,
        startsOrEndsWithHyphen,
        hasSectionWithInvalidCharacterCount,
    };
    static constexpr std::string_view typeName = "DomainError";
    static constexpr std::array<std::string_view, 7> rawValues = {
        "invalidLength",
        "hasConsecutiveDots",
        "hasNoTLD",
        "hasInvalidCharacters",
        "startsOrEndsWithDot",
        "startsOrEndsWithHyphen",
        "hasSectionWithInvalidCharacterCount",
    };
};
using DomainError = CaseError<DomainErrorNames>;

}  // namespace quillbox
