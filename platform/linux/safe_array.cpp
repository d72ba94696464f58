#include "kestrion/platform/safe_array.h"

#include <cstdint>
#include <cstring>
#include <limits>
#include <new>

#include "kestrion/platform/bstr.h"
#include "kestrion/platform/unknown.h"
#include "kestrion/platform/variant.h"
#include "platform/storage.h"

namespace {

// Bytes of one element; 0 for a kind that an array can't hold.
ULONG ElementSize(VARTYPE type) {
    switch (type) {
        case VT_I1:
        case VT_UI1:
            return 1;
        case VT_I2:
        case VT_UI2:
        case VT_BOOL:
            return 2;
        case VT_I4:
        case VT_UI4:
        case VT_R4:
            return 4;
        case VT_I8:
        case VT_UI8:
        case VT_R8:
            return 8;
        case VT_BSTR:
        case VT_UNKNOWN:
        case VT_DISPATCH:
            return sizeof(void*);
        case VT_VARIANT:
            return sizeof(VARIANT);
        default:
            return 0;
    }
}

std::size_t ElementCount(const SAFEARRAY& array) {
    std::size_t count = 1;
    for (USHORT d = 0; d < array.cDims; ++d) {
        count *= array.rgsabound[d].cElements;
    }
    return count;
}

BYTE* ElementAt(SAFEARRAY& array, std::size_t index) {
    return static_cast<BYTE*>(array.pvData) + index * array.cbElements;
}

void FreeElements(SAFEARRAY& array, std::size_t from, std::size_t to) {
    for (std::size_t i = from; i < to; ++i) {
        BYTE* element = ElementAt(array, i);
        if (array.elementType == VT_BSTR) {
            BSTR text = nullptr;
            std::memcpy(&text, element, sizeof(text));
            SysFreeString(text);
        } else if (array.elementType == VT_VARIANT) {
            (void)VariantClear(reinterpret_cast<VARIANT*>(element));
        } else if (array.elementType == VT_UNKNOWN || array.elementType == VT_DISPATCH) {
            IUnknown* object = nullptr;
            std::memcpy(&object, element, sizeof(object));
            if (object != nullptr) {
                object->Release();
            }
        } else {
            return;
        }
    }
}

// Copies one element with what it owns.
HRESULT CopyElement(VARTYPE type, ULONG size, void* target, const void* source) {
    if (type == VT_BSTR) {
        BSTR text = nullptr;
        std::memcpy(&text, source, sizeof(text));
        BSTR copy = nullptr;
        if (text != nullptr) {
            copy =
                SysAllocStringByteLen(reinterpret_cast<const char*>(text), SysStringByteLen(text));
            if (copy == nullptr) {
                return E_OUTOFMEMORY;
            }
        }
        std::memcpy(target, &copy, sizeof(copy));
        return S_OK;
    }
    if (type == VT_VARIANT) {
        VariantInit(static_cast<VARIANT*>(target));
        return VariantCopy(static_cast<VARIANT*>(target), static_cast<const VARIANT*>(source));
    }
    if (type == VT_UNKNOWN || type == VT_DISPATCH) {
        IUnknown* object = nullptr;
        std::memcpy(&object, source, sizeof(object));
        if (object != nullptr) {
            object->AddRef();
        }
    }
    std::memcpy(target, source, size);
    return S_OK;
}

// The published order keeps the last dimension first.
SAFEARRAYBOUND& Bound(SAFEARRAY& array, UINT dimension) {
    return array.rgsabound[array.cDims - dimension];
}

// The place of an element among all, the first index varying fastest.
bool LinearIndex(SAFEARRAY& array, const LONG* indices, std::size_t& linear) {
    std::size_t stride = 1;
    linear = 0;
    for (UINT d = 1; d <= array.cDims; ++d) {
        const SAFEARRAYBOUND& bound = Bound(array, d);
        const std::int64_t offset = std::int64_t{indices[d - 1]} - bound.lLbound;
        if (offset < 0 || offset >= std::int64_t{bound.cElements}) {
            return false;
        }
        linear += static_cast<std::size_t>(offset) * stride;
        stride *= bound.cElements;
    }
    return true;
}

std::size_t ByteCount(const SAFEARRAY& array) {
    return ElementCount(array) * array.cbElements;
}

// Null when memory runs out, or when the bytes are too many to be counted.
void* AllocateElements(std::size_t count, ULONG size, kestrion::Content content) {
    if (count > std::numeric_limits<std::size_t>::max() / size) {
        return nullptr;
    }
    return kestrion::AllocateStorage(count * size, content);
}

SAFEARRAY* Create(VARTYPE type, UINT dimensions, const SAFEARRAYBOUND* bounds,
                  kestrion::Content content) {
    const ULONG size = ElementSize(type);
    if (size == 0 || dimensions < 1 || dimensions > 2 || bounds == nullptr) {
        return nullptr;
    }
    auto* array = new (std::nothrow) SAFEARRAY{};
    if (array == nullptr) {
        return nullptr;
    }
    array->cDims = static_cast<USHORT>(dimensions);
    array->cbElements = size;
    array->elementType = type;
    for (UINT d = 1; d <= dimensions; ++d) {
        Bound(*array, d) = bounds[d - 1];
    }
    array->pvData = AllocateElements(ElementCount(*array), size, content);
    if (array->pvData == nullptr) {
        delete array;
        return nullptr;
    }
    return array;
}

// What owns nothing outside of the array.
bool IsNumber(VARTYPE type) {
    return type != VT_BSTR && type != VT_UNKNOWN && type != VT_DISPATCH && type != VT_VARIANT;
}

}  // namespace

