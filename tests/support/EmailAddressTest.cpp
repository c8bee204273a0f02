#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <variant>

#include "support/Codable.h"
#include "support/EmailAddress.h"
#include "support/EmailErrors.h"

using quillbox::DomainError;
using quillbox::EmailAddress;
using quillbox::EmailError;
using Level = EmailAddress::SupportLevel;

namespace {

using Outcome = std::variant<Level, EmailError::Case, DomainError::Case>;

struct AddressCase {
    const char* name;
    std::string address;
    bool requireTLD;
    Outcome expected;
};

Outcome validate(const AddressCase& c) {
    try {
        return EmailAddress::validatedAddress(c.address, c.requireTLD);
    } catch (const EmailError& error) {
        return error.errorCase();
    } catch (const DomainError& error) {
        return error.errorCase();
    }
}

std::string text(const Outcome& outcome) {
    if (const auto* level = std::get_if<Level>(&outcome))
        return "level " + std::to_string(static_cast<int>(*level));
    if (const auto* email = std::get_if<EmailError::Case>(&outcome))
        return EmailError(*email).description();
    return DomainError(std::get<DomainError::Case>(outcome)).description();
}

const std::string sixtyFour(64, 'a');

// Each rule in the order it is checked, so that an address breaking two
// shows which comes first.
const AddressCase addressCases[] = {
    {"plain", "a@b.c", true, Level::widelySupported},
    {"plus sign", "a+tag@b.c", true, Level::mostlySupported},
    {"equals sign", "a=b@c.d", true, Level::technicallySupported},
    {"plus and percent", "a+%@b.c", true, Level::technicallySupported},
    {"no TLD required", "a@localhost", true, DomainError::Case::hasNoTLD},
    {"no TLD allowed", "a@localhost", false, Level::technicallySupported},
    {"quoted space", "\"a b\"@c.d", true, Level::technicallySupported},
    {"quoted at sign", "\"a@b\"@c.d", true, Level::technicallySupported},
    {"quoted escape", "\"a\\\"b\"@c.d", true, Level::technicallySupported},
    {"quote opened mid-way", "ab\"c\"@d.e", true, Level::technicallySupported},
    {"text after closing quote", "\"ab\"c@d.e", true,
     EmailError::Case::quotesMustCoverEntireLocalSection},
    {"quote closed at the end", "\"ab\"", true,
     EmailError::Case::quotesMustCoverEntireLocalSection},
    {"unquoted space", "a b@c.d", true, EmailError::Case::escapesAndSpacesOnlyAllowedWithinQuotes},
    {"unquoted escape", "a\\b@c.d", true,
     EmailError::Case::escapesAndSpacesOnlyAllowedWithinQuotes},
    {"escape at the end", "\"ab\\", true, EmailError::Case::escapedSequenceUnfinished},
    {"unclosed quote", "\"ab@c.d", true, EmailError::Case::invalidFormat},
    {"two characters", "ab", true, EmailError::Case::invalidLength},
    {"three letters", "abc", true, EmailError::Case::invalidFormat},
    {"256 characters", std::string(250, 'a') + "@b.cde", true, EmailError::Case::invalidLength},
    {"255 characters",
     sixtyFour + "@" + std::string(63, 'b') + "." + std::string(63, 'c') + "." +
         std::string(62, 'd'),
     true, Level::widelySupported},
    {"length in characters, not bytes", "\xC3\xA9@b.c", true, Level::widelySupported},
    {"empty local section", "@b.cd", true, EmailError::Case::localSectionInvalidLength},
    {"65-character local section", sixtyFour + "a@b.c", true,
     EmailError::Case::localSectionInvalidLength},
    {"64-character local section", sixtyFour + "@b.c", true, Level::widelySupported},
    {"leading dot", ".a@b.c", true, EmailError::Case::localSectionStartsOrEndsWithDot},
    {"trailing dot", "a.@b.c", true, EmailError::Case::localSectionStartsOrEndsWithDot},
    {"two dots in the local section", "a..b@c.d", true,
     EmailError::Case::localSectionHasConsecutiveDots},
    {"nothing after the at sign", "ab@", true, DomainError::Case::invalidLength},
    {"two dots in the domain", "a@b..c", true, DomainError::Case::hasConsecutiveDots},
    {"domain starts with a dot", "a@.bc", true, DomainError::Case::startsOrEndsWithDot},
    {"domain ends with a hyphen", "a@b.c-", true, DomainError::Case::startsOrEndsWithHyphen},
    {"64-character domain section", "a@" + sixtyFour + ".c", true,
     DomainError::Case::hasSectionWithInvalidCharacterCount},
    {"underscore in the domain", "a@b_c.d", true, DomainError::Case::hasInvalidCharacters},
    {"second at sign", "a@b@c.d", true, DomainError::Case::hasInvalidCharacters},
    {"section length before characters", "a@" + sixtyFour + "_.c", true,
     DomainError::Case::hasSectionWithInvalidCharacterCount},
};

}  // namespace

