// The call frame: what every member of every interface does around its body, in one fixed order.
//
//  1 lock the object                      8 refuse a model that lacks the member
//  2 the member's constant descriptor     9 answer a class attribute from memory in simulation
//  3 push the call context               10 run the body
//  4 test the connection                 11   which formats the member's template first
//  5 clear the thread's error object     12 end the trace
//  6 check and zero the out parameters   13 pop the call context
//  7 begin the trace                     14 unlock the object
//
// The generated faces call the templates below; they are thin over RunMember, where the order is.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string_view>
#include <type_traits>

#include "core/function_ref.h"
#include "core/member_call.h"
#include "core/method_descriptor.h"
#include "core/node.h"
#include "core/parameter.h"
#include "core/repeated_capabilities.h"
#include "io/args.h"

namespace kestrion {

using MemberBody = FunctionRef<HRESULT(MemberCall&)>;

// How simulation reads or stores the attribute of a member.
using SimulatedBody = FunctionRef<void(CNode&)>;

// Runs one member. `parameters` are in the order of the interface; an out parameter whose pointer
// is null ends the call with a report. Exceptions become the status that they carry. Any thread may
// call; a null `simulated` stands for a member without a simulated form.
HRESULT RunMember(CNode& node, const MethodDescriptor& method,
                  std::span<ParameterRecord> parameters, MemberBody body,
                  const SimulatedBody* simulated = nullptr);

// The arguments of a template, packed.
template <typename... T>
[[nodiscard]] std::array<ArgSlot, sizeof...(T)> Arguments(T... values) {
    return PackArgs(values...);
}

namespace frame {

// The selector of a property's template and, behind it, the value to set.
class PropertyArguments {
  public:
    PropertyArguments(const CNode& node, Selector selector);
    void Add(ArgSlot value) { slots_[count_++] = value; }
    [[nodiscard]] std::span<const ArgSlot> Slots() const { return {slots_.data(), count_}; }

