#pragma once

#include <string_view>

namespace platform::update {

enum class SignatureCheck {
    valid,
    invalid,  // well formed, but not this archive's signature under the key
    malformedSignature,
    malformedKey,
};

// Checks an ed25519 signature over all of the archive's bytes against the
// public key; both are given in base64, as feeds and build settings write
// them.
SignatureCheck verifyArchiveSignature(std::string_view archive, std::string_view signatureBase64,
                                      std::string_view publicKeyBase64);

}  // namespace platform::update
