#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "support/Codable.h"

namespace quillbox {

// A validated e-mail address. Validation also tells how likely real mail
// systems are to accept it: quoting, escapes and some punctuation in the
// local section, or a domain without a dot, are valid but less supported.
class EmailAddress {
  public:
    enum class SupportLevel { widelySupported = 0, mostlySupported = 1, technicallySupported = 2 };

    // Nothing when the text is no valid address with a top-level domain.
    static std::optional<EmailAddress> fromRawValue(std::string rawValue);
    // Throws EmailError or DomainError.
    explicit EmailAddress(std::string withValidation, bool requireTLD = true);

    // The support level of a valid address; throws EmailError or
    // DomainError, checking in a fixed order so that the first rule broken
    // is the one reported.
    static SupportLevel validatedAddress(std::string_view address, bool requireTLD);
    // Throws DomainError.
    static void validateEmailDomain(std::string_view domain, bool requireTLD);

    const std::string& rawValue() const { return rawValue_; }
    SupportLevel supportLevel() const { return supportLevel_; }
    bool requireTLD() const { return requireTLD_; }

    friend bool operator==(const EmailAddress&, const EmailAddress&) = default;

  private:
    std::string rawValue_;
    SupportLevel supportLevel_;
    bool requireTLD_;
};

}  // namespace quillbox

// An address with a top-level domain is stored as its text alone; one
// without as a dictionary of "rawValue" and "requireTLD". Reading takes
// either, validating again; a text that fails validation throws the
// validation error, not a DecodingError.
template <>
struct quillbox::Coding<quillbox::EmailAddress> {
    static platform::PropertyList encode(const quillbox::EmailAddress& address);
    static quillbox::EmailAddress decode(const platform::PropertyList& list);
};
