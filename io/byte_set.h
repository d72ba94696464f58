// Sets of bytes. Asking one costs a look into 32 bytes; most are known when the program is built.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "kestrion/platform/types.h"

namespace kestrion {

// A set of bytes.
class ByteSet {
  public:
    constexpr ByteSet() = default;
    explicit constexpr ByteSet(std::string_view bytes) {
        for (const char c : bytes) {
            Add(static_cast<BYTE>(c));
        }
    }
    constexpr void Add(BYTE byte) { words_[byte / 64U] |= std::uint64_t{1} << (byte % 64U); }
    constexpr void AddRange(BYTE from, BYTE to) {
        for (unsigned byte = from; byte <= to; ++byte) {
            Add(static_cast<BYTE>(byte));
        }
    }
    [[nodiscard]] constexpr bool Has(char c) const {
        const BYTE byte = static_cast<BYTE>(c);
        return (words_[byte / 64U] >> (byte % 64U) & 1U) != 0;
    }
    // All bytes that this set lacks.
    [[nodiscard]] constexpr ByteSet Others() const {
        ByteSet others;
        for (std::size_t i = 0; i < words_.size(); ++i) {
            others.words_[i] = ~words_[i];
        }
        return others;
    }
    friend constexpr bool operator==(const ByteSet&, const ByteSet&) = default;

  private:
    std::array<std::uint64_t, 4> words_ = {};
};

}  // namespace kestrion
