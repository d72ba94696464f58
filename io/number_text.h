// Numbers and texts laid out in fields, by the rules of C's printf and free of the locale.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace kestrion {

// Flags, width and precision of one conversion of printf.
struct FieldFormat {
    char letter = 'd';  // one of d i o u x X e E f F g G
    bool leftAlign = false;
    bool plusSign = false;
    bool blankSign = false;
    bool zeroFill = false;
    std::int64_t width = 0;
    std::int64_t precision = -1;  // -1 for none
};

// A field's parts in their order. Fill characters are counted rather than stored, so that no width
// or precision costs memory. The views are into what the field was made from.
struct TextField {
    std::uint64_t blanksBefore = 0;
    std::string_view prefix;  // sign, base or quote
    std::uint64_t zeros = 0;
    std::string_view body;
    std::uint64_t zerosBehind = 0;  // digits of a precision that goes beyond what a double holds
    std::string_view tail;          // exponent or quote
    std::uint64_t blanksBehind = 0;

    [[nodiscard]] std::uint64_t Size() const {
        return blanksBefore + prefix.size() + zeros + body.size() + zerosBehind + tail.size() +
               blanksBehind;
    }
    void AppendTo(std::string& text) const;
};

// Room for the digits of a number: a double has at most 309 digits in front of the point and 1074
// behind it that aren't zero.
using NumberDigits = std::array<char, 1536>;

// Signed conversions, d and i: `value` with its sign.
[[nodiscard]] TextField FormatSigned(std::int64_t value, const FieldFormat& format,
                                     NumberDigits& digits);
// o, u, x and X.
[[nodiscard]] TextField FormatUnsigned(std::uint64_t value, const FieldFormat& format,
                                       NumberDigits& digits);
// e, E, f, F, g and G; "inf" and "nan" as printf gives them.
[[nodiscard]] TextField FormatReal(double value, const FieldFormat& format, NumberDigits& digits);
// s: as much of `text` as the precision allows. A quote, where it isn't zero, stands around the
// text and counts for width and precision.
[[nodiscard]] TextField FormatText(std::string_view text, char quote, const FieldFormat& format);

// Fills `field` up to the width: behind if left aligned, otherwise in front.
void PadWithBlanks(TextField& field, const FieldFormat& format);

}  // namespace kestrion
