#include "support/EmailAddress.h"

#include <algorithm>

#include "support/EmailErrors.h"
#include "support/EmailScanner.h"
#include "support/TextCharacters.h"

namespace quillbox {

namespace {

using Level = EmailAddress::SupportLevel;

bool startsOrEndsWith(std::string_view text, char character) {
    return !text.empty() && (text.front() == character || text.back() == character);
}

bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

void checkLocalSection(std::string_view local) {
    const auto length = characterCount(local);
    if (length < 1 || length > 64)
        throw EmailError(EmailError::Case::localSectionInvalidLength);
    if (startsOrEndsWith(local, '.'))
        throw EmailError(EmailError::Case::localSectionStartsOrEndsWithDot);
    if (contains(local, ".."))
        throw EmailError(EmailError::Case::localSectionHasConsecutiveDots);
}

bool hasOverlongSection(std::string_view domain) {
    std::size_t sectionStart = 0;
    for (;;) {
        const auto dot = std::min(domain.find('.', sectionStart), domain.size());
        if (characterCount(domain.substr(sectionStart, dot - sectionStart)) > 63)
            return true;
        if (dot == domain.size())
            return false;
        sectionStart = dot + 1;
    }
}

bool isDomainCharacter(char character) {
    return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z') ||
           (character >= '0' && character <= '9') || character == '-' || character == '.';
}

Level supportLevelOf(const detail::ScannedAddress& scanned, bool requireTLD) {
    Level level = scanned.supportLevel;
    const std::string_view local = scanned.localSection;
    if (contains(local, "+"))
        level = std::max(level, Level::mostlySupported);
    if (local.find_first_of("/=!%$") != std::string_view::npos)
        level = Level::technicallySupported;
    if (!requireTLD && !contains(scanned.domain, "."))
        level = Level::technicallySupported;
    return level;
}

}  // namespace

std::optional<EmailAddress> EmailAddress::fromRawValue(std::string rawValue) {
    try {
        return EmailAddress(std::move(rawValue), true);
    } catch (const EmailError&) {
        return std::nullopt;
    } catch (const DomainError&) {
        return std::nullopt;
    }
}

EmailAddress::EmailAddress(std::string withValidation, bool requireTLD)
    : rawValue_(std::move(withValidation)),
      supportLevel_(validatedAddress(rawValue_, requireTLD)),
      requireTLD_(requireTLD) {}

EmailAddress::SupportLevel EmailAddress::validatedAddress(std::string_view address,
                                                          bool requireTLD) {
    const auto length = characterCount(address);
    if (length < 3 || length > 255)
        throw EmailError(EmailError::Case::invalidLength);
    const auto scanned = detail::scanAddress(address);
    checkLocalSection(scanned.localSection);
    validateEmailDomain(scanned.domain, requireTLD);
    return supportLevelOf(scanned, requireTLD);
}

void EmailAddress::validateEmailDomain(std::string_view domain, bool requireTLD) {
    const auto length = characterCount(domain);
    if (length < 1 || length > 253)
        throw DomainError(DomainError::Case::invalidLength);
    if (contains(domain, ".."))
        throw DomainError(DomainError::Case::hasConsecutiveDots);
    if (requireTLD && !contains(domain, "."))
        throw DomainError(DomainError::Case::hasNoTLD);
    if (startsOrEndsWith(domain, '.'))
        throw DomainError(DomainError::Case::startsOrEndsWithDot);
    if (startsOrEndsWith(domain, '-'))
        throw DomainError(DomainError::Case::startsOrEndsWithHyphen);
    if (hasOverlongSection(domain))
        throw DomainError(DomainError::Case::hasSectionWithInvalidCharacterCount);
    if (!std::all_of(domain.begin(), domain.end(), isDomainCharacter))
        throw DomainError(DomainError::Case::hasInvalidCharacters);
}

}  // namespace quillbox

using platform::PropertyList;

PropertyList quillbox::Coding<quillbox::EmailAddress>::encode(
    const quillbox::EmailAddress& address) {
    if (address.requireTLD())
        return address.rawValue();
    return PropertyList::Dictionary{{"rawValue", address.rawValue()},
                                    {"requireTLD", address.requireTLD()}};
}

quillbox::EmailAddress quillbox::Coding<quillbox::EmailAddress>::decode(const PropertyList& list) {
    if (const auto* text = list.string())
        return quillbox::EmailAddress(*text, true);
    const auto* dictionary = list.dictionary();
    if (!dictionary)
        throw DecodingError("The stored e-mail address is neither a text nor a dictionary.");
    const auto rawValue = dictionary->find("rawValue");
    if (rawValue == dictionary->end() || !rawValue->second.string())
        throw DecodingError("The stored e-mail address has no \"rawValue\" text.");
    bool requireTLD = true;
    if (const auto flag = dictionary->find("requireTLD"); flag != dictionary->end()) {
        if (!flag->second.boolean())
            throw DecodingError("The stored e-mail address's \"requireTLD\" is not a Boolean.");
        requireTLD = *flag->second.boolean();
    }
    return quillbox::EmailAddress(*rawValue->second.string(), requireTLD);
}
