// The first line of inputs that read elements of a kind.
#pragma once

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <string_view>

#include "io/element.h"

namespace kestrion::fuzz {

// The words of a line, one after the other; empty at its end.
class Words {
  public:
    explicit Words(std::string_view line) : rest_(line) {}

    std::string_view Next() {
        rest_.remove_prefix(std::min(rest_.find_first_not_of(' '), rest_.size()));
        const std::string_view word = rest_.substr(0, rest_.find(' '));
        rest_.remove_prefix(word.size());
        return word;
    }
    // 0 for a word that is no number.
    std::uint32_t NextNumber() {
        const std::string_view word = Next();
        std::uint32_t number = 0;
        (void)std::from_chars(word.data(), word.data() + word.size(), number);
        return number;
    }
    // What is left, from the next blank on.
    [[nodiscard]] std::string_view Rest() const { return rest_; }

  private:
    std::string_view rest_;
};

// "byte" for any word that names no kind of number.
[[nodiscard]] inline ElementKind KindOfWord(std::string_view word) {
    return word == "short"    ? ElementKind::kShort
           : word == "long"   ? ElementKind::kLong
           : word == "float"  ? ElementKind::kFloat
           : word == "double" ? ElementKind::kDouble
                              : ElementKind::kByte;
}

// The length letter of a block of the kind, as a text.
[[nodiscard]] inline const char* BlockLetter(ElementKind kind) {
    switch (kind) {
        case ElementKind::kShort:
            return "h";
        case ElementKind::kLong:
            return "l";
        case ElementKind::kFloat:
            return "z";
        case ElementKind::kDouble:
            return "Z";
        default:
            return "";
    }
}

}  // namespace kestrion::fuzz
