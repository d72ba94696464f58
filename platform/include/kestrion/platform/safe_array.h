// Self-describing arrays: the array form of the object interfaces.
#pragma once

#include <span>
#include <utility>

#include "kestrion/platform/types.h"

#if !defined(_WIN32)
using VARTYPE = USHORT;
// Published element kinds and flags.
inline constexpr VARTYPE VT_EMPTY = 0;
inline constexpr VARTYPE VT_NULL = 1;
inline constexpr VARTYPE VT_I2 = 2;
inline constexpr VARTYPE VT_I4 = 3;
inline constexpr VARTYPE VT_R4 = 4;
inline constexpr VARTYPE VT_R8 = 5;
inline constexpr VARTYPE VT_BSTR = 8;
inline constexpr VARTYPE VT_DISPATCH = 9;
inline constexpr VARTYPE VT_BOOL = 11;
inline constexpr VARTYPE VT_VARIANT = 12;
inline constexpr VARTYPE VT_UNKNOWN = 13;
inline constexpr VARTYPE VT_I1 = 16;
inline constexpr VARTYPE VT_UI1 = 17;
inline constexpr VARTYPE VT_UI2 = 18;
inline constexpr VARTYPE VT_UI4 = 19;
inline constexpr VARTYPE VT_I8 = 20;
inline constexpr VARTYPE VT_UI8 = 21;
inline constexpr VARTYPE VT_ARRAY = 0x2000;
inline constexpr VARTYPE VT_BYREF = 0x4000;

struct SAFEARRAYBOUND {
    ULONG cElements;
    LONG lLbound;
};

// An array of one or two dimensions. Its fields belong to the functions below, except that `pvData`
// is the storage of the elements, the first index varying fastest. `rgsabound` is as published:
// the last dimension stands first.
struct SAFEARRAY {
    USHORT cDims;
    USHORT fFeatures;
    ULONG cbElements;
    ULONG cLocks;
    void* pvData;
    SAFEARRAYBOUND rgsabound[2];
    VARTYPE elementType;
};

// Creates a zeroed array with the bounds given, the first dimension first. Null when the kind is
// unknown, the number of dimensions isn't 1 or 2, or memory runs out. The caller owns it.
KESTRION_API [[nodiscard]] SAFEARRAY* SafeArrayCreate(VARTYPE type, UINT dimensions,
                                                      const SAFEARRAYBOUND* bounds);
KESTRION_API [[nodiscard]] SAFEARRAY* SafeArrayCreateVector(VARTYPE type, LONG lowerBound,
                                                            ULONG elements);
// Frees the array and the texts in it. Null is accepted; a locked array gives
// DISP_E_ARRAYISLOCKED and stays.
KESTRION_API HRESULT SafeArrayDestroy(SAFEARRAY* array);
KESTRION_API [[nodiscard]] UINT SafeArrayGetDim(SAFEARRAY* array);
// `dimension` counts from 1; others give DISP_E_BADINDEX.
KESTRION_API HRESULT SafeArrayGetLBound(SAFEARRAY* array, UINT dimension, LONG* bound);
KESTRION_API HRESULT SafeArrayGetUBound(SAFEARRAY* array, UINT dimension, LONG* bound);
KESTRION_API HRESULT SafeArrayGetVartype(SAFEARRAY* array, VARTYPE* type);
// Locks the array and gives its storage, until SafeArrayUnaccessData.
KESTRION_API HRESULT SafeArrayAccessData(SAFEARRAY* array, void** data);
KESTRION_API HRESULT SafeArrayUnaccessData(SAFEARRAY* array);
KESTRION_API HRESULT SafeArrayLock(SAFEARRAY* array);
KESTRION_API HRESULT SafeArrayUnlock(SAFEARRAY* array);
// One element by its indices, the first dimension first; texts are copied. DISP_E_BADINDEX.
KESTRION_API HRESULT SafeArrayPutElement(SAFEARRAY* array, const LONG* indices, const void* value);
KESTRION_API HRESULT SafeArrayGetElement(SAFEARRAY* array, const LONG* indices, void* value);
// Changes the size of the last dimension; new elements are zero, lost texts are freed.
KESTRION_API HRESULT SafeArrayRedim(SAFEARRAY* array, const SAFEARRAYBOUND* lastBound);
#endif

namespace kestrion {

// The element kind of a C++ type.
template <typename T>
inline constexpr VARTYPE kVartype = VT_EMPTY;
template <>
inline constexpr VARTYPE kVartype<BYTE> = VT_UI1;
template <>
inline constexpr VARTYPE kVartype<SHORT> = VT_I2;
template <>
inline constexpr VARTYPE kVartype<LONG> = VT_I4;
template <>
inline constexpr VARTYPE kVartype<LONGLONG> = VT_I8;
template <>
inline constexpr VARTYPE kVartype<FLOAT> = VT_R4;
template <>
inline constexpr VARTYPE kVartype<DOUBLE> = VT_R8;
template <>
inline constexpr VARTYPE kVartype<BSTR> = VT_BSTR;

// Owns an array.
class SafeArrayPtr {
  public:
    SafeArrayPtr() = default;
    explicit SafeArrayPtr(SAFEARRAY* array) : array_(array) {}
    SafeArrayPtr(SafeArrayPtr&& other) noexcept : array_(other.Detach()) {}
    SafeArrayPtr& operator=(SafeArrayPtr&& other) noexcept {
        std::swap(array_, other.array_);
        return *this;
    }
    ~SafeArrayPtr() { (void)SafeArrayDestroy(array_); }

    [[nodiscard]] SAFEARRAY* Get() const { return array_; }
    [[nodiscard]] SAFEARRAY* Detach() { return std::exchange(array_, nullptr); }
    [[nodiscard]] SAFEARRAY** Out() {
        (void)SafeArrayDestroy(Detach());
        return &array_;
    }
    explicit operator bool() const { return array_ != nullptr; }

    // The elements of a one-dimensional array of this very kind; empty for anything else.
    // The view lives as long as the array and isn't counted as a lock.
    template <typename T>
    [[nodiscard]] std::span<T> Elements() const {
        VARTYPE type = VT_EMPTY;
        if (array_ == nullptr || SafeArrayGetDim(array_) != 1 ||
            Failed(SafeArrayGetVartype(array_, &type)) || type != kVartype<T>) {
            return {};
        }
        return {static_cast<T*>(array_->pvData), array_->rgsabound[0].cElements};
    }

  private:
    SAFEARRAY* array_ = nullptr;
};

}  // namespace kestrion
