#include "tests/fuzz/write_model.h"

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <string_view>
#include <vector>

namespace kestrion::fuzz {
namespace {

constexpr std::int64_t kWidestField = 2000;

using Text = std::optional<std::string>;

std::string Print(const char* format, ...) {
    va_list list;
    va_start(list, format);
    va_list again;
    va_copy(again, list);
    const int size = std::vsnprintf(nullptr, 0, format, list);
    std::vector<char> text(static_cast<std::size_t>(std::max(size, 0)) + 1);
    (void)std::vsnprintf(text.data(), text.size(), format, again);
    va_end(again);
    va_end(list);
    return {text.data(), text.size() - 1};
}

// The conversion as C writes it, with another length and letter.
std::string CFormat(const FormatConversion& conversion, std::string_view ending) {
    std::string format = "%";
    format += conversion.leftAlign || conversion.width.value < 0 ? "-" : "";
    format += conversion.plusSign ? "+" : "";
    format += conversion.blankSign ? " " : "";
    format += conversion.zeroFill ? "0" : "";
    if (const std::int64_t width = std::abs(conversion.width.value);
        conversion.width.source != NumberSource::kNone && width > 0) {
        format += std::to_string(width);
    }
    if (conversion.precision.value >= 0) {
        format += "." + std::to_string(conversion.precision.value);
    }
    return format.append(ending);
}

bool HasField(const FormatConversion& conversion) {
    return conversion.width.source != NumberSource::kNone ||
           conversion.precision.source != NumberSource::kNone;
}

// The value plus a half, cut; nothing if that is no 64-bit integer.
std::optional<std::int64_t> Whole(double value) {
    const double shifted = value + 0.5;
    if (!(std::abs(shifted) < 9.2e18)) {
        return std::nullopt;
    }
    return static_cast<std::int64_t>(shifted);
}

std::string InBase(std::uint64_t value, std::uint64_t base) {
    std::string digits;
    do {
        digits.insert(digits.begin(), "0123456789ABCDEF"[value % base]);
        value /= base;
    } while (value != 0);
    return digits;
}

Text NumericForm(const FormatConversion& conversion, double value) {
    const char form = conversion.numericForm;
    if (form == '2' || form == '3') {
        return Print(CFormat(conversion, form == '2' ? "f" : "E").c_str(), value);
    }
    const std::optional<std::int64_t> whole = Whole(value);
    if (!whole) {
        return std::nullopt;
    }
    if (form == '1') {
        return Print(CFormat(conversion, "lld").c_str(), static_cast<long long>(*whole));
    }
    if (HasField(conversion)) {
        return std::nullopt;
    }
    const auto bits = static_cast<std::uint64_t>(*whole);
    switch (form) {
        case 'H':
            return "#H" + InBase(bits, 16);
        case 'Q':
            return "#Q" + InBase(bits, 8);
        default:
            return "#B" + InBase(bits & 0xFFFFFFFFU, 2);
    }
}

// The value as the length letter cuts it: its number and its bits.
Text Integer(const FormatConversion& conversion, std::int64_t value) {
    const bool isSigned = conversion.letter == 'd' || conversion.letter == 'i';
    auto bits = static_cast<std::uint64_t>(value);
    switch (conversion.length) {
        case 'b':
            bits &= 0xFFU;
            value = static_cast<std::int64_t>(bits);
            break;
        case 'h':
            bits &= 0xFFFFU;
            value = static_cast<std::int16_t>(value);
            break;
        case 'I':
            break;
        default:
            bits &= 0xFFFFFFFFU;
            value = static_cast<std::int32_t>(value);
    }
    if (conversion.numericForm != '\0') {
        return NumericForm(conversion,
                           isSigned ? static_cast<double>(value) : static_cast<double>(bits));
    }
    const std::string format = CFormat(conversion, std::string("ll") + conversion.letter);
    return isSigned ? Print(format.c_str(), static_cast<long long>(value))
                    : Print(format.c_str(), static_cast<unsigned long long>(bits));
}

Text Real(const FormatConversion& conversion, double value) {
    if (conversion.numericForm != '\0') {
        return NumericForm(conversion, value);
    }
    return Print(CFormat(conversion, {&conversion.letter, 1}).c_str(), value);
}

Text String(const FormatConversion& conversion, std::string_view text) {
    const std::string mark = conversion.quote == 'q' ? "'" : conversion.quote == 'Q' ? "\"" : "";
    const std::string quoted = mark + std::string(text.substr(0, text.find('\0'))) + mark;
    return Print(CFormat(conversion, "s").c_str(), quoted.c_str());
}

Text Character(const FormatConversion& conversion, std::int64_t value) {
    if (static_cast<char>(value) == '\0') {
        return std::nullopt;
    }
    FormatConversion format = conversion;
    format.precision = {};
    const std::string text(1, static_cast<char>(value));
    return Print(CFormat(format, "s").c_str(), text.c_str());
}

template <typename Elements, typename Element>
Text Array(const FormatConversion& conversion, const Elements& values, Element element) {
    std::size_t count = values.size();
    if (conversion.variantArray && conversion.count.value > 0) {
        count = std::min(count, static_cast<std::size_t>(conversion.count.value));
    }
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        const Text one = element(conversion, values[i]);
        if (!one) {
            return std::nullopt;
        }
        text.append(i == 0 ? "" : std::string(1, SeparatorByte(conversion.separators.front())));
        text += *one;
    }
    return text;
}

std::size_t BytesOf(char length) {
    return length == 'h'                    ? 2
           : length == 'l' || length == 'z' ? 4
           : length == 'I' || length == 'Z' ? 8
                                            : 1;
}

Text Block(WriteRow row, const FormatConversion& conversion, std::string bytes) {
    const std::size_t size = BytesOf(conversion.length);
    if (conversion.variantArray && conversion.width.value > 0) {
        bytes.resize(
            std::min(bytes.size(), static_cast<std::size_t>(conversion.width.value) * size));
    }
    // The host has the least significant byte first; blocks have it last.
    if (row != WriteRow::kRawArray || !conversion.littleEndian) {
        for (std::size_t at = 0; at < bytes.size(); at += size) {
            std::reverse(bytes.begin() + static_cast<std::ptrdiff_t>(at),
                         bytes.begin() + static_cast<std::ptrdiff_t>(at + size));
        }
    }
    if (row == WriteRow::kRawArray) {
        return bytes;
    }
    if (row == WriteRow::kIndefiniteBlock) {
        return "#0" + bytes + "\n";
    }
    const std::string length = std::to_string(bytes.size());
    return "#" + std::to_string(length.size()) + length + bytes;
}

bool IsRefused(WriteRow row, const FormatConversion& conversion) {
    const std::int64_t count =
        IsWriteBlockRow(row) ? conversion.width.value : conversion.count.value;
    return (IsWriteArrayRow(row) && !conversion.variantArray && count < 0) ||
           (row == WriteRow::kStringArray && conversion.variantArray && conversion.textKind != 'B');
}

}  // namespace

Text TextOfModel(WriteRow row, const FormatConversion& conversion, const WriteValue& value) {
    if (IsRefused(row, conversion) || std::abs(conversion.width.value) > kWidestField ||
        conversion.precision.value > kWidestField) {
        return std::nullopt;
    }
    switch (row) {
        case WriteRow::kInteger:
            return Integer(conversion, value.integers.front());
        case WriteRow::kReal:
            return Real(conversion, value.reals.front());
        case WriteRow::kCharacter:
            return Character(conversion, value.integers.front());
        case WriteRow::kString:
            return String(conversion, value.texts.front());
        case WriteRow::kIntegerArray:
            return Array(conversion, value.integers, Integer);
        case WriteRow::kRealArray:
            return Array(conversion, value.reals, Real);
        case WriteRow::kStringArray:
            return Array(conversion, value.texts, String);
        case WriteRow::kDefiniteBlock:
        case WriteRow::kIndefiniteBlock:
        case WriteRow::kRawArray:
            return Block(row, conversion, value.bytes);
        default:
            return std::nullopt;
    }
}

}  // namespace kestrion::fuzz