  private:
    std::array<ArgSlot, 2> slots_{};
    std::size_t count_ = 0;
};

// The type that the cache keeps a value of type T in: enumerations are kept as numbers.
template <typename T>
using CachedType = std::conditional_t<std::is_enum_v<T>, LONG, T>;

template <typename T>
void ReadCached(CNode& node, std::string_view key, T* value) {
    CachedType<T> stored{};
    if (node.GetCacheEntry<CachedType<T>>(key).Read(&stored)) {
        *value = static_cast<T>(stored);
    }
}

template <typename T>
void StoreCached(CNode& node, std::string_view key, T value) {
    auto& entry = node.GetCacheEntry<CachedType<T>>(key);
    entry.Store(static_cast<CachedType<T>>(value));
    entry.Validate();
}

template <typename T>
HRESULT RunGetter(CNode& node, const MethodDescriptor& method, T* val, MemberBody body) {
    auto parameters = Parameters(Out("val", val));
    if constexpr (std::is_pointer_v<T> && !std::is_same_v<T, BSTR>) {
        return RunMember(node, method, parameters, body);
    } else {
        const auto read = [&](CNode& object) { ReadCached(object, method.fullName, val); };
        const SimulatedBody simulated(read);
        return RunMember(node, method, parameters, body, &simulated);
    }
}

template <typename T>
HRESULT RunSetter(CNode& node, const MethodDescriptor& method, T val, MemberBody body) {
    auto parameters = Parameters(In("val", val));
    const auto store = [&](CNode& object) { StoreCached(object, method.fullName, val); };
    const SimulatedBody simulated(store);
    return RunMember(node, method, parameters, body, &simulated);
}

}  // namespace frame

// A property's getter: its query, and by default the reply by the member's format.
template <typename T>
HRESULT Get(CNode& node, const MethodDescriptor& method, T* val) {
    return frame::RunGetter(node, method, val, [&](MemberCall& call) {
        const frame::PropertyArguments arguments(node, method.selector);
        return call.RunCommand(arguments.Slots(),
                               [&] { return call.QueryFormatted(kKeepTimeout, val); });
    });
}

template <typename T>
HRESULT Get(CNode& node, const MethodDescriptor& method, T* val, HRESULT (*hook)(MemberCall&, T*)) {
    return frame::RunGetter(node, method, val, [&](MemberCall& call) {
        const frame::PropertyArguments arguments(node, method.selector);
        return call.RunCommand(arguments.Slots(), [&] { return hook(call, val); });
    });
}

// A property's setter: its set line with the value, and by default the line sent as it is.
template <typename T>
HRESULT Put(CNode& node, const MethodDescriptor& method, T val) {
    return frame::RunSetter(node, method, val, [&](MemberCall& call) {
        frame::PropertyArguments arguments(node, method.selector);
        arguments.Add(val);
        return call.RunCommand(arguments.Slots(), [&] { return call.SendCommand(); });
    });
}

template <typename T>
HRESULT Put(CNode& node, const MethodDescriptor& method, T val, HRESULT (*hook)(MemberCall&, T)) {
    return frame::RunSetter(node, method, val, [&](MemberCall& call) {
        frame::PropertyArguments arguments(node, method.selector);
        arguments.Add(val);
        return call.RunCommand(arguments.Slots(), [&] { return hook(call, val); });
    });
}

// A property that is another interface of the same object.
template <typename Interface>
HRESULT GetReference(CNode& node, const MethodDescriptor& method, Interface** val) {
    return frame::RunGetter(node, method, val, [&](MemberCall&) {
        void* found = nullptr;
        const HRESULT status = node.QueryInterface(kInterfaceId<Interface>, &found);
        *val = static_cast<Interface*>(found);
        return status;
    });
}

// A property that stands for one of another interface of the same object.
template <typename Interface, typename T, typename Target>
HRESULT GetMapped(CNode& node, const MethodDescriptor& method, T* val,
                  HRESULT (Interface::*getter)(Target*)) {
    return frame::RunGetter(node, method, val, [&](MemberCall& call) {
        Target value{};
        const HRESULT status = (call.As<Interface>().*getter)(&value);
        if (Succeeded(status)) {
            *val = static_cast<T>(value);
        }
        return status;
    });
}

template <typename Interface, typename T, typename Target>
HRESULT PutMapped(CNode& node, const MethodDescriptor& method, T val,
                  HRESULT (Interface::*setter)(Target)) {
    return frame::RunSetter(node, method, val, [&](MemberCall& call) {
        return (call.As<Interface>().*setter)(static_cast<Target>(val));
    });
}

// A method with a body of its own.
template <std::size_t N, typename Body>
HRESULT Call(CNode& node, const MethodDescriptor& method, std::array<ParameterRecord, N> parameters,
             const Body& body) {
    return RunMember(node, method, parameters, body);
}

// A method that is one set line.
template <std::size_t N, std::size_t A>
HRESULT CallCommand(CNode& node, const MethodDescriptor& method,
                    std::array<ParameterRecord, N> parameters,
                    const std::array<ArgSlot, A>& arguments) {
    return RunMember(node, method, parameters, [&](MemberCall& call) {
        return call.RunCommand(arguments, [&] { return call.SendCommand(); });
    });
}

template <std::size_t N, std::size_t A, typename Hook>
HRESULT CallCommand(CNode& node, const MethodDescriptor& method,
                    std::array<ParameterRecord, N> parameters,
                    const std::array<ArgSlot, A>& arguments, const Hook& hook) {
    return RunMember(node, method, parameters, [&](MemberCall& call) {
        return call.RunCommand(arguments, [&] { return hook(call); });
    });
}

// A method that is one query, whose reply goes to `targets`.
template <std::size_t N, std::size_t A, std::size_t R>
HRESULT CallQuery(CNode& node, const MethodDescriptor& method,
                  std::array<ParameterRecord, N> parameters,
                  const std::array<ArgSlot, A>& arguments, const std::array<ArgSlot, R>& targets) {
    return RunMember(node, method, parameters, [&](MemberCall& call) {
        return call.RunCommand(
            arguments, [&] { return call.QueryFormatted(kKeepTimeout, std::span(targets)); });
    });
}

// The three members of a collection over the instances of `className`.
inline HRESULT CollectionCount(CNode& node, const MethodDescriptor& method,
                               std::string_view className, LONG* val) {
    return Call(node, method, Parameters(Out("val", val)),
                [&](MemberCall& call) { return CountInstances(call, className, val); });
}

template <typename Interface>
HRESULT CollectionItem(CNode& node, const MethodDescriptor& method, std::string_view className,
                       BSTR name, Interface** val) {
    return Call(node, method, Parameters(Out("val", val), In("Name", name)), [&](MemberCall& call) {
        void* found = nullptr;
        const HRESULT status = FindInstance(call, className, name, kInterfaceId<Interface>, &found);
        *val = static_cast<Interface*>(found);
        return status;
    });
}

inline HRESULT CollectionName(CNode& node, const MethodDescriptor& method,
                              std::string_view className, LONG index, BSTR* val) {
    return Call(node, method, Parameters(In("Index", index), Out("val", val)),
                [&](MemberCall& call) { return NameInstance(call, className, index, val); });
}

}  // namespace kestrion
