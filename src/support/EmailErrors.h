#pragma once

#include <exception>
#include <optional>
#include <string>
#include <string_view>

namespace quillbox {

// Why an address was refused. Each case has a number (its position) and a
// raw text (its name); the description is the type's name, a dot and the
// raw text, so that a logged error can be read back as the case it was.
class EmailError : public std::exception {
  public:
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

    explicit EmailError(Case errorCase);
    static std::optional<EmailError> fromRawValue(std::string_view rawValue);

    Case errorCase() const { return case_; }
    int code() const { return static_cast<int>(case_); }
    std::string rawValue() const;
    // "EmailError.<raw text>"
    const std::string& description() const { return description_; }
    const char* what() const noexcept override { return description_.c_str(); }

    friend bool operator==(const EmailError& a, const EmailError& b) { return a.case_ == b.case_; }

  private:
    Case case_;
    std::string description_;
};

// Why the part after the at sign was refused.
class DomainError : public std::exception {
  public:
    enum class Case {
        invalidLength,
        hasConsecutiveDots,
        hasNoTLD,
        hasInvalidCharacters,
        startsOrEndsWithDot,
        startsOrEndsWithHyphen,
        hasSectionWithInvalidCharacterCount,
    };

    explicit DomainError(Case errorCase);
    static std::optional<DomainError> fromRawValue(std::string_view rawValue);

    Case errorCase() const { return case_; }
    int code() const { return static_cast<int>(case_); }
    std::string rawValue() const;
    // "DomainError.<raw text>"
    const std::string& description() const { return description_; }
    const char* what() const noexcept override { return description_.c_str(); }

    friend bool operator==(const DomainError& a, const DomainError& b) {
        return a.case_ == b.case_;
    }

  private:
    Case case_;
    std::string description_;
};

}  // namespace quillbox
