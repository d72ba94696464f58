// Variants: a value with its type.
#pragma once

#include <utility>

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

// Flags of VariantChangeType.
inline constexpr USHORT VARIANT_ALPHABOOL = 0x02;  // a Boolean becomes "True" or "False"

// Changes a value to another type; the two may be the same variant. A failure leaves the target as
// it was. Numbers, Booleans, texts and VT_EMPTY change into one another: a real number is rounded
// to the nearest integer and to the even one of two; a number other than 0 is true, and true is -1;
// VT_EMPTY is 0, false and an empty text; a text has to be the whole of a number in the "C" locale,
// or one of "True" and "False" in any case for a Boolean. DISP_E_OVERFLOW where the new type can't
// hold the value, DISP_E_TYPEMISMATCH for any other change, VT_UI8 among them. A value of the type
// already is copied. (The published rules of the function, without the locale's.)
KESTRION_API HRESULT VariantChangeType(VARIANT* target, const VARIANT* source, USHORT flags,
                                       VARTYPE type);
#endif

namespace kestrion {

// Owns a variant; VT_EMPTY at first.
class VariantPtr {
  public:
    VariantPtr() { VariantInit(&value_); }
    VariantPtr(VariantPtr&& other) noexcept : value_(other.value_) { VariantInit(&other.value_); }
    VariantPtr& operator=(VariantPtr&& other) noexcept {
        std::swap(value_, other.value_);
        return *this;
    }
    ~VariantPtr() { (void)VariantClear(&value_); }

    [[nodiscard]] const VARIANT& operator*() const { return value_; }
    [[nodiscard]] const VARIANT* operator->() const { return &value_; }
    [[nodiscard]] const VARIANT* Get() const { return &value_; }
    // For an out parameter: clears what is held first.
    [[nodiscard]] VARIANT* Out() {
        (void)VariantClear(&value_);
        return &value_;
    }

  private:
    VARIANT value_;
};

}  // namespace kestrion
