// One signature for the getters and setters of all properties. The generated tables use it.
#pragma once

#include <string>

#include "tests/system/property.h"

namespace kestrion {

inline PropertyValue ToPropertyValue(double value) {
    return value;
}
inline PropertyValue ToPropertyValue(VARIANT_BOOL value) {
    return value != VARIANT_FALSE;
}
template <typename Number>
PropertyValue ToPropertyValue(Number value) {
    return static_cast<LONG>(value);
}

// What a setter is given.
template <typename T>
struct PropertyArgument {
    explicit PropertyArgument(const PropertyValue& given)
        : value(static_cast<T>(std::get<LONG>(given))) {}
    T Get() const { return value; }
    T value;
};

template <>
struct PropertyArgument<double> {
    explicit PropertyArgument(const PropertyValue& given) : value(std::get<double>(given)) {}
    double Get() const { return value; }
    double value;
};

template <>
struct PropertyArgument<VARIANT_BOOL> {
    explicit PropertyArgument(const PropertyValue& given)
        : value(ToVariantBool(std::get<bool>(given))) {}
    VARIANT_BOOL Get() const { return value; }
    VARIANT_BOOL value;
};

template <>
struct PropertyArgument<BSTR> {
    explicit PropertyArgument(const PropertyValue& given)
        : value(std::string_view(std::get<std::string>(given))) {}
    BSTR Get() const { return value.Get(); }
    BstrPtr value;
};

// What a getter stores to.
template <typename T>
struct PropertySlot {
    T value{};
    T* Out() { return &value; }
    PropertyValue Get() const { return ToPropertyValue(value); }
};

template <>
struct PropertySlot<BSTR> {
    BstrPtr value;
    BSTR* Out() { return value.Out(); }
    PropertyValue Get() const { return value.Utf8(); }
};

// Calls a member of another face of the object. E_NOINTERFACE without one.
template <typename Interface>
HRESULT CallFace(IUnknown& object, auto call) {
    const auto face = Query<Interface>(&object);
    return face ? call(*face) : E_NOINTERFACE;
}

template <auto entry>
struct Getter;

template <typename I, typename T, HRESULT (STDMETHODCALLTYPE I::*entry)(T*)>
struct Getter<entry> {
    static HRESULT Call(IUnknown& object, LONG /*index*/, PropertyValue& value) {
        PropertySlot<T> slot;
        const HRESULT status =
            CallFace<I>(object, [&](I& face) { return (face.*entry)(slot.Out()); });
        value = slot.Get();
        return status;
    }
};

template <typename I, typename Index, typename T, HRESULT (STDMETHODCALLTYPE I::*entry)(Index, T*)>
struct Getter<entry> {
    static HRESULT Call(IUnknown& object, LONG index, PropertyValue& value) {
        PropertySlot<T> slot;
        const HRESULT status = CallFace<I>(
            object, [&](I& face) { return (face.*entry)(static_cast<Index>(index), slot.Out()); });
        value = slot.Get();
        return status;
    }
};

template <auto entry>
struct Setter;

template <typename I, typename T, HRESULT (STDMETHODCALLTYPE I::*entry)(T)>
struct Setter<entry> {
    static HRESULT Call(IUnknown& object, LONG /*index*/, const PropertyValue& value) {
        const PropertyArgument<T> argument(value);
        return CallFace<I>(object, [&](I& face) { return (face.*entry)(argument.Get()); });
    }
};

template <typename I, typename Index, typename T, HRESULT (STDMETHODCALLTYPE I::*entry)(Index, T)>
struct Setter<entry> {
    static HRESULT Call(IUnknown& object, LONG index, const PropertyValue& value) {
        const PropertyArgument<T> argument(value);
        return CallFace<I>(object, [&](I& face) {
            return (face.*entry)(static_cast<Index>(index), argument.Get());
        });
    }
};

template <typename Collection, typename Item>
ComPtr<IUnknown> FindInstance(IUnknown& root, std::string_view name) {
    const BstrPtr text(name);
    ComPtr<Item> item;
    if (Query<Collection>(&root)->get_Item(text.Get(), item.Out()) != S_OK) {
        return {};
    }
    return Query<IUnknown>(item.Get());
}

}  // namespace kestrion
