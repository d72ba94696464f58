#include "io/number_forms.h"

#include <algorithm>
#include <charconv>

namespace kestrion {
namespace {

constexpr double kTwoTo63 = 9223372036854775808.0;

bool RoundToInt64(double value, std::int64_t& whole) {
    const double shifted = value + 0.5;
    if (!(shifted >= -kTwoTo63 && shifted < kTwoTo63)) {
        return false;
    }
    whole = static_cast<std::int64_t>(shifted);
    return true;
}

void DropTwo(std::uint64_t& padding) {
    padding -= std::min<std::uint64_t>(padding, 2);
}

// The prefix takes the place of two characters of padding, so that the width stays.
void PutPrefix(TextField& field, const FieldFormat& format, std::string_view prefix) {
    field.prefix = prefix;
    if (format.leftAlign) {
        DropTwo(field.blanksBehind);
    } else if (field.blanksBefore > 0) {
        DropTwo(field.blanksBefore);
    } else if (format.precision < 0) {
        DropTwo(field.zeros);  // the zeros of a precision are wanted and stay
    }
}

TextField FormatBinary(std::int64_t whole, const FieldFormat& format, NumberDigits& digits) {
    const std::uint32_t bits = static_cast<std::uint32_t>(static_cast<std::uint64_t>(whole));
    const char* end = std::to_chars(digits.data(), digits.data() + digits.size(), bits, 2).ptr;
    TextField field;
    field.prefix = "#B";
    field.body = {digits.data(), static_cast<std::size_t>(end - digits.data())};
    const std::uint64_t least =
        static_cast<std::uint64_t>(std::max<std::int64_t>(format.precision, 0));
    field.zeros = least - std::min<std::uint64_t>(least, field.body.size());
    const std::uint64_t width = static_cast<std::uint64_t>(std::max<std::int64_t>(format.width, 0));
    if (format.zeroFill && !format.leftAlign && format.precision < 0) {
        field.zeros += width - std::min(width, field.Size());
    }
    PadWithBlanks(field, format);
    return field;
}

}  // namespace

HRESULT FormatNumericForm(char form, double value, FieldFormat format, NumberDigits& digits,
                          TextField& field) {
    if (form == '2' || form == '3') {
        format.letter = form == '2' ? 'f' : 'E';
        field = FormatReal(value, format, digits);
        return S_OK;
    }
    std::int64_t whole = 0;
    if (!RoundToInt64(value, whole)) {
        return E_INVALIDARG;
    }
    const std::uint64_t bits = static_cast<std::uint64_t>(whole);
    switch (form) {
        case '1':
            format.letter = 'd';
            field = FormatSigned(whole, format, digits);
            return S_OK;
        case 'H':
            format.letter = 'X';
            field = FormatUnsigned(bits, format, digits);
            PutPrefix(field, format, "#H");
            return S_OK;
        case 'Q':
            format.letter = 'o';
            field = FormatUnsigned(bits, format, digits);
            PutPrefix(field, format, "#Q");
            return S_OK;
        case 'B':
            field = FormatBinary(whole, format, digits);
            return S_OK;
        default:
            return E_UNEXPECTED;
    }
}

}  // namespace kestrion
