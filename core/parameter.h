// The arguments of one member call as records: what the frame checks and zeroes, and the trace
// writes.
//
// A record lives on the stack of the call and owns nothing. An in record holds a copy of the
// argument; an out record reads the caller's variable, so that at exit it shows what the body
// wrote. Texts, arrays and interfaces are seen through the pointer that the caller passed: they
// have to outlive the record.
#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <type_traits>

#include "kestrion/platform/safe_array.h"
#include "kestrion/platform/types.h"
#include "kestrion/platform/variant.h"

namespace kestrion {

enum class Direction : std::uint8_t { kIn = 0, kOut = 1, kInOut = 2 };

// The records of one call are at most this many.
inline constexpr std::size_t kMaxParameters = 25;

struct ParameterRecord {
    std::string_view name;
    Direction direction = Direction::kIn;
    // VT_I4, VT_BSTR and so on; VT_UNKNOWN for an interface. An array is VT_ARRAY with the kind of
    // its elements, or VT_ARRAY alone where only the array itself tells it. VT_EMPTY for a type
    // without a kind.
    VARTYPE kind = VT_EMPTY;
    // Bytes of the value, so of `*target` for a record that has one.
    std::uint32_t size = 0;
    // The caller's variable of an out or in-out argument; null when the caller passed null, and
    // for an in argument.
    void* target = nullptr;
    // The copy of an in argument.
    alignas(std::uint64_t) std::array<unsigned char, 8> copy{};

    // True for a pure out argument: its target is zeroed before the body runs.
    [[nodiscard]] bool isOut() const { return direction == Direction::kOut; }
    // True where the caller passes a pointer to a variable, which must not be null.
    [[nodiscard]] bool isByReference() const { return direction != Direction::kIn; }
    // Where the value stands now; null for a null target. The address is inside of the record for
    // an in argument.
    [[nodiscard]] const void* Value() const { return isByReference() ? target : copy.data(); }

    // Zeroes the target: 0, a null text, interface or array. Frees nothing, since an out variable
    // holds nothing at entry. A null target is left alone.
    void ZeroTarget() const {
        if (target != nullptr) {
            std::memset(target, 0, size);
        }
    }
};

namespace parameter_detail {

template <typename T>
constexpr VARTYPE KindOf() {
    if constexpr (std::is_enum_v<T>) {
        static_assert(sizeof(T) == sizeof(LONG), "An enumeration of the interfaces has 32 bits.");
        return VT_I4;
    } else if constexpr (std::is_same_v<T, VARIANT_BOOL>) {
        // The interfaces have no other use for 16 bits.
        return VT_BOOL;
    } else if constexpr (std::is_same_v<T, ULONG>) {
        return VT_UI4;
    } else if constexpr (std::is_same_v<T, USHORT>) {
        return VT_UI2;
    } else if constexpr (std::is_same_v<T, std::uint64_t>) {
        return VT_UI8;
    } else if constexpr (std::is_same_v<T, VARIANT>) {
        return VT_VARIANT;
    } else if constexpr (std::is_same_v<T, BSTR>) {
        return VT_BSTR;
    } else if constexpr (std::is_same_v<T, SAFEARRAY*>) {
        return VT_ARRAY;
    } else if constexpr (std::is_pointer_v<T> && std::is_class_v<std::remove_pointer_t<T>>) {
        return VT_UNKNOWN;
    } else {
        return kVartype<T>;
    }
}

template <typename T>
ParameterRecord ByReference(std::string_view name, Direction direction, T* target) {
    static_assert(KindOf<T>() != VT_EMPTY, "The interfaces have no argument of this type.");
    ParameterRecord record;
    record.name = name;
    record.direction = direction;
    record.kind = KindOf<T>();
    record.size = sizeof(T);
    record.target = target;
    return record;
}

}  // namespace parameter_detail

// An argument passed by value: LONG, double, VARIANT_BOOL, BSTR, an enumeration, SAFEARRAY*, an
// interface pointer. `name` has to outlive the record: it is a literal.
template <typename T>
[[nodiscard]] ParameterRecord In(std::string_view name, T value) {
    using parameter_detail::KindOf;
    static_assert(KindOf<T>() != VT_EMPTY, "The interfaces have no argument of this type.");
    static_assert(sizeof(T) <= sizeof(ParameterRecord::copy), "Too wide to be copied.");
    ParameterRecord record;
    record.name = name;
    record.kind = KindOf<T>();
    record.size = sizeof(T);
    std::memcpy(record.copy.data(), &value, sizeof(T));
    return record;
}

// An array whose element kind is known without the array, so that a null one has its type too.
[[nodiscard]] inline ParameterRecord InArray(std::string_view name, SAFEARRAY* array,
                                             VARTYPE elementKind) {
    ParameterRecord record = In(name, array);
    record.kind = static_cast<VARTYPE>(VT_ARRAY | elementKind);
    return record;
}

// A pointer to the variable that the body fills.
template <typename T>
[[nodiscard]] ParameterRecord Out(std::string_view name, T* target) {
    return parameter_detail::ByReference(name, Direction::kOut, target);
}

// As InArray.
[[nodiscard]] inline ParameterRecord OutArray(std::string_view name, SAFEARRAY** target,
                                              VARTYPE elementKind) {
    ParameterRecord record = Out(name, target);
    record.kind = static_cast<VARTYPE>(VT_ARRAY | elementKind);
    return record;
}

// A pointer to a variable that the body reads and changes.
template <typename T>
[[nodiscard]] ParameterRecord InOut(std::string_view name, T* target) {
    return parameter_detail::ByReference(name, Direction::kInOut, target);
}

// As InArray.
[[nodiscard]] inline ParameterRecord InOutArray(std::string_view name, SAFEARRAY** target,
                                                VARTYPE elementKind) {
    ParameterRecord record = InOut(name, target);
    record.kind = static_cast<VARTYPE>(VT_ARRAY | elementKind);
    return record;
}

// The records of a call, in the order of the arguments. The result converts to
// std::span<const ParameterRecord>.
template <typename... Records>
[[nodiscard]] std::array<ParameterRecord, sizeof...(Records)> Parameters(
    const Records&... records) {
    static_assert(sizeof...(Records) <= kMaxParameters, "A call has at most 25 records.");
    return {records...};
}

}  // namespace kestrion
