#pragma once

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

namespace quillbox {

// A random (version 4) universally unique identifier.
class UUID {
  public:
    static UUID make();

    const std::array<std::uint8_t, 16>& bytes() const { return bytes_; }
    // "E621E1F8-C36C-495A-93FC-0C247A3E6E5F"
    std::string uuidString() const;

    friend auto operator<=>(const UUID&, const UUID&) = default;
    friend bool operator==(const UUID&, const UUID&) = default;

  private:
    std::array<std::uint8_t, 16> bytes_{};
};

}  // namespace quillbox

template <>
struct std::hash<quillbox::UUID> {
    std::size_t operator()(const quillbox::UUID& uuid) const noexcept {
        std::size_t value = 0;
        for (auto byte : uuid.bytes())
            value = value * 131 + byte;
        return value;
    }
};
