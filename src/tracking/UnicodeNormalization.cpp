#include "tracking/UnicodeNormalization.h"

#include <unicode/normalizer2.h>
#include <unicode/unistr.h>

#include <cstdint>

namespace tarnwick {

std::string canonicallyComposed(std::string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    const auto* nfc = icu::Normalizer2::getNFCInstance(status);
    const auto source = icu::UnicodeString::fromUTF8(
        icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
    if (U_FAILURE(status))
        return std::string(text);
    const auto composed = nfc->normalize(source, status);
    std::string result;
    (U_FAILURE(status) ? source : composed).toUTF8String(result);
    return result;
}

}  // namespace tarnwick
