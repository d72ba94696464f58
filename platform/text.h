// Text services: UTF-8 and UTF-16, instrument bytes, and comparisons that know ASCII only.
#pragma once

#include <string>
#include <string_view>

namespace kestrion {

// Converts between the two; what is malformed becomes U+FFFD.
[[nodiscard]] std::u16string Utf8ToUtf16(std::string_view utf8);
[[nodiscard]] std::string Utf16ToUtf8(std::u16string_view text);

// Instrument text is bytes: a code point up to 255 is that byte (U+00A0 is 0xA0), any other is '?'.
[[nodiscard]] std::string NarrowToBytes(std::u16string_view text);
// Each byte becomes the code point of its value.
[[nodiscard]] std::u16string WidenBytes(std::string_view bytes);

// White space is what C's isspace accepts in the "C" locale.
[[nodiscard]] constexpr bool IsSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}
[[nodiscard]] constexpr char ToLowerAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// White space taken off both ends; the view is into `text`.
[[nodiscard]] std::string_view Trim(std::string_view text);
[[nodiscard]] std::string ToLowerAscii(std::string_view text);
[[nodiscard]] std::string ToUpperAscii(std::string_view text);
// Ignores the case of A to Z and of nothing else.
[[nodiscard]] bool EqualsIgnoreCase(std::string_view a, std::string_view b);

}  // namespace kestrion
