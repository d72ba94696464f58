#include "cli/utf8.h"

#include <cstdint>

namespace kestrion::cli {
namespace {

std::uint32_t Byte(char c) {
    return static_cast<unsigned char>(c);
}

bool IsContinuation(char c) {
    return (Byte(c) & 0xC0U) == 0x80U;
}

// Bytes of the sequence that a lead byte starts; 0 for a byte that starts none.
std::size_t SequenceLength(char lead) {
    if (Byte(lead) < 0x80U) {
        return 1;
    }
    if (Byte(lead) >= 0xC2U && Byte(lead) < 0xE0U) {
        return 2;
    }
    if (Byte(lead) >= 0xE0U && Byte(lead) < 0xF0U) {
        return 3;
    }
    return Byte(lead) >= 0xF0U && Byte(lead) < 0xF5U ? 4 : 0;
}

// The second byte rules out overlong forms, surrogates and what lies above U+10FFFF.
bool SecondByteIsLegal(char lead, char second) {
    switch (Byte(lead)) {
        case 0xE0U:
            return Byte(second) >= 0xA0U;
        case 0xEDU:
            return Byte(second) < 0xA0U;
        case 0xF0U:
            return Byte(second) >= 0x90U;
        case 0xF4U:
            return Byte(second) < 0x90U;
        default:
            return true;
    }
}

// Length of the well-formed sequence at the start of `text`, 0 if there is none.
std::size_t WellFormedLength(std::string_view text) {
    const std::size_t length = SequenceLength(text.front());
    if (length == 0 || length > text.size()) {
        return 0;
    }
    for (std::size_t i = 1; i < length; ++i) {
        if (!IsContinuation(text[i])) {
            return 0;
        }
    }
    return length == 1 || SecondByteIsLegal(text[0], text[1]) ? length : 0;
}

}  // namespace

std::string CleanUtf8(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const std::size_t length = WellFormedLength(text);
        if (length == 0) {
            result += "\xEF\xBF\xBD";
            text.remove_prefix(1);
            continue;
        }
        result += text.substr(0, length);
        text.remove_prefix(length);
    }
    return result;
}

std::size_t CountCharacters(std::string_view text) {
    std::size_t count = 0;
    for (char c : text) {
        count += IsContinuation(c) ? 0U : 1U;
    }
    return count;
}

std::string Shorten(const std::string& text, std::size_t most) {
    if (CountCharacters(text) <= most) {
        return text;
    }
    std::size_t characters = 0;
    std::size_t end = 0;
    while (end < text.size()) {
        characters += IsContinuation(text[end]) ? 0U : 1U;
        if (characters >= most) {
            break;
        }
        ++end;
    }
    return text.substr(0, end) + "…";
}

}  // namespace kestrion::cli
