// The element kinds of typed transfers: numbers, lists and blocks.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>

#include "kestrion/platform/safe_array.h"
#include "kestrion/platform/types.h"

namespace kestrion {

// The numbers are those that callers of the variant-array forms pass.
enum class ElementKind : std::int32_t {
    kByte = 0,
    kShort = 1,
    kLong = 2,
    kFloat = 4,
    kDouble = 5,
    kText = 6,
};

// The five C++ types that travel as numbers.
template <typename T>
concept InstrumentNumber = std::same_as<T, BYTE> || std::same_as<T, SHORT> ||
    std::same_as<T, LONG> || std::same_as<T, FLOAT> || std::same_as<T, DOUBLE>;

template <InstrumentNumber T>
inline constexpr ElementKind kElementKind = ElementKind::kByte;
template <>
inline constexpr ElementKind kElementKind<SHORT> = ElementKind::kShort;
template <>
inline constexpr ElementKind kElementKind<LONG> = ElementKind::kLong;
template <>
inline constexpr ElementKind kElementKind<FLOAT> = ElementKind::kFloat;
template <>
inline constexpr ElementKind kElementKind<DOUBLE> = ElementKind::kDouble;

// Bytes of a number on the wire and in memory; 0 for text and for an unknown kind.
[[nodiscard]] constexpr std::uint32_t ElementWidth(ElementKind kind) {
    switch (kind) {
        case ElementKind::kByte:
            return 1;
        case ElementKind::kShort:
            return 2;
        case ElementKind::kLong:
        case ElementKind::kFloat:
            return 4;
        case ElementKind::kDouble:
            return 8;
        case ElementKind::kText:
            break;
    }
    return 0;
}

// The variant array's code for a kind; VT_EMPTY for an unknown one.
[[nodiscard]] constexpr VARTYPE ElementVartype(ElementKind kind) {
    switch (kind) {
        case ElementKind::kByte:
            return VT_UI1;
        case ElementKind::kShort:
            return VT_I2;
        case ElementKind::kLong:
            return VT_I4;
        case ElementKind::kFloat:
            return VT_R4;
        case ElementKind::kDouble:
            return VT_R8;
        case ElementKind::kText:
            return VT_BSTR;
    }
    return VT_EMPTY;
}

}  // namespace kestrion
