#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <new>
#include <string>
#include <string_view>
#include <variant>

#include "kestrion/platform/variant.h"
#include "platform/text.h"

namespace kestrion {
namespace {

// A value on its way from one type to another.
using Value = std::variant<std::int64_t, double, bool, std::string>;

// Significant digits of a text that a number becomes (published: 7 and 15).
constexpr int kFloatDigits = 7;
constexpr int kDoubleDigits = 15;

// Holds the value of a by-value scalar; false for other types.
bool Read(const VARIANT& source, Value& value) {
    switch (source.vt) {
        case VT_EMPTY:
            value = std::int64_t{0};
            return true;
        case VT_I1:
            value = std::int64_t{static_cast<std::int8_t>(source.bVal)};
            return true;
        case VT_UI1:
            value = std::int64_t{source.bVal};
            return true;
        case VT_I2:
            value = std::int64_t{source.iVal};
            return true;
        case VT_UI2:
            value = std::int64_t{static_cast<std::uint16_t>(source.iVal)};
            return true;
        case VT_I4:
            value = std::int64_t{source.lVal};
            return true;
        case VT_UI4:
            value = std::int64_t{static_cast<std::uint32_t>(source.lVal)};
            return true;
        case VT_I8:
            value = std::int64_t{source.llVal};
            return true;
        case VT_R4:
            value = static_cast<double>(source.fltVal);
            return true;
        case VT_R8:
            value = source.dblVal;
            return true;
        case VT_BOOL:
            value = source.boolVal != VARIANT_FALSE;
            return true;
        case VT_BSTR:
            value = ToUtf8(source.bstrVal);
            return true;
        default:
            return false;
    }
}

template <typename T>
bool ParseWhole(std::string_view text, T& number) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size();
}

// The number that a text is: an integer where it is one, so that no digit is lost.
HRESULT ParseNumber(std::string_view text, Value& number) {
    text = Trim(text);
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) {
            return DISP_E_TYPEMISMATCH;
        }
    }
    if (text.find_first_not_of("0123456789.eE+-") != std::string_view::npos) {
        return DISP_E_TYPEMISMATCH;  // from_chars would take "inf" and "nan"
    }
    std::int64_t integer = 0;
    if (ParseWhole(text, integer)) {
        number = integer;
        return S_OK;
    }
    double real = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), real);
    if (end != text.data() + text.size() || error == std::errc::invalid_argument) {
        return DISP_E_TYPEMISMATCH;
    }
    if (error == std::errc::result_out_of_range) {
        return DISP_E_OVERFLOW;
    }
    number = real;
    return S_OK;
}

// Turns Booleans and texts into numbers.
HRESULT MakeNumber(Value& value) {
    if (const bool* flag = std::get_if<bool>(&value)) {
        value = std::int64_t{*flag ? VARIANT_TRUE : VARIANT_FALSE};
    } else if (const std::string* text = std::get_if<std::string>(&value)) {
        Value number;
        if (const HRESULT status = ParseNumber(*text, number); Failed(status)) {
            return status;
        }
        value = number;
    }
    return S_OK;
}

template <typename T>
HRESULT ToInteger(Value value, T& result) {
    if (const HRESULT status = MakeNumber(value); Failed(status)) {
        return status;
    }
    if (const double* real = std::get_if<double>(&value)) {
        const double rounded = std::nearbyint(*real);
        // The border is a power of two and so exact, which the largest 64-bit integer isn't.
        constexpr double kBorder = 9223372036854775808.0;
        if (!(rounded >= -kBorder && rounded < kBorder)) {
            return DISP_E_OVERFLOW;
        }
        value = static_cast<std::int64_t>(rounded);
    }
    const std::int64_t integer = std::get<std::int64_t>(value);
    if (integer < std::int64_t{std::numeric_limits<T>::min()} ||
        integer > std::int64_t{std::numeric_limits<T>::max()}) {
        return DISP_E_OVERFLOW;
    }
    result = static_cast<T>(integer);
    return S_OK;
}

HRESULT ToReal(Value value, double& result) {
    if (const HRESULT status = MakeNumber(value); Failed(status)) {
        return status;
    }
    const double* real = std::get_if<double>(&value);
    result = real != nullptr ? *real : static_cast<double>(std::get<std::int64_t>(value));
    return S_OK;
}

