// The characters and numbers of program and response messages. Nothing here depends on the locale.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace virtual_scope {

// White space inside a program message: IEEE 488.2 (7.4.1.2) takes every control character but
// the line feed, and the blank; the no-break space of Latin-1 is taken as well.
[[nodiscard]] constexpr bool IsBlank(char c) {
    const auto code = static_cast<unsigned char>(c);
    return (code <= 0x20 && c != '\n') || code == 0xA0;
}
[[nodiscard]] constexpr bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
[[nodiscard]] constexpr char ToUpper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}
[[nodiscard]] std::string ToUpper(std::string_view text);

// Blanks and line feeds taken off both ends; the view is into `text`.
[[nodiscard]] std::string_view Trim(std::string_view text);

// The parts between the separators; one part for a text without any.
[[nodiscard]] std::vector<std::string_view> Split(std::string_view text, char separator);

// A whole NR1, NR2 or NR3 number, with or without a sign; nothing for any other text.
[[nodiscard]] std::optional<double> ParseNumber(std::string_view text);

// Takes the quotes off a string and makes one of its doubled quotes; nothing if `text` isn't one
// whole string in single or double quotes.
[[nodiscard]] std::optional<std::string> Unquote(std::string_view text);

// In double quotes, those inside doubled.
[[nodiscard]] std::string Quote(std::string_view text);

// Engineering notation: an exponent of a multiple of three, at least four decimals and as many more
// as it takes to read the same number back: 50.0000, 400.0000E-6, 1.0000E+6. The number that stands
// for none has its own form, 9.91E+37.
[[nodiscard]] std::string FormatReal(double value);

}  // namespace virtual_scope