TEST(EmailAddress, ValidatesEachRuleInOrder) {
    for (const auto& c : addressCases)
        EXPECT_EQ(text(validate(c)), text(c.expected)) << c.name << ": " << c.address;
}

TEST(EmailAddress, ErrorsCarryTheirNumbersNamesAndDescriptions) {
    EXPECT_EQ(EmailError(EmailError::Case::quotesMustCoverEntireLocalSection).code(), 0);
    EXPECT_EQ(EmailError(EmailError::Case::noAtSign).code(), 5);
    EXPECT_EQ(EmailError(EmailError::Case::localSectionHasConsecutiveDots).code(), 9);
    EXPECT_STREQ(EmailError(EmailError::Case::invalidFormat).what(), "EmailError.invalidFormat");
    EXPECT_EQ(DomainError(DomainError::Case::hasNoTLD).code(), 2);
    EXPECT_EQ(DomainError(DomainError::Case::hasSectionWithInvalidCharacterCount).code(), 6);
    EXPECT_EQ(DomainError(DomainError::Case::invalidLength).description(),
              "DomainError.invalidLength");
    EXPECT_EQ(EmailError::fromRawValue("noAtSign"), EmailError(EmailError::Case::noAtSign));
    EXPECT_EQ(DomainError::fromRawValue("hasNoTLD"), DomainError(DomainError::Case::hasNoTLD));
    EXPECT_FALSE(EmailError::fromRawValue("hasNoTLD"));
}

TEST(EmailAddress, ConstructorsFailQuietlyOrRaise) {
    const auto address = EmailAddress::fromRawValue("first+last@example.org");
    ASSERT_TRUE(address);
    EXPECT_EQ(address->supportLevel(), Level::mostlySupported);
    EXPECT_TRUE(address->requireTLD());
    EXPECT_FALSE(EmailAddress::fromRawValue("root@localhost"));
    EXPECT_THROW(EmailAddress("root@localhost"), DomainError);
    EXPECT_EQ(EmailAddress("root@localhost", false).supportLevel(), Level::technicallySupported);
    EXPECT_THROW(EmailAddress("root"), EmailError);
}

TEST(EmailAddress, StoresAsTextWithATopLevelDomainAndAsADictionaryWithout) {
    using Coding = quillbox::Coding<EmailAddress>;
    const EmailAddress withTLD("a@b.c");
    EXPECT_EQ(Coding::encode(withTLD), platform::PropertyList("a@b.c"));
    const EmailAddress local("root@localhost", false);
    const platform::PropertyList dictionary =
        platform::PropertyList::Dictionary{{"rawValue", "root@localhost"}, {"requireTLD", false}};
    EXPECT_EQ(Coding::encode(local), dictionary);

    const quillbox::PropertyListEncoder encoder;
    const quillbox::PropertyListDecoder decoder;
    EXPECT_EQ(decoder.decode<EmailAddress>(encoder.encode(withTLD)), withTLD);
    EXPECT_EQ(decoder.decode<EmailAddress>(encoder.encode(local)), local);
    // A dictionary without the flag requires a top-level domain.
    const platform::PropertyList bare = platform::PropertyList::Dictionary{{"rawValue", "a@b.c"}};
    EXPECT_EQ(Coding::decode(bare), withTLD);
    EXPECT_THROW(Coding::decode(platform::PropertyList::Dictionary{{"rawValue", "root@localhost"}}),
                 DomainError);
    EXPECT_THROW(Coding::decode(platform::PropertyList("root@localhost")), DomainError);
    EXPECT_THROW(Coding::decode(platform::PropertyList(42)), quillbox::DecodingError);
    EXPECT_THROW(Coding::decode(platform::PropertyList::Dictionary{{"rawValue", 1}}),
                 quillbox::DecodingError);
}
