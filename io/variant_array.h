// One-dimensional variant arrays, as the typed operations take and make them.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

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

// What a read that has no memory for its array is reported with.
inline constexpr std::string_view kNoArrayMemory = "Could not allocate SAFEARRAY memory for Read.";

// A new one-dimensional, zero-based array for what is read. Without memory, `noMemory` is reported.
[[nodiscard]] HRESULT MakeReadArray(VARTYPE type, std::uint32_t elements,
                                    IIoErrorReporter& reporter, SafeArrayPtr& array,
                                    std::string_view noMemory = kNoArrayMemory);

// Changes the number of elements of such an array, as it is found out. Reports as above.
[[nodiscard]] HRESULT ResizeReadArray(const SafeArrayPtr& array, std::uint32_t elements,
                                      IIoErrorReporter& reporter,
                                      std::string_view noMemory = kNoArrayMemory);

}  // namespace kestrion