SAFEARRAY* SafeArrayCreate(VARTYPE type, UINT dimensions, const SAFEARRAYBOUND* bounds) {
    return Create(type, dimensions, bounds, kestrion::Content::kZero);
}

SAFEARRAY* SafeArrayCreateVector(VARTYPE type, LONG lowerBound, ULONG elements) {
    const SAFEARRAYBOUND bound{elements, lowerBound};
    return SafeArrayCreate(type, 1, &bound);
}

HRESULT SafeArrayDestroy(SAFEARRAY* array) {
    if (array == nullptr) {
        return S_OK;
    }
    if (array->cLocks != 0) {
        return DISP_E_ARRAYISLOCKED;
    }
    FreeElements(*array, 0, ElementCount(*array));
    kestrion::FreeStorage(array->pvData, ByteCount(*array));
    delete array;
    return S_OK;
}

UINT SafeArrayGetDim(SAFEARRAY* array) {
    return array == nullptr ? 0 : array->cDims;
}

HRESULT SafeArrayGetLBound(SAFEARRAY* array, UINT dimension, LONG* bound) {
    if (array == nullptr || bound == nullptr) {
        return E_INVALIDARG;
    }
    if (dimension < 1 || dimension > array->cDims) {
        return DISP_E_BADINDEX;
    }
    *bound = Bound(*array, dimension).lLbound;
    return S_OK;
}

HRESULT SafeArrayGetUBound(SAFEARRAY* array, UINT dimension, LONG* bound) {
    if (array == nullptr || bound == nullptr) {
        return E_INVALIDARG;
    }
    if (dimension < 1 || dimension > array->cDims) {
        return DISP_E_BADINDEX;
    }
    const SAFEARRAYBOUND& found = Bound(*array, dimension);
    *bound = static_cast<LONG>(found.lLbound + static_cast<std::int64_t>(found.cElements) - 1);
    return S_OK;
}

HRESULT SafeArrayGetVartype(SAFEARRAY* array, VARTYPE* type) {
    if (array == nullptr || type == nullptr) {
        return E_INVALIDARG;
    }
    *type = array->elementType;
    return S_OK;
}

