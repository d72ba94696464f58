// IUnknown, the base of every interface, and the counted pointer over it.
#pragma once

#include <utility>

#include "kestrion/platform/types.h"

namespace kestrion {

// The interface id of an interface type. Each interface's header gives a specialisation with a
// constant `value`.
template <typename Interface>
struct InterfaceId;

template <typename Interface>
inline constexpr GUID kInterfaceId = InterfaceId<Interface>::value;

}  // namespace kestrion

#if !defined(_WIN32)
// Identity and life time of an object. QueryInterface gives a counted pointer in `object`, or null
// with E_NOINTERFACE; a null `object` gives E_POINTER. AddRef and Release return the new count,
// which is for diagnosis only. All three may be called from any thread.
struct IUnknown {
    virtual HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) = 0;
    virtual ULONG STDMETHODCALLTYPE AddRef() = 0;
    virtual ULONG STDMETHODCALLTYPE Release() = 0;

  protected:
    // Life time is by count; nothing outside the object deletes it.
    ~IUnknown() = default;
};
#endif

template <>
struct kestrion::InterfaceId<IUnknown> {
    static constexpr GUID value{
        0x00000000, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};
};

namespace kestrion {

// Owns one count on an interface.
template <typename Interface>
class ComPtr {
  public:
    ComPtr() = default;
    // Shares: adds a count of its own.
    explicit ComPtr(Interface* pointer) : pointer_(pointer) {
        if (pointer_ != nullptr) {
            pointer_->AddRef();
        }
    }
    ComPtr(const ComPtr& other) : ComPtr(other.pointer_) {}
    ComPtr(ComPtr&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
    ComPtr& operator=(ComPtr other) noexcept {
        std::swap(pointer_, other.pointer_);
        return *this;
    }
    ~ComPtr() {
        if (pointer_ != nullptr) {
            pointer_->Release();
        }
    }

    // Takes over a count that the caller holds.
    [[nodiscard]] static ComPtr Attach(Interface* pointer) {
        ComPtr result;
        result.pointer_ = pointer;
        return result;
    }

    // Gives the count to the caller.
    [[nodiscard]] Interface* Detach() { return std::exchange(pointer_, nullptr); }

    // For an out parameter: drops what is held and gives the place to store a counted pointer.
    [[nodiscard]] Interface** Out() {
        *this = ComPtr();
        return &pointer_;
    }

    [[nodiscard]] Interface* Get() const { return pointer_; }
    Interface* operator->() const { return pointer_; }
    Interface& operator*() const { return *pointer_; }
    explicit operator bool() const { return pointer_ != nullptr; }

  private:
    Interface* pointer_ = nullptr;
};

// Asks `source` for `Interface`; a null `source` or an interface that it lacks gives a null
// pointer.
template <typename Interface, typename Source>
[[nodiscard]] ComPtr<Interface> Query(Source* source) {
    void* found = nullptr;
    if (source == nullptr || Failed(source->QueryInterface(kInterfaceId<Interface>, &found))) {
        return {};
    }
    return ComPtr<Interface>::Attach(static_cast<Interface*>(found));
}

}  // namespace kestrion
