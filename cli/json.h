// The two JSON values that the program writes.
#pragma once

#include <string>
#include <string_view>

namespace kestrion::cli {

// A string literal with its quotes. `text` is UTF-8; bytes that aren't become U+FFFD.
[[nodiscard]] std::string JsonText(std::string_view text);
// The shortest literal that reads back as `value`; "null" for what isn't finite.
[[nodiscard]] std::string JsonNumber(double value);

}  // namespace kestrion::cli