HRESULT SafeArrayLock(SAFEARRAY* array) {
    if (array == nullptr) {
        return E_INVALIDARG;
    }
    if (array->cLocks == std::numeric_limits<ULONG>::max()) {
        return E_UNEXPECTED;
    }
    ++array->cLocks;
    return S_OK;
}

HRESULT SafeArrayUnlock(SAFEARRAY* array) {
    if (array == nullptr) {
        return E_INVALIDARG;
    }
    if (array->cLocks == 0) {
        return E_UNEXPECTED;
    }
    --array->cLocks;
    return S_OK;
}

HRESULT SafeArrayAccessData(SAFEARRAY* array, void** data) {
    if (data == nullptr) {
        return E_INVALIDARG;
    }
    *data = nullptr;
    const HRESULT status = SafeArrayLock(array);
    if (status >= 0) {
        *data = array->pvData;
    }
    return status;
}

HRESULT SafeArrayUnaccessData(SAFEARRAY* array) {
    return SafeArrayUnlock(array);
}

HRESULT SafeArrayPutElement(SAFEARRAY* array, const LONG* indices, const void* value) {
    if (array == nullptr || indices == nullptr) {
        return E_INVALIDARG;
    }
    std::size_t linear = 0;
    if (!LinearIndex(*array, indices, linear)) {
        return DISP_E_BADINDEX;
    }
    // Pointer kinds are passed as the pointer itself, as published.
    const bool isPointer = array->elementType == VT_BSTR || array->elementType == VT_UNKNOWN ||
                           array->elementType == VT_DISPATCH;
    if (!isPointer && value == nullptr) {
        return E_INVALIDARG;
    }
    VARIANT copy{};
    const void* source = isPointer ? static_cast<const void*>(&value) : value;
    const HRESULT status = CopyElement(array->elementType, array->cbElements, &copy, source);
    if (status < 0) {
        return status;
    }
    FreeElements(*array, linear, linear + 1);
    std::memcpy(ElementAt(*array, linear), &copy, array->cbElements);
    return S_OK;
}

HRESULT SafeArrayGetElement(SAFEARRAY* array, const LONG* indices, void* value) {
    if (array == nullptr || indices == nullptr || value == nullptr) {
        return E_INVALIDARG;
    }
    std::size_t linear = 0;
    if (!LinearIndex(*array, indices, linear)) {
        return DISP_E_BADINDEX;
    }
    return CopyElement(array->elementType, array->cbElements, value, ElementAt(*array, linear));
}

HRESULT SafeArrayRedim(SAFEARRAY* array, const SAFEARRAYBOUND* lastBound) {
    if (array == nullptr || lastBound == nullptr) {
        return E_INVALIDARG;
    }
    if (array->cLocks != 0) {
        return DISP_E_ARRAYISLOCKED;
    }
    const std::size_t before = ElementCount(*array);
    const std::size_t other = array->cDims == 2 ? Bound(*array, 1).cElements : 1;
    const std::size_t after = other * lastBound->cElements;
    void* storage = AllocateElements(after, array->cbElements, kestrion::Content::kZero);
    if (storage == nullptr) {
        return E_OUTOFMEMORY;
    }
    // The first index varies fastest, so a change of the last dimension keeps every place.
    const std::size_t kept = before < after ? before : after;
    std::memcpy(storage, array->pvData, kept * array->cbElements);
    FreeElements(*array, kept, before);
    kestrion::FreeStorage(array->pvData, ByteCount(*array));
    array->pvData = storage;
    Bound(*array, array->cDims) = *lastBound;
    return S_OK;
}

namespace kestrion {

SAFEARRAY* CreateVectorToFill(VARTYPE type, ULONG elements) {
    const SAFEARRAYBOUND bound{elements, 0};
    return IsNumber(type) ? Create(type, 1, &bound, Content::kUndefined) : nullptr;
}

}  // namespace kestrion
