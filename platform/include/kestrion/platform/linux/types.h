// Component object types where the system has none. Names, sizes and values are those of the
// published binary standard, so that callers written for either system compile unchanged.
#pragma once

#include <compare>
#include <cstdint>

using HRESULT = std::int32_t;
using BYTE = std::uint8_t;
using SHORT = std::int16_t;
using LONG = std::int32_t;
using LONGLONG = std::int64_t;
using ULONG = std::uint32_t;
using USHORT = std::uint16_t;
using DWORD = std::uint32_t;
using FLOAT = float;
using DOUBLE = double;
using UINT = std::uint32_t;

// -1 is true and 0 is false.
using VARIANT_BOOL = std::int16_t;
inline constexpr VARIANT_BOOL VARIANT_TRUE = -1;
inline constexpr VARIANT_BOOL VARIANT_FALSE = 0;

// One UTF-16 unit. BSTR is a length-prefixed text: see bstr.h.
using OLECHAR = char16_t;
using BSTR = OLECHAR*;

struct GUID {
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    std::uint8_t Data4[8];

    friend constexpr bool operator==(const GUID& a, const GUID& b) = default;
};
using IID = GUID;
using CLSID = GUID;
using REFIID = const GUID&;
using REFGUID = const GUID&;
using REFCLSID = const GUID&;

// The calling convention of interface members; there is one only on this system.
#define STDMETHODCALLTYPE

// Marks what the driver library exports; everything else in it is hidden.
#define KESTRION_API [[gnu::visibility("default")]]

inline constexpr HRESULT S_OK = 0;
inline constexpr HRESULT S_FALSE = 1;
inline constexpr HRESULT E_NOTIMPL = static_cast<HRESULT>(0x80004001U);
inline constexpr HRESULT E_NOINTERFACE = static_cast<HRESULT>(0x80004002U);
inline constexpr HRESULT E_POINTER = static_cast<HRESULT>(0x80004003U);
inline constexpr HRESULT E_FAIL = static_cast<HRESULT>(0x80004005U);
inline constexpr HRESULT E_UNEXPECTED = static_cast<HRESULT>(0x8000FFFFU);
inline constexpr HRESULT E_OUTOFMEMORY = static_cast<HRESULT>(0x8007000EU);
inline constexpr HRESULT E_INVALIDARG = static_cast<HRESULT>(0x80070057U);
inline constexpr HRESULT DISP_E_TYPEMISMATCH = static_cast<HRESULT>(0x80020005U);
inline constexpr HRESULT DISP_E_EXCEPTION = static_cast<HRESULT>(0x80020009U);
inline constexpr HRESULT DISP_E_OVERFLOW = static_cast<HRESULT>(0x8002000AU);
inline constexpr HRESULT DISP_E_BADINDEX = static_cast<HRESULT>(0x8002000BU);
inline constexpr HRESULT DISP_E_ARRAYISLOCKED = static_cast<HRESULT>(0x8002000DU);
inline constexpr HRESULT CLASS_E_NOAGGREGATION = static_cast<HRESULT>(0x80040110U);
inline constexpr HRESULT CLASS_E_CLASSNOTAVAILABLE = static_cast<HRESULT>(0x80040111U);
