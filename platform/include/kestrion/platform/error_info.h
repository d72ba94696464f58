// The thread's error object: the text that a person reads when a member fails.
#pragma once

#include "kestrion/platform/bstr.h"
#include "kestrion/platform/unknown.h"

#if !defined(_WIN32)
// What went wrong in the last failing call of this thread. Out texts belong to the caller.
struct IErrorInfo : IUnknown {
    // The interface whose member failed; all zero where none is known.
    virtual HRESULT STDMETHODCALLTYPE GetGUID(GUID* iid) = 0;
    // The programmatic identifier of the class that failed.
    virtual HRESULT STDMETHODCALLTYPE GetSource(BSTR* source) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetDescription(BSTR* description) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetHelpFile(BSTR* helpFile) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetHelpContext(DWORD* helpContext) = 0;

  protected:
    ~IErrorInfo() = default;
};

// Fills an error object before it is installed. Texts are copied.
struct ICreateErrorInfo : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE SetGUID(REFGUID iid) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetSource(const OLECHAR* source) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetDescription(const OLECHAR* description) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetHelpFile(const OLECHAR* helpFile) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetHelpContext(DWORD helpContext) = 0;

  protected:
    ~ICreateErrorInfo() = default;
};

// Says whether the members of an interface leave an error object: S_OK or S_FALSE.
struct ISupportErrorInfo : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) = 0;

  protected:
    ~ISupportErrorInfo() = default;
};

// A new, empty error object; E_OUTOFMEMORY.
KESTRION_API HRESULT CreateErrorInfo(ICreateErrorInfo** created);
// Installs `error` on the calling thread in place of the former one; null clears. `reserved` is 0.
KESTRION_API HRESULT SetErrorInfo(ULONG reserved, IErrorInfo* error);
// Takes the error object off the calling thread, with its count. S_FALSE and null without one.
KESTRION_API HRESULT GetErrorInfo(ULONG reserved, IErrorInfo** error);
#endif

#if !defined(_WIN32)
template <>
struct kestrion::InterfaceId<IErrorInfo> {
    static constexpr GUID value{
        0x1CF2B120, 0x547D, 0x101B, {0x8E, 0x65, 0x08, 0x00, 0x2B, 0x2B, 0xD1, 0x19}};
};
template <>
struct kestrion::InterfaceId<ICreateErrorInfo> {
    static constexpr GUID value{
        0x22F03340, 0x547D, 0x101B, {0x8E, 0x65, 0x08, 0x00, 0x2B, 0x2B, 0xD1, 0x19}};
};
template <>
struct kestrion::InterfaceId<ISupportErrorInfo> {
    static constexpr GUID value{
        0xDF0B3D60, 0x548F, 0x101B, {0x8E, 0x65, 0x08, 0x00, 0x2B, 0x2B, 0xD1, 0x19}};
};
#endif
