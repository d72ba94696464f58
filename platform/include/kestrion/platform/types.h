// The scalar types, status codes and identifiers of the component object model.
//
// On Windows this header maps to the system's own. Elsewhere it gives the same names with the
// same sizes and values, so that code above it reads alike on both.
#pragma once

#include <cstdint>
#include <cstring>

#if defined(_WIN32)
#include "kestrion/platform/windows/types.h"
#else
#include "kestrion/platform/linux/types.h"
#endif

namespace kestrion {

// The widest meaning of "no such value" for a status: success without a remark.
[[nodiscard]] constexpr bool Succeeded(HRESULT status) {
    return status >= 0;
}

[[nodiscard]] constexpr bool Failed(HRESULT status) {
    return status < 0;
}

// Makes a status from its published unsigned form, such as 0x80047058.
[[nodiscard]] constexpr HRESULT MakeStatus(std::uint32_t bits) {
    return static_cast<HRESULT>(bits);
}

[[nodiscard]] constexpr VARIANT_BOOL ToVariantBool(bool value) {
    return value ? VARIANT_TRUE : VARIANT_FALSE;
}

}  // namespace kestrion
