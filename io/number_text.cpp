#include "io/number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <system_error>

namespace kestrion {
namespace {

// No double has more digits behind the point than this.
constexpr std::int64_t kMostDecimals = 1074;
constexpr std::int64_t kDefaultPrecision = 6;

std::uint64_t Missing(const TextField& field, const FieldFormat& format) {
    const std::uint64_t width = static_cast<std::uint64_t>(std::max<std::int64_t>(format.width, 0));
    return width - std::min(width, field.Size());
}

// Zeros between the sign and the digits if the flags ask for them, otherwise blanks.
void PadNumber(TextField& field, const FieldFormat& format, bool zerosAllowed) {
    if (format.zeroFill && !format.leftAlign && zerosAllowed) {
        field.zeros += Missing(field, format);
        return;
    }
    PadWithBlanks(field, format);
}

std::string_view SignOf(bool negative, const FieldFormat& format) {
    if (negative) {
        return "-";
    }
    return format.plusSign ? "+" : format.blankSign ? " " : "";
}

void ToUpper(char* from, const char* to) {
    std::transform(from, from + (to - from), from, [](char c) {
        return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    });
}

TextField LayOutInteger(std::string_view sign, std::uint64_t magnitude, int radix,
                        const FieldFormat& format, NumberDigits& digits) {
    TextField field;
    field.prefix = sign;
    char* end = std::to_chars(digits.data(), digits.data() + digits.size(), magnitude, radix).ptr;
    if (format.letter == 'X') {
        ToUpper(digits.data(), end);
    }
    field.body = {digits.data(), static_cast<std::size_t>(end - digits.data())};
    if (format.precision == 0 && magnitude == 0) {
        field.body = {};
    }
    const std::uint64_t least =
        static_cast<std::uint64_t>(std::max<std::int64_t>(format.precision, 0));
    field.zeros = least - std::min<std::uint64_t>(least, field.body.size());
    PadNumber(field, format, format.precision < 0);
    return field;
}

std::chars_format NotationOf(char letter) {
    switch (letter) {
        case 'e':
        case 'E':
            return std::chars_format::scientific;
        case 'f':
        case 'F':
            return std::chars_format::fixed;
        default:
            return std::chars_format::general;
    }
}

}  // namespace

void TextField::AppendTo(std::string& text) const {
    text.append(blanksBefore, ' ').append(prefix).append(zeros, '0').append(body);
    text.append(zerosBehind, '0').append(tail).append(blanksBehind, ' ');
}

void PadWithBlanks(TextField& field, const FieldFormat& format) {
    (format.leftAlign ? field.blanksBehind : field.blanksBefore) += Missing(field, format);
}

TextField FormatSigned(std::int64_t value, const FieldFormat& format, NumberDigits& digits) {
    const std::uint64_t bits = static_cast<std::uint64_t>(value);
    return LayOutInteger(SignOf(value < 0, format), value < 0 ? 0 - bits : bits, 10, format,
                         digits);
}

TextField FormatUnsigned(std::uint64_t value, const FieldFormat& format, NumberDigits& digits) {
    const int radix = format.letter == 'o' ? 8 : format.letter == 'u' ? 10 : 16;
    return LayOutInteger("", value, radix, format, digits);
}

TextField FormatReal(double value, const FieldFormat& format, NumberDigits& digits) {
    TextField field;
    field.prefix = SignOf(std::signbit(value), format);
    const bool upper = format.letter == 'E' || format.letter == 'F' || format.letter == 'G';
    if (!std::isfinite(value)) {
        const bool nan = std::isnan(value);
        field.body = nan ? (upper ? "NAN" : "nan") : (upper ? "INF" : "inf");
        PadNumber(field, format, false);
        return field;
    }
    const std::int64_t precision = format.precision < 0 ? kDefaultPrecision : format.precision;
    const std::int64_t exact = std::min(precision, kMostDecimals);
    const std::chars_format notation = NotationOf(format.letter);
    char* end = std::to_chars(digits.data(), digits.data() + digits.size(), std::abs(value),
                              notation, static_cast<int>(exact))
                    .ptr;
    if (upper) {
        ToUpper(digits.data(), end);
    }
    field.body = {digits.data(), static_cast<std::size_t>(end - digits.data())};
    if (notation != std::chars_format::general) {
        field.zerosBehind = static_cast<std::uint64_t>(precision - exact);
    }
    if (notation == std::chars_format::scientific) {
        const std::size_t exponent = field.body.find(upper ? 'E' : 'e');
        field.tail = field.body.substr(exponent);
        field.body = field.body.substr(0, exponent);
    }
    PadNumber(field, format, true);
    return field;
}

TextField FormatText(std::string_view text, char quote, const FieldFormat& format) {
    std::uint64_t room =
        format.precision < 0 ? UINT64_MAX : static_cast<std::uint64_t>(format.precision);
    const std::string_view mark = quote == '\'' ? "'" : quote == '"' ? "\"" : "";
    const auto fit = [&room](std::string_view part) {
        part = part.substr(0, std::min<std::uint64_t>(room, part.size()));
        room -= part.size();
        return part;
    };
    TextField field;
    field.prefix = fit(mark);
    field.body = fit(text);
    field.tail = fit(mark);
    PadWithBlanks(field, format);
    return field;
}

}  // namespace kestrion
