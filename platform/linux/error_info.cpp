#include "kestrion/platform/error_info.h"

#include <atomic>
#include <new>
#include <string>
#include <utility>

namespace {

// One object with both faces: filled through the one, read through the other.
class ErrorObject final : public ICreateErrorInfo, public IErrorInfo {
  public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (object == nullptr) {
            return E_POINTER;
        }
        if (iid == kestrion::kInterfaceId<ICreateErrorInfo> ||
            iid == kestrion::kInterfaceId<IUnknown>) {
            *object = static_cast<ICreateErrorInfo*>(this);
        } else if (iid == kestrion::kInterfaceId<IErrorInfo>) {
            *object = static_cast<IErrorInfo*>(this);
        } else {
            *object = nullptr;
            return E_NOINTERFACE;
        }
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++count_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --count_;
        if (left == 0) {
            delete this;
        }
        return left;
    }

    HRESULT STDMETHODCALLTYPE SetGUID(REFGUID iid) override {
        iid_ = iid;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE SetSource(const OLECHAR* source) override {
        return Store(source_, source);
    }
    HRESULT STDMETHODCALLTYPE SetDescription(const OLECHAR* description) override {
        return Store(description_, description);
    }
    HRESULT STDMETHODCALLTYPE SetHelpFile(const OLECHAR* helpFile) override {
        return Store(helpFile_, helpFile);
    }
    HRESULT STDMETHODCALLTYPE SetHelpContext(DWORD helpContext) override {
        helpContext_ = helpContext;
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE GetGUID(GUID* iid) override { return Give(iid, iid_); }
    HRESULT STDMETHODCALLTYPE GetSource(BSTR* source) override { return Give(source, source_); }
    HRESULT STDMETHODCALLTYPE GetDescription(BSTR* description) override {
        return Give(description, description_);
    }
    HRESULT STDMETHODCALLTYPE GetHelpFile(BSTR* helpFile) override {
        return Give(helpFile, helpFile_);
    }
    HRESULT STDMETHODCALLTYPE GetHelpContext(DWORD* helpContext) override {
        return Give(helpContext, helpContext_);
    }

  private:
    ~ErrorObject() = default;

    static HRESULT Store(std::u16string& field, const OLECHAR* text) {
        try {
            field = text == nullptr ? std::u16string() : std::u16string(text);
            return S_OK;
        } catch (const std::bad_alloc&) {
            return E_OUTOFMEMORY;
        }
    }
    template <typename T>
    static HRESULT Give(T* out, const T& value) {
        if (out == nullptr) {
            return E_POINTER;
        }
        *out = value;
        return S_OK;
    }
    static HRESULT Give(BSTR* out, const std::u16string& text) {
        if (out == nullptr) {
            return E_POINTER;
        }
        *out = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
        return *out == nullptr ? E_OUTOFMEMORY : S_OK;
    }

    std::atomic<ULONG> count_{1};
    GUID iid_{};
    std::u16string source_;
    std::u16string description_;
    std::u16string helpFile_;
    DWORD helpContext_ = 0;
};

// The thread's error object, released when the thread ends.
struct ThreadError {
    ThreadError() = default;
    ThreadError(const ThreadError&) = delete;
    ThreadError& operator=(const ThreadError&) = delete;
    ~ThreadError() {
        if (object != nullptr) {
            object->Release();
        }
    }
    IErrorInfo* object = nullptr;
};

thread_local ThreadError threadError;

}  // namespace

HRESULT CreateErrorInfo(ICreateErrorInfo** created) {
    if (created == nullptr) {
        return E_POINTER;
    }
    *created = new (std::nothrow) ErrorObject();
    return *created == nullptr ? E_OUTOFMEMORY : S_OK;
}

HRESULT SetErrorInfo(ULONG reserved, IErrorInfo* error) {
    if (reserved != 0) {
        return E_INVALIDARG;
    }
    if (error != nullptr) {
        error->AddRef();
    }
    IErrorInfo* former = std::exchange(threadError.object, error);
    if (former != nullptr) {
        former->Release();
    }
    return S_OK;
}

HRESULT GetErrorInfo(ULONG reserved, IErrorInfo** error) {
    if (error == nullptr || reserved != 0) {
        return error == nullptr ? E_POINTER : E_INVALIDARG;
    }
    *error = std::exchange(threadError.object, nullptr);
    return *error == nullptr ? S_FALSE : S_OK;
}
