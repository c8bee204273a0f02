#include "support/UUID.h"

#include <random>

namespace quillbox {

UUID UUID::make() {
    thread_local std::mt19937_64 generator{std::random_device{}()};
    UUID uuid;
    for (std::size_t i = 0; i < uuid.bytes_.size(); i += 8) {
        auto bits = generator();
        for (std::size_t j = 0; j < 8; ++j)
            uuid.bytes_[i + j] = static_cast<std::uint8_t>(bits >> (8 * j));
    }
    uuid.bytes_[6] = static_cast<std::uint8_t>((uuid.bytes_[6] & 0x0F) | 0x40);  // version 4
    uuid.bytes_[8] = static_cast<std::uint8_t>((uuid.bytes_[8] & 0x3F) | 0x80);  // RFC 4122 variant
    return uuid;
}

std::string UUID::uuidString() const {
    static constexpr char digits[] = "0123456789ABCDEF";
    std::string text;
    for (std::size_t i = 0; i < bytes_.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10)
            text += '-';
        text += digits[bytes_[i] >> 4];
        text += digits[bytes_[i] & 0x0F];
    }
    return text;
}

}  // namespace quillbox
