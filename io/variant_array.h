// One-dimensional variant arrays, as the typed operations take and make them.
#pragma once

#include <cstdint>
#include <optional>

#include "io/element.h"
#include "io/partners.h"
#include "kestrion/platform/safe_array.h"

namespace kestrion {

// Success for a one-dimensional, zero-based array, of the element type if one is asked for.
// Anything else, null too, is reported as an invalid value of the parameter "psa".
[[nodiscard]] HRESULT CheckVariantArray(SAFEARRAY* array, std::optional<VARTYPE> expected,
                                        IIoErrorReporter& reporter);

// The same, with the kind of the elements, which have to be numbers of the five that travel.
[[nodiscard]] HRESULT CheckNumberArray(SAFEARRAY* array, IIoErrorReporter& reporter,
                                       ElementKind* kind);

// The kind of such elements; nothing for any other type.
[[nodiscard]] std::optional<ElementKind> NumberKind(VARTYPE type);

// Of a one-dimensional array.
[[nodiscard]] inline std::uint32_t VectorLength(const SAFEARRAY* array) {
    return array->rgsabound[0].cElements;
}
[[nodiscard]] inline BYTE* ArrayBytes(SAFEARRAY* array) {
    return static_cast<BYTE*>(array->pvData);
}

// Changes the number of elements of a zero-based, one-dimensional array.
[[nodiscard]] HRESULT ResizeVector(SAFEARRAY* array, std::uint32_t elements);

}  // namespace kestrion
