#include "io/variant_array.h"

#include <string_view>

namespace kestrion {

HRESULT CheckVariantArray(SAFEARRAY* array, std::optional<VARTYPE> expected,
                          IIoErrorReporter& reporter) {
    const auto refuse = [&reporter](std::string_view why) {
        return reporter.ReportInvalidValue("psa", "<Unknown Value>", why);
    };
    if (array == nullptr) {
        return refuse("SAFEARRAY is NULL.");
    }
    if (SafeArrayGetDim(array) != 1) {
        return refuse("SAFEARRAY is not one-dimensional.");
    }
    LONG lowerBound = 0;
    if (Failed(SafeArrayGetLBound(array, 1, &lowerBound)) || lowerBound != 0) {
        return refuse("SAFEARRAY is not zero-based.");
    }
    VARTYPE type = VT_EMPTY;
    if (expected && (Failed(SafeArrayGetVartype(array, &type)) || type != *expected)) {
        return refuse("SAFEARRAY was not of the expected type.");
    }
    return S_OK;
}

std::optional<ElementKind> NumberKind(VARTYPE type) {
    for (const ElementKind kind : {ElementKind::kByte, ElementKind::kShort, ElementKind::kLong,
                                   ElementKind::kFloat, ElementKind::kDouble}) {
        if (ElementVartype(kind) == type) {
            return kind;
        }
    }
    return std::nullopt;
}

HRESULT CheckNumberArray(SAFEARRAY* array, IIoErrorReporter& reporter, ElementKind* kind) {
    const HRESULT status = CheckVariantArray(array, std::nullopt, reporter);
    if (Failed(status)) {
        return status;
    }
    VARTYPE type = VT_EMPTY;
    (void)SafeArrayGetVartype(array, &type);
    const auto found = NumberKind(type);
    if (!found) {
        // Reported in the words of the check by type.
        return CheckVariantArray(array, VT_UI1, reporter);
    }
    *kind = *found;
    return S_OK;
}

HRESULT MakeReadArray(VARTYPE type, std::uint32_t elements, IIoErrorReporter& reporter,
                      SafeArrayPtr& array, std::string_view noMemory) {
    array = SafeArrayPtr(SafeArrayCreateVector(type, 0, elements));
    return array ? S_OK : reporter.ReportOutOfMemory(noMemory);
}

HRESULT ResizeReadArray(const SafeArrayPtr& array, std::uint32_t elements,
                        IIoErrorReporter& reporter, std::string_view noMemory) {
    const SAFEARRAYBOUND bound{elements, 0};
    const HRESULT status = SafeArrayRedim(array.Get(), &bound);
    return status == E_OUTOFMEMORY ? reporter.ReportOutOfMemory(noMemory) : status;
}

}  // namespace kestrion
