#include "io/format_array.h"

#include <algorithm>
#include <utility>

namespace kestrion {

HRESULT CheckFormatArray(SAFEARRAY* array, FormatElement kind) {
    LONG lower = 0;
    VARTYPE type = VT_EMPTY;
    const bool fits = SafeArrayGetDim(array) == 1 &&
                      Succeeded(SafeArrayGetLBound(array, 1, &lower)) && lower == 0 &&
                      Succeeded(SafeArrayGetVartype(array, &type)) && FormatElementFits(kind, type);
    return fits ? S_OK : E_INVALIDARG;
}

HRESULT CheckFormatArrayTarget(SAFEARRAY** array, FormatElement kind) {
    if (array == nullptr) {
        return E_INVALIDARG;
    }
    if (*array == nullptr) {
        return S_OK;
    }
    LONG lower = 0;
    VARTYPE type = VT_EMPTY;
    const bool fits = SafeArrayGetDim(*array) == 1 &&
                      Succeeded(SafeArrayGetLBound(*array, 1, &lower)) && lower == 0 &&
                      Succeeded(SafeArrayGetVartype(*array, &type)) &&
                      (kind != FormatElement::kText || type == VT_BSTR);
    return fits ? S_OK : E_INVALIDARG;
}

HRESULT ReplaceArray(SAFEARRAY** array, SafeArrayPtr& replacement) {
    if (const HRESULT status = SafeArrayDestroy(*array); Failed(status)) {
        return status;
    }
    *array = replacement.Detach();
    return S_OK;
}

HRESULT FormatArraySource::Take(const FormatConversion& conversion, std::int64_t wanted,
                                FormatElement kind, ArgCursor& args) {
    if (conversion.variantArray) {
        return Open(args.Next().Pointer<SAFEARRAY>(), wanted, kind);
    }
    if (wanted < 0) {
        return E_UNEXPECTED;
    }
    data_ = args.Next().Pointer<const BYTE>();
    count_ = static_cast<std::size_t>(wanted);
    return data_ == nullptr ? E_INVALIDARG : S_OK;
}

HRESULT FormatArraySource::Open(SAFEARRAY* array, std::int64_t wanted, FormatElement kind) {
    if (array == nullptr) {
        return E_INVALIDARG;
    }
    if (const HRESULT status = CheckFormatArray(array, kind); Failed(status)) {
        return status;
    }
    LONG upper = -1;
    if (const HRESULT status = SafeArrayGetUBound(array, 1, &upper); Failed(status)) {
        return status;
    }
    void* data = nullptr;
    if (const HRESULT status = SafeArrayAccessData(array, &data); Failed(status)) {
        return status;
    }
    locked_ = array;
    data_ = static_cast<const BYTE*>(data);
    const std::int64_t size = std::int64_t{upper} + 1;
    count_ = static_cast<std::size_t>(wanted > 0 ? std::min(wanted, size) : size);
    return S_OK;
}

HRESULT FormatArraySource::Release(HRESULT status) {
    if (locked_ == nullptr) {
        return status;
    }
    const HRESULT unlocked = SafeArrayUnaccessData(std::exchange(locked_, nullptr));
    return Failed(status) ? status : unlocked;
}

}  // namespace kestrion
