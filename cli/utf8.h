// UTF-8 text by its characters.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kestrion::cli {

// `text` with each malformed byte replaced by U+FFFD: overlong forms, surrogates, code points
// above U+10FFFF and cut sequences are malformed.
[[nodiscard]] std::string CleanUtf8(std::string_view text);
// Code points in well-formed text.
[[nodiscard]] std::size_t CountCharacters(std::string_view text);
// `text`, or as much of it as leaves room for "…" in `most` code points. `text` is well-formed.
[[nodiscard]] std::string Shorten(const std::string& text, std::size_t most);

}  // namespace kestrion::cli
