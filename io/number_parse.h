// Texts to numbers, free of the locale.
#pragma once

#include <cstdint>
#include <string_view>

namespace kestrion {

// Converts the longest start of `text` that is a decimal number: sign, digits, point, digits,
// exponent. A number too small for a double is zero or denormal. False if no digit was found or the
// number is too large, and then `value` stays.
[[nodiscard]] bool ParseReal(std::string_view text, double& value);

// Converts the longest start of `text` that is a whole number of `radix` (8, 10 or 16): sign,
// digits; in radix 16 "0x" may stand in front of the digits. False if no digit was found or the
// number doesn't fit into `bits` bits (8 to 64): with a sign bit for `isSigned`, otherwise its
// size, and then a minus negates the bits as C's strtoul does. `value` stays if false; it holds the
// sign-extended number if `isSigned`, otherwise the bits.
[[nodiscard]] bool ParseWhole(std::string_view text, int radix, int bits, bool isSigned,
                              std::int64_t& value);

// Converts `value`, cut to a whole number, with the same range. False if out of range or not a
// number.
[[nodiscard]] bool CutToWhole(double value, int bits, bool isSigned, std::int64_t& whole);

// Whether single precision can hold `value`, rounded: neither above its greatest magnitude nor
// below its least normal one. Zero fits, and so does a denormal double, which becomes zero.
[[nodiscard]] bool FitsSingle(double value);

// Whether `c` is a digit of `radix` (2, 8, 10 or 16).
[[nodiscard]] bool IsDigitOf(char c, int radix);

}  // namespace kestrion
