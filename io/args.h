// The argument list of a format: 8-byte slots that are walked in order.
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <span>
#include <string>
#include <type_traits>

#include "kestrion/platform/types.h"

namespace kestrion {

// One argument. Integers are kept with their sign, floating point as a double, pointers as they
// are.
class ArgSlot {
  public:
    constexpr ArgSlot() = default;
    template <typename T>
    requires(std::is_integral_v<T> || std::is_enum_v<T>) constexpr ArgSlot(
        T value)  // NOLINT(google-explicit-constructor): an argument list is made of these
        : bits_(static_cast<std::uint64_t>(static_cast<std::int64_t>(value))) {}
    constexpr ArgSlot(double value) : bits_(std::bit_cast<std::uint64_t>(value)) {}  // NOLINT
    template <typename T>
    ArgSlot(T* pointer)  // NOLINT
        : bits_(static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(pointer))) {}
    ArgSlot(std::nullptr_t) {}  // NOLINT

    [[nodiscard]] constexpr std::int64_t Integer() const {
        return static_cast<std::int64_t>(bits_);
    }
    [[nodiscard]] constexpr double Real() const { return std::bit_cast<double>(bits_); }
    template <typename T>
    [[nodiscard]] T* Pointer() const {
        return reinterpret_cast<T*>(static_cast<std::uintptr_t>(bits_));
    }

  private:
    std::uint64_t bits_ = 0;
};

// Walks the slots of one call. A format that asks for more arguments than there are gets zeros: a
// null pointer, which every conversion refuses, or the number 0; `Exhausted` then tells.
class ArgCursor {
  public:
    explicit ArgCursor(std::span<const ArgSlot> slots) : slots_(slots) {}

    [[nodiscard]] ArgSlot Next() {
        if (slots_.empty()) {
            exhausted_ = true;
            return {};
        }
        const ArgSlot slot = slots_.front();
        slots_ = slots_.subspan(1);
        return slot;
    }
    [[nodiscard]] bool Exhausted() const { return exhausted_; }

  private:
    std::span<const ArgSlot> slots_;
    bool exhausted_ = false;
};

// Packs typed arguments for one call; the pack lives on the caller's stack.
template <typename... T>
[[nodiscard]] std::array<ArgSlot, sizeof...(T)> PackArgs(T... values) {
    return {ArgSlot(values)...};
}

// The argument of a `$C` conversion: `const std::string*` to write, `std::string*` to read.
// The argument of a `$B` conversion: `BSTR` to write, `BSTR*` to read.
// The argument of a `$S` conversion: `SAFEARRAY*` to write, `SAFEARRAY**` to read.
// The argument of a plain text conversion: `const char*` to write, `char*` to read.

}  // namespace kestrion
