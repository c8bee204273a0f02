#include "support/PersistentHasher.h"

#include <openssl/evp.h>

#include "support/Fatal.h"

namespace quillbox {

namespace {

// Seconds from the Unix epoch to 2001-01-01 00:00:00 UTC.
constexpr double referenceDateSinceUnixEpoch = 978307200.0;

struct ContextDeleter {
    void operator()(EVP_MD_CTX* context) const { EVP_MD_CTX_free(context); }
};

// MD5 is part of every OpenSSL build; a failure here is a broken
// installation, not a condition to go on from.
void require(int result, const char* operation) {
    if (result != 1)
        fatalError(std::string("PersistentHasher: OpenSSL's ") + operation + " failed");
}

}  // namespace

struct PersistentHasher::State {
    std::unique_ptr<EVP_MD_CTX, ContextDeleter> context{EVP_MD_CTX_new()};
};

PersistentHasher::PersistentHasher() : internalHasher_(std::make_unique<State>()) {
    require(EVP_DigestInit_ex(internalHasher_->context.get(), EVP_md5(), nullptr),
            "EVP_DigestInit_ex");
}

PersistentHasher::~PersistentHasher() = default;

PersistentHasher::PersistentHasher(const PersistentHasher& other)
    : internalHasher_(std::make_unique<State>()) {
    require(
        EVP_MD_CTX_copy_ex(internalHasher_->context.get(), other.internalHasher_->context.get()),
        "EVP_MD_CTX_copy_ex");
}

PersistentHasher& PersistentHasher::operator=(const PersistentHasher& other) {
    if (this != &other) {
        require(EVP_MD_CTX_copy_ex(internalHasher_->context.get(),
                                   other.internalHasher_->context.get()),
                "EVP_MD_CTX_copy_ex");
    }
    return *this;
}

PersistentHasher::PersistentHasher(PersistentHasher&&) noexcept = default;
PersistentHasher& PersistentHasher::operator=(PersistentHasher&&) noexcept = default;

void PersistentHasher::update(const void* bufferPointer, std::size_t byteCount) {
    if (byteCount == 0)
        return;
    require(EVP_DigestUpdate(internalHasher_->context.get(), bufferPointer, byteCount),
            "EVP_DigestUpdate");
}

void PersistentHasher::update(std::span<const std::uint8_t> data) {
    update(data.data(), data.size());
}

void PersistentHasher::update(Date date) {
    const std::chrono::duration<double> sinceUnixEpoch = date.time_since_epoch();
    update(sinceUnixEpoch.count() - referenceDateSinceUnixEpoch);
}

PersistentDigest PersistentHasher::finalize() {
    PersistentDigest::Bytes bytes{};
    unsigned int length = 0;
    require(EVP_DigestFinal_ex(internalHasher_->context.get(), bytes.data(), &length),
            "EVP_DigestFinal_ex");
    return PersistentDigest(bytes);
}

std::string PersistentDigest::hexString() const {
    static constexpr char digits[] = "0123456789abcdef";
    std::string text;
    for (auto byte : internalDigest_) {
        text += digits[byte >> 4];
        text += digits[byte & 0x0F];
    }
    return text;
}

}  // namespace quillbox
