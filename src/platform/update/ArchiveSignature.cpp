#include "platform/update/ArchiveSignature.h"

#include <sodium.h>

#include <array>
#include <mutex>
#include <optional>

namespace platform::update {

namespace {

void initialiseSodium() {
    static std::once_flag once;
    std::call_once(once, [] {
        if (sodium_init() < 0)
            std::abort();
    });
}

// Exactly N bytes of base64, blanks and line breaks ignored.
template <std::size_t N>
std::optional<std::array<unsigned char, N>> decodeExactly(std::string_view base64) {
    std::array<unsigned char, N> bytes{};
    std::size_t length = 0;
    if (sodium_base642bin(bytes.data(), bytes.size(), base64.data(), base64.size(), " \t\r\n",
                          &length, nullptr, sodium_base64_VARIANT_ORIGINAL) != 0 ||
        length != N) {
        return std::nullopt;
    }
    return bytes;
}

}  // namespace

SignatureCheck verifyArchiveSignature(std::string_view archive, std::string_view signatureBase64,
                                      std::string_view publicKeyBase64) {
    initialiseSodium();
    const auto key = decodeExactly<crypto_sign_PUBLICKEYBYTES>(publicKeyBase64);
    if (!key)
        return SignatureCheck::malformedKey;
    const auto signature = decodeExactly<crypto_sign_BYTES>(signatureBase64);
    if (!signature)
        return SignatureCheck::malformedSignature;
    const auto* message = reinterpret_cast<const unsigned char*>(archive.data());
    return crypto_sign_verify_detached(signature->data(), message, archive.size(), key->data()) == 0
               ? SignatureCheck::valid
               : SignatureCheck::invalid;
}

}  // namespace platform::update
