#include "io/number_parse.h"

#include <algorithm>
#include <cfloat>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

namespace kestrion {
namespace {

int DigitValue(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    return 99;
}

// Takes a sign off the front; tells whether it was a minus.
bool TakeSign(std::string_view& text) {
    const bool negative = text.starts_with('-');
    text.remove_prefix(negative || text.starts_with('+') ? 1 : 0);
    return negative;
}

// Whether an unsigned decimal number that a double can't hold is too large rather than too small.
bool IsTooLarge(std::string_view number) {
    const std::size_t e = std::min(number.find_first_of("eE"), number.size());
    const std::string_view mantissa = number.substr(0, e);
    std::string_view exponent = number.substr(std::min(e + 1, number.size()));
    const bool down = TakeSign(exponent);
    std::int64_t power = 0;
    for (const char c : exponent) {
        power = std::min<std::int64_t>(power * 10 + DigitValue(c), 1'000'000'000'000);
    }
    const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
    const std::size_t first = std::min(mantissa.find_first_not_of("0."), mantissa.size());
    const std::int64_t place = static_cast<std::int64_t>(point) - static_cast<std::int64_t>(first);
    return place + (down ? -power : power) > 0;
}

std::uint64_t MaskOf(int bits) {
    return ~std::uint64_t{0} >> (64 - bits);
}

}  // namespace

bool ParseReal(std::string_view text, double& value) {
    const bool negative = TakeSign(text);
    if (text.empty() || (DigitValue(text.front()) > 9 && text.front() != '.')) {
        return false;  // keeps "inf" and a second sign out
    }
    double magnitude = 0;
    const std::from_chars_result result =
        std::from_chars(text.data(), text.data() + text.size(), magnitude);
    if (result.ec == std::errc::result_out_of_range) {
        if (IsTooLarge({text.data(), static_cast<std::size_t>(result.ptr - text.data())})) {
            return false;
        }
        magnitude = 0;
    } else if (result.ec != std::errc() || std::isinf(magnitude)) {
        return false;
    }
    value = negative ? -magnitude : magnitude;
    return true;
}

bool ParseWhole(std::string_view text, int radix, int bits, bool isSigned, std::int64_t& value) {
    const bool negative = TakeSign(text);
    if (radix == 16 && text.starts_with("0x")) {
        text.remove_prefix(2);
    }
    if (text.empty() || !IsDigitOf(text.front(), radix)) {
        return false;
    }
    std::uint64_t magnitude = 0;
    if (std::from_chars(text.data(), text.data() + text.size(), magnitude, radix).ec !=
        std::errc()) {
        return false;
    }
    const std::uint64_t largest = isSigned ? MaskOf(bits) / 2 + (negative ? 1 : 0) : MaskOf(bits);
    if (magnitude > largest) {
        return false;
    }
    const std::uint64_t whole = negative ? 0 - magnitude : magnitude;
    value = static_cast<std::int64_t>(isSigned ? whole : whole & MaskOf(bits));
    return true;
}

bool CutToWhole(double value, int bits, bool isSigned, std::int64_t& whole) {
    const double cut = std::trunc(value);
    const double span = std::ldexp(1.0, isSigned ? bits - 1 : bits);
    if (!(cut < span && cut >= (isSigned ? -span : 0.0))) {
        return false;
    }
    whole = isSigned ? static_cast<std::int64_t>(cut)
                     : static_cast<std::int64_t>(static_cast<std::uint64_t>(cut));
    return true;
}

bool FitsSingle(double value) {
    const double magnitude = std::abs(value);
    const bool tooSmall = magnitude >= std::numeric_limits<double>::min() &&
                          magnitude < double{std::numeric_limits<float>::min()};
    return magnitude <= double{std::numeric_limits<float>::max()} && !tooSmall;
}

bool IsDigitOf(char c, int radix) {
    return DigitValue(c) < radix;
}

}  // namespace kestrion
