#include "kestrion/platform/variant.h"

#include <cstring>

namespace {

HRESULT CopyArray(SAFEARRAY* source, SAFEARRAY** copy) {
    *copy = nullptr;
    if (source == nullptr) {
        return S_OK;
    }
    // Bounds are asked for and given first dimension first; they are stored the other way round.
    SAFEARRAYBOUND bounds[2]{};
    for (USHORT d = 0; d < source->cDims; ++d) {
        bounds[d] = source->rgsabound[source->cDims - 1 - d];
    }
    SAFEARRAY* made = SafeArrayCreate(source->elementType, source->cDims, bounds);
    if (made == nullptr) {
        return E_OUTOFMEMORY;
    }
    LONG indices[2]{};
    const ULONG outer = source->cDims == 2 ? bounds[1].cElements : 1;
    for (ULONG second = 0; second < outer; ++second) {
        for (ULONG first = 0; first < bounds[0].cElements; ++first) {
            indices[0] = bounds[0].lLbound + static_cast<LONG>(first);
            indices[1] = bounds[1].lLbound + static_cast<LONG>(second);
            // The new element is all zero, so the copy may be made in its place.
            auto* place = static_cast<BYTE*>(made->pvData) +
                          (std::size_t{second} * bounds[0].cElements + first) * made->cbElements;
            if (const HRESULT status = SafeArrayGetElement(source, indices, place); status < 0) {
                (void)SafeArrayDestroy(made);
                return status;
            }
        }
    }
    *copy = made;
    return S_OK;
}

}  // namespace

void VariantInit(VARIANT* value) {
    std::memset(value, 0, sizeof(*value));
}

HRESULT VariantClear(VARIANT* value) {
    if (value == nullptr) {
        return E_INVALIDARG;
    }
    if ((value->vt & VT_BYREF) == 0) {
        if ((value->vt & VT_ARRAY) != 0) {
            if (const HRESULT status = SafeArrayDestroy(value->parray); status < 0) {
                return status;
            }
        } else if (value->vt == VT_BSTR) {
            SysFreeString(value->bstrVal);
        } else if ((value->vt == VT_UNKNOWN || value->vt == VT_DISPATCH) &&
                   value->punkVal != nullptr) {
            value->punkVal->Release();
        }
    }
    VariantInit(value);
    return S_OK;
}

HRESULT VariantCopy(VARIANT* target, const VARIANT* source) {
    if (target == nullptr || source == nullptr) {
        return E_INVALIDARG;
    }
    if (target == source) {
        return S_OK;
    }
    VARIANT copy = *source;
    if ((source->vt & VT_BYREF) == 0) {
        if ((source->vt & VT_ARRAY) != 0) {
            if (const HRESULT status = CopyArray(source->parray, &copy.parray); status < 0) {
                return status;
            }
        } else if (source->vt == VT_BSTR && source->bstrVal != nullptr) {
            copy.bstrVal = SysAllocStringByteLen(reinterpret_cast<const char*>(source->bstrVal),
                                                 SysStringByteLen(source->bstrVal));
            if (copy.bstrVal == nullptr) {
                return E_OUTOFMEMORY;
            }
        } else if ((source->vt == VT_UNKNOWN || source->vt == VT_DISPATCH) &&
                   source->punkVal != nullptr) {
            source->punkVal->AddRef();
        }
    }
    const HRESULT status = VariantClear(target);
    if (status < 0) {
        (void)VariantClear(&copy);
        return status;
    }
    *target = copy;
    return S_OK;
}
