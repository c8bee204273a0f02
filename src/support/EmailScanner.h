#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "support/EmailAddress.h"

namespace quillbox::detail {

// An address taken apart at its at sign: what came before it as the local
// section keeps it, what follows, and how far quoting and escaping took it
// from the widely supported form.
struct ScannedAddress {
    std::string localSection;
    std::string domain;
    EmailAddress::SupportLevel supportLevel = EmailAddress::SupportLevel::widelySupported;
};

// Walks the text from stop to stop (backslash, at sign, double quote,
// space), keeping track of quotes. Throws EmailError.
ScannedAddress scanAddress(std::string_view text);

}  // namespace quillbox::detail
