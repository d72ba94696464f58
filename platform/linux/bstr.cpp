#include "kestrion/platform/bstr.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>

#include "platform/text.h"

namespace {

// The prefix keeps the text aligned for any object, as the allocation is.
constexpr std::size_t kPrefix = alignof(std::max_align_t);

char* Block(BSTR text) {
    return reinterpret_cast<char*>(text) - kPrefix;
}

// `bytes` may be null for a zeroed text.
BSTR Allocate(const void* bytes, std::size_t length) {
    if (length > std::numeric_limits<UINT>::max() - sizeof(OLECHAR)) {
        return nullptr;
    }
    auto* block = static_cast<char*>(std::calloc(1, kPrefix + length + sizeof(OLECHAR) * 2));
    if (block == nullptr) {
        return nullptr;
    }
    const auto stored = static_cast<UINT>(length);
    std::memcpy(block + kPrefix - sizeof(stored), &stored, sizeof(stored));
    if (bytes != nullptr && length != 0) {
        std::memcpy(block + kPrefix, bytes, length);
    }
    return reinterpret_cast<BSTR>(block + kPrefix);
}

}  // namespace

BSTR SysAllocString(const OLECHAR* text) {
    return text == nullptr
               ? nullptr
               : Allocate(text, std::char_traits<OLECHAR>::length(text) * sizeof(OLECHAR));
}

BSTR SysAllocStringLen(const OLECHAR* text, UINT length) {
    return Allocate(text, std::size_t{length} * sizeof(OLECHAR));
}

BSTR SysAllocStringByteLen(const char* bytes, UINT length) {
    return Allocate(bytes, length);
}

void SysFreeString(BSTR text) {
    if (text != nullptr) {
        std::free(Block(text));
    }
}

UINT SysStringByteLen(BSTR text) {
    UINT length = 0;
    if (text != nullptr) {
        std::memcpy(&length, reinterpret_cast<char*>(text) - sizeof(length), sizeof(length));
    }
    return length;
}

UINT SysStringLen(BSTR text) {
    return SysStringByteLen(text) / static_cast<UINT>(sizeof(OLECHAR));
}

namespace kestrion {

BSTR MakeBstr(std::u16string_view text) {
    BSTR made = Allocate(text.data(), text.size() * sizeof(OLECHAR));
    if (made == nullptr) {
        throw std::bad_alloc();
    }
    return made;
}

BSTR MakeBstr(std::string_view utf8) {
    return MakeBstr(Utf8ToUtf16(utf8));
}

std::string ToUtf8(BSTR text) {
    return Utf16ToUtf8(View(text));
}

}  // namespace kestrion
