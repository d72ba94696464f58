#include "platform/text.h"

#include <algorithm>
#include <cstdint>

namespace kestrion {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

void AppendUtf8(std::string& out, char32_t c) {
    const auto byte = [&out](char32_t value) { out += static_cast<char>(value); };
    if (c < 0x80) {
        byte(c);
    } else if (c < 0x800) {
        byte(0xC0 | (c >> 6));
        byte(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        byte(0xE0 | (c >> 12));
        byte(0x80 | ((c >> 6) & 0x3F));
        byte(0x80 | (c & 0x3F));
    } else {
        byte(0xF0 | (c >> 18));
        byte(0x80 | ((c >> 12) & 0x3F));
        byte(0x80 | ((c >> 6) & 0x3F));
        byte(0x80 | (c & 0x3F));
    }
}

void AppendUtf16(std::u16string& out, char32_t c) {
    if (c < 0x10000) {
        out += static_cast<char16_t>(c);
        return;
    }
    out += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
    out += static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
}

// Decodes one code point at `i` and moves behind it. A byte that begins nothing legal is consumed
// alone, so that one bad byte costs one replacement.
char32_t NextUtf8(std::string_view text, std::size_t& i) {
    const auto at = [text](std::size_t k) {
        return k < text.size() ? static_cast<std::uint8_t>(text[k]) : std::uint8_t{0};
    };
    const std::uint8_t first = at(i++);
    if (first < 0x80) {
        return first;
    }
    const int following = first >= 0xF0 && first < 0xF5   ? 3
                          : first >= 0xE0 && first < 0xF0 ? 2
                          : first >= 0xC2 && first < 0xE0 ? 1
                                                          : 0;
    if (following == 0) {
        return kReplacement;
    }
    char32_t value = first & (0x3FU >> following);
    for (int k = 0; k < following; ++k) {
        const std::uint8_t next = at(i + static_cast<std::size_t>(k));
        if ((next & 0xC0U) != 0x80U) {
            return kReplacement;
        }
        value = (value << 6) | (next & 0x3FU);
    }
    constexpr char32_t kSmallest[] = {0, 0x80, 0x800, 0x10000};
    if (value < kSmallest[following] || value > 0x10FFFF || (value >= 0xD800 && value < 0xE000)) {
        return kReplacement;
    }
    i += static_cast<std::size_t>(following);
    return value;
}

}  // namespace

std::u16string Utf8ToUtf16(std::string_view utf8) {
    std::u16string out;
    out.reserve(utf8.size());
    for (std::size_t i = 0; i < utf8.size();) {
        AppendUtf16(out, NextUtf8(utf8, i));
    }
    return out;
}

std::string Utf16ToUtf8(std::u16string_view text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t c = text[i];
        if (c >= 0xD800 && c < 0xE000) {
            const bool paired =
                c < 0xDC00 && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] < 0xE000;
            c = paired ? 0x10000 + ((c - 0xD800) << 10) + (char32_t{text[++i]} - 0xDC00)
                       : kReplacement;
        }
        AppendUtf8(out, c);
    }
    return out;
}

std::string NarrowToBytes(std::u16string_view text) {
    std::string out(text.size(), '\0');
    std::ranges::transform(text, out.begin(),
                           [](char16_t c) { return c < 0x100 ? static_cast<char>(c) : '?'; });
    return out;
}

std::u16string WidenBytes(std::string_view bytes) {
    std::u16string out(bytes.size(), u'\0');
    std::ranges::transform(bytes, out.begin(), [](char c) {
        return static_cast<char16_t>(static_cast<std::uint8_t>(c));
    });
    return out;
}

std::string_view Trim(std::string_view text) {
    while (!text.empty() && IsSpace(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && IsSpace(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

std::string ToLowerAscii(std::string_view text) {
    std::string out(text);
    std::ranges::transform(out, out.begin(), [](char c) { return ToLowerAscii(c); });
    return out;
}

std::string ToUpperAscii(std::string_view text) {
    std::string out(text);
    std::ranges::transform(out, out.begin(), [](char c) {
        return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    });
    return out;
}

bool EqualsIgnoreCase(std::string_view a, std::string_view b) {
    // Names are mostly written as they are told, and bytes compare many at a time.
    return a == b || std::ranges::equal(
                         a, b, [](char x, char y) { return ToLowerAscii(x) == ToLowerAscii(y); });
}

}  // namespace kestrion
