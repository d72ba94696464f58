// Cuts a format text into pieces: literal runs and conversions.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "kestrion/platform/types.h"

namespace kestrion {

enum class FormatDirection { kWrite, kRead };

// What a piece of a format for writing is. The rows are tried in this order, and the first that
// matches has the piece, so the order is part of the language.
enum class WriteRow : std::int32_t {
    kLiteral,
    kInteger,
    kIntegerArray,
    kReal,
    kRealArray,
    kDefiniteBlock,
    kIndefiniteBlock,
    kRawArray,
    kCharacter,
    kString,
    kStringArray,
    kEnum,
    kEnumArray,
};
inline constexpr std::int32_t kWriteRowCount = 13;

// The same for reading.
enum class ReadRow : std::int32_t {
    kLiteral,
    kInteger,
    kIntegerArray,
    kReal,
    kRealArray,
    kBlock,
    kRawArray,
    kCharacters,
    kLine,
    kRest,
    kWord,
    kSet,
    kStringArray,
    kEnum,
    kEnumSet,
    kEnumArray,
};
inline constexpr std::int32_t kReadRowCount = 16;

// One piece: the row that matched, and where the piece stands in the format, in bytes.
struct FormatSpec {
    std::int32_t row = 0;
    std::uint32_t start = 0;
    std::uint32_t length = 0;

    friend bool operator==(const FormatSpec&, const FormatSpec&) = default;
};

// Cuts the whole of `format` into `specs`, which is emptied first. E_UNEXPECTED if a place is left
// that no row matches; an empty format gives an empty list. Any thread may call.
[[nodiscard]] HRESULT Tokenize(std::string_view format, FormatDirection direction,
                               std::vector<FormatSpec>& specs);

}  // namespace kestrion
