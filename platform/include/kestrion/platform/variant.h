// Variants: a value with its type.
#pragma once

#include "kestrion/platform/bstr.h"
#include "kestrion/platform/safe_array.h"
#include "kestrion/platform/types.h"
#include "kestrion/platform/unknown.h"

#if !defined(_WIN32)
// A tagged value. VT_BYREF in `vt` means that the member `byref` points at a value of the type;
// VT_ARRAY that `parray` holds an array of it.
struct VARIANT {
    VARTYPE vt;
    USHORT wReserved1;
    USHORT wReserved2;
    USHORT wReserved3;
    union {
        LONGLONG llVal;
        LONG lVal;
        BYTE bVal;
        SHORT iVal;
        FLOAT fltVal;
        DOUBLE dblVal;
        VARIANT_BOOL boolVal;
        BSTR bstrVal;
        IUnknown* punkVal;
        SAFEARRAY* parray;
        void* byref;
    };
};

// Sets VT_EMPTY without freeing anything.
KESTRION_API void VariantInit(VARIANT* value);
// Frees the text, array or interface held, and sets VT_EMPTY. A by-reference value is only dropped.
KESTRION_API HRESULT VariantClear(VARIANT* value);
// Copies deeply: texts and arrays are duplicated, interfaces counted. The target is cleared first.
KESTRION_API HRESULT VariantCopy(VARIANT* target, const VARIANT* source);
#endif
