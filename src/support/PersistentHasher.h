#pragma once

#include <array>
#include <bit>
#include <chrono>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace quillbox {

class PersistentHasher;

// A value that folds itself into a persistent hash, field by field, with
// void hashPersistently(PersistentHasher& into) const.
template <typename T>
concept PersistentHashableValue = requires(const T& value, PersistentHasher& hasher) {
    value.hashPersistently(hasher);
};

// A hash that stays the same across runs and machines, unlike std::hash,
// for values that are stored and compared later: the bytes of each value
// folded into MD5, integers and floating-point bit patterns in little-endian
// order whatever the processor. MD5 serves as a stable fingerprint here, not
// for security.
class PersistentHasher {
  public:
    using Date = std::chrono::system_clock::time_point;

    // The sixteen bytes of a finished hash.
    class PersistentDigest {
      public:
        static constexpr std::size_t byteCount = 16;
        using Bytes = std::array<std::uint8_t, byteCount>;

        explicit PersistentDigest(const Bytes& bytes) : internalDigest_(bytes) {}
        const Bytes& bytes() const { return internalDigest_; }
        // Lower-case hexadecimal, two digits a byte.
        std::string hexString() const;

        friend bool operator==(const PersistentDigest&, const PersistentDigest&) = default;

      private:
        Bytes internalDigest_;
    };

    PersistentHasher();
    ~PersistentHasher();
    // A copy goes on from the same state, independently.
    PersistentHasher(const PersistentHasher& other);
    PersistentHasher& operator=(const PersistentHasher& other);
    PersistentHasher(PersistentHasher&&) noexcept;
    PersistentHasher& operator=(PersistentHasher&&) noexcept;

    // MD5's block size in bytes.
    static constexpr std::size_t blockByteCount = 64;

    void update(const void* bufferPointer, std::size_t byteCount);
    void update(std::span<const std::uint8_t> data);
    void update(const std::vector<std::uint8_t>& data) { update(std::span(data)); }

    // Booleans are one byte, 1 or 0.
    void update(bool value) { update(static_cast<std::uint8_t>(value ? 1 : 0)); }
    // Integers fold in all their bytes, so 1 as 32 bits and 1 as 64 bits differ.
    template <typename Integer>
    requires std::integral<Integer> &&(!std::same_as<Integer, bool>)void update(Integer value) {
        updateLittleEndian(static_cast<std::make_unsigned_t<Integer>>(value));
    }
    template <std::floating_point Real>
    void update(Real value) {
        if constexpr (sizeof(Real) == 4)
            updateLittleEndian(std::bit_cast<std::uint32_t>(value));
        else if constexpr (sizeof(Real) == 8)
            updateLittleEndian(std::bit_cast<std::uint64_t>(value));
        else
            static_assert(sizeof(Real) == 4 || sizeof(Real) == 8, "no stable bit pattern");
    }
    // Text is its bytes as they stand (UTF-8 in this program).
    void update(std::string_view text) { update(text.data(), text.size()); }
    void update(const std::string& text) { update(std::string_view(text)); }
    void update(const char* text) { update(std::string_view(text)); }
    // A date is its interval since the reference date, 2001-01-01 00:00:00
    // UTC, in seconds as a double.
    void update(Date date);
    template <PersistentHashableValue Value>
    void update(const Value& value) {
        value.hashPersistently(*this);
    }
    // A present value is folded in as itself; nil folds in nothing, so it
    // can't be told from leaving the field out.
    template <typename Value>
    void update(const std::optional<Value>& value) {
        if (value)
            update(*value);
    }

    // The digest of everything folded in. The hasher is spent afterwards:
    // take a copy first to go on hashing.
    PersistentDigest finalize();

  private:
    template <typename Unsigned>
    void updateLittleEndian(Unsigned value) {
        std::array<std::uint8_t, sizeof(Unsigned)> bytes;
        for (std::size_t i = 0; i < sizeof(Unsigned); ++i)
            bytes[i] = static_cast<std::uint8_t>(value >> (8 * i));
        update(bytes.data(), bytes.size());
    }

    struct State;
    std::unique_ptr<State> internalHasher_;
};

using PersistentDigest = PersistentHasher::PersistentDigest;

// Anything a hasher takes: numbers, Booleans, texts, dates, optionals of
// those and values that fold themselves in.
template <typename T>
concept PersistentHashable = requires(PersistentHasher& hasher, const T& value) {
    hasher.update(value);
};

// The digest of one value hashed on its own by a fresh hasher.
template <PersistentHashable T>
PersistentDigest persistentHashValue(const T& value) {
    PersistentHasher hasher;
    hasher.update(value);
    return hasher.finalize();
}

}  // namespace quillbox

template <>
struct std::hash<quillbox::PersistentDigest> {
    std::size_t operator()(const quillbox::PersistentDigest& digest) const noexcept {
        std::size_t value = 0;
        for (std::size_t i = 0; i < sizeof(std::size_t); ++i)
            value = (value << 8) | digest.bytes()[i];
        return value;
    }
};