HRESULT ToFloat(const Value& value, float& result) {
    double real = 0.0;
    if (const HRESULT status = ToReal(value, real); Failed(status)) {
        return status;
    }
    if (std::isfinite(real) && std::abs(real) > std::numeric_limits<float>::max()) {
        return DISP_E_OVERFLOW;
    }
    result = static_cast<float>(real);
    return S_OK;
}

HRESULT ToFlag(Value value, bool& result) {
    if (const std::string* text = std::get_if<std::string>(&value)) {
        const std::string_view word = Trim(*text);
        if (EqualsIgnoreCase(word, "true") || EqualsIgnoreCase(word, "false")) {
            result = EqualsIgnoreCase(word, "true");
            return S_OK;
        }
    }
    double real = 0.0;
    if (const HRESULT status = ToReal(value, real); Failed(status)) {
        return status;
    }
    result = real != 0.0;
    return S_OK;
}

std::string RealText(double value, int digits) {
    std::array<char, 40> text{};
    const auto result = std::to_chars(text.data(), text.data() + text.size(), value,
                                      std::chars_format::general, digits);
    return ToUpperAscii({text.data(), result.ptr});
}

std::string ToText(const VARIANT& source, const Value& value, USHORT flags) {
    if (source.vt == VT_EMPTY) {
        return {};
    }
    if (const bool* flag = std::get_if<bool>(&value)) {
        if ((flags & VARIANT_ALPHABOOL) != 0) {
            return *flag ? "True" : "False";
        }
        return *flag ? "-1" : "0";
    }
    if (const double* real = std::get_if<double>(&value)) {
        return RealText(*real, source.vt == VT_R4 ? kFloatDigits : kDoubleDigits);
    }
    return std::to_string(std::get<std::int64_t>(value));
}

// Takes an integer type into the member of the union that has its size.
template <typename T, typename Member>
HRESULT ChangeInteger(const Value& value, Member& member) {
    T integer = 0;
    const HRESULT status = ToInteger(value, integer);
    member = static_cast<Member>(integer);
    return status;
}

HRESULT Change(const VARIANT& source, const Value& value, USHORT flags, VARIANT& changed) {
    switch (changed.vt) {
        case VT_I1:
            return ChangeInteger<std::int8_t>(value, changed.bVal);
        case VT_UI1:
            return ChangeInteger<std::uint8_t>(value, changed.bVal);
        case VT_I2:
            return ChangeInteger<std::int16_t>(value, changed.iVal);
        case VT_UI2:
            return ChangeInteger<std::uint16_t>(value, changed.iVal);
        case VT_I4:
            return ChangeInteger<std::int32_t>(value, changed.lVal);
        case VT_UI4:
            return ChangeInteger<std::uint32_t>(value, changed.lVal);
        case VT_I8:
            return ChangeInteger<std::int64_t>(value, changed.llVal);
        case VT_R4:
            return ToFloat(value, changed.fltVal);
        case VT_R8:
            return ToReal(value, changed.dblVal);
        case VT_BOOL: {
            bool flag = false;
            const HRESULT status = ToFlag(value, flag);
            changed.boolVal = ToVariantBool(flag);
            return status;
        }
        case VT_BSTR:
            changed.bstrVal = MakeBstr(ToText(source, value, flags));
            return S_OK;
        default:
            return DISP_E_TYPEMISMATCH;
    }
}

HRESULT ChangeType(VARIANT& target, const VARIANT& source, USHORT flags, VARTYPE type) {
    Value value;
    if (!Read(source, value)) {
        return DISP_E_TYPEMISMATCH;
    }
    VARIANT changed;
    VariantInit(&changed);
    changed.vt = type;
    if (const HRESULT status = Change(source, value, flags, changed); Failed(status)) {
        return status;
    }
    if (const HRESULT status = VariantClear(&target); Failed(status)) {
        (void)VariantClear(&changed);
        return status;
    }
    target = changed;
    return S_OK;
}

}  // namespace
}  // namespace kestrion

HRESULT VariantChangeType(VARIANT* target, const VARIANT* source, USHORT flags, VARTYPE type) {
    if (target == nullptr || source == nullptr) {
        return E_INVALIDARG;
    }
    if (source->vt == type) {
        return VariantCopy(target, source);
    }
    try {
        return kestrion::ChangeType(*target, *source, flags, type);
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
}
