// The array arguments of conversions.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "io/args.h"
#include "io/format_spec.h"
#include "kestrion/platform/safe_array.h"
#include "kestrion/platform/types.h"

namespace kestrion {

// A plain array, or a variant array that is locked for as long as this lives.
class FormatArraySource {
  public:
    FormatArraySource() = default;
    FormatArraySource(const FormatArraySource&) = delete;
    FormatArraySource& operator=(const FormatArraySource&) = delete;
    ~FormatArraySource() { (void)Release(S_OK); }

    // Takes the argument. `wanted` is the number of elements that the conversion asks for: a plain
    // array needs it (E_UNEXPECTED below 0); a variant array gives all that it has unless fewer are
    // wanted. E_INVALIDARG for a null argument, and for a variant array that isn't one-dimensional,
    // zero-based and of the kind.
    [[nodiscard]] HRESULT Take(const FormatConversion& conversion, std::int64_t wanted,
                               FormatElement kind, ArgCursor& args);

    // Unlocks. The first failure wins: `status` if it is one, otherwise the unlock's own.
    [[nodiscard]] HRESULT Release(HRESULT status);

    [[nodiscard]] std::size_t Count() const { return count_; }
    [[nodiscard]] const BYTE* Bytes() const { return data_; }
    template <typename T>
    [[nodiscard]] T At(std::size_t i) const {
        T value;
        std::memcpy(&value, data_ + i * sizeof(T), sizeof(T));
        return value;
    }

  private:
    [[nodiscard]] HRESULT Open(SAFEARRAY* array, std::int64_t wanted, FormatElement kind);

    SAFEARRAY* locked_ = nullptr;
    const BYTE* data_ = nullptr;
    std::size_t count_ = 0;
};

// E_INVALIDARG unless the array has one dimension, lower bound 0 and elements of the kind.
[[nodiscard]] HRESULT CheckFormatArray(SAFEARRAY* array, FormatElement kind);

// The same for the array argument of a conversion that reads. It may point at null, and since a new
// array takes the place of the one there, only texts ask for a kind. E_INVALIDARG if `array` is
// null.
[[nodiscard]] HRESULT CheckFormatArrayTarget(SAFEARRAY** array, FormatElement kind);

// Destroys the array at `array` and puts `replacement` there. A locked array stays, and so does
// `replacement` then.
[[nodiscard]] HRESULT ReplaceArray(SAFEARRAY** array, SafeArrayPtr& replacement);

}  // namespace kestrion
