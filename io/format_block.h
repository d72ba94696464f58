// Arbitrary blocks of IEEE 488.2: the header, and the byte order of the elements.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "kestrion/platform/types.h"

namespace kestrion {

// The header of a block of definite length: `#`, one digit that counts the digits of the length,
// the length in bytes. IEEE 488.2, 8.7.9.
class BlockHeader {
  public:
    [[nodiscard]] std::string_view Text() const { return {text_.data(), size_}; }

  private:
    friend std::optional<BlockHeader> FormatBlockHeader(std::uint64_t byteCount);

    std::array<char, 11> text_ = {'#'};
    std::size_t size_ = 0;
};

// The most bytes that nine digits of length can announce.
inline constexpr std::uint64_t kLongestBlock = 999'999'999;

// Nothing if the block is longer than a header can say.
[[nodiscard]] inline std::optional<BlockHeader> FormatBlockHeader(std::uint64_t byteCount) {
    if (byteCount > kLongestBlock) {
        return std::nullopt;
    }
    BlockHeader header;
    char* const digits = header.text_.data() + 2;
    const char* end =
        std::to_chars(digits, header.text_.data() + header.text_.size(), byteCount).ptr;
    header.text_[1] = static_cast<char>('0' + (end - digits));
    header.size_ = static_cast<std::size_t>(end - header.text_.data());
    return header;
}

// The header of a block of indefinite length, which ends with a line feed and END.
inline constexpr std::string_view kIndefiniteBlockHeader = "#0";

// The number of length digits that the byte behind `#` announces, 0 to 9; -1 if it is no digit.
[[nodiscard]] constexpr int BlockLengthDigits(BYTE digit) {
    return digit >= '0' && digit <= '9' ? digit - '0' : -1;
}

// The byte count that the length digits say; -1 if there is none or one isn't a digit.
[[nodiscard]] constexpr std::int64_t ParseBlockLength(std::span<const BYTE> digits) {
    std::int64_t length = digits.empty() ? -1 : 0;
    for (const BYTE digit : digits) {
        if (BlockLengthDigits(digit) < 0) {
            return -1;
        }
        length = length * 10 + BlockLengthDigits(digit);
    }
    return length;
}

// Reverses the bytes of each element in place. Bytes behind the last whole element stay.
inline void ReverseElements(std::span<BYTE> bytes, std::size_t elementSize) {
    if (elementSize < 2) {
        return;
    }
    for (; bytes.size() >= elementSize; bytes = bytes.subspan(elementSize)) {
        std::ranges::reverse(bytes.first(elementSize));
    }
}

// Big-endian elements have to be reversed on this host.
inline constexpr bool kHostIsLittleEndian = std::endian::native == std::endian::little;

}  // namespace kestrion
