// Counted UTF-16 texts: the text form of the object interfaces.
#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "kestrion/platform/types.h"

#if !defined(_WIN32)
// A BSTR points at its first unit; its length in bytes stands in the 32 bits in front of it, and a
// zero unit behind it. Null means an empty text. These return null when memory runs out.
// The pointer's owner frees it with SysFreeString; null is accepted there.
KESTRION_API [[nodiscard]] BSTR SysAllocString(const OLECHAR* text);
KESTRION_API [[nodiscard]] BSTR SysAllocStringLen(const OLECHAR* text, UINT length);
KESTRION_API [[nodiscard]] BSTR SysAllocStringByteLen(const char* bytes, UINT length);
KESTRION_API void SysFreeString(BSTR text);
// Length in UTF-16 units, without the closing zero; 0 for null.
KESTRION_API [[nodiscard]] UINT SysStringLen(BSTR text);
KESTRION_API [[nodiscard]] UINT SysStringByteLen(BSTR text);
#endif

namespace kestrion {

// The text as a view; null gives an empty view. The view lives as long as the text.
[[nodiscard]] inline std::u16string_view View(BSTR text) {
    return text == nullptr
               ? std::u16string_view()
               : std::u16string_view(reinterpret_cast<const char16_t*>(text), SysStringLen(text));
}

// Allocates a BSTR that the caller owns; throws std::bad_alloc.
KESTRION_API [[nodiscard]] BSTR MakeBstr(std::u16string_view text);
// The same from UTF-8; malformed bytes become U+FFFD.
KESTRION_API [[nodiscard]] BSTR MakeBstr(std::string_view utf8);

// The text as UTF-8; an unpaired surrogate becomes U+FFFD.
KESTRION_API [[nodiscard]] std::string ToUtf8(BSTR text);

// Owns a BSTR.
class BstrPtr {
  public:
    BstrPtr() = default;
    explicit BstrPtr(std::u16string_view text) : text_(MakeBstr(text)) {}
    explicit BstrPtr(std::string_view utf8) : text_(MakeBstr(utf8)) {}
    BstrPtr(BstrPtr&& other) noexcept : text_(other.Detach()) {}
    BstrPtr& operator=(BstrPtr&& other) noexcept {
        std::swap(text_, other.text_);
        return *this;
    }
    ~BstrPtr() { SysFreeString(text_); }

    [[nodiscard]] BSTR Get() const { return text_; }
    [[nodiscard]] BSTR Detach() { return std::exchange(text_, nullptr); }
    // For an out parameter: frees what is held first.
    [[nodiscard]] BSTR* Out() {
        SysFreeString(Detach());
        return &text_;
    }
    [[nodiscard]] std::u16string_view View() const { return kestrion::View(text_); }
    [[nodiscard]] std::string Utf8() const { return ToUtf8(text_); }

  private:
    BSTR text_ = nullptr;
};

}  // namespace kestrion
