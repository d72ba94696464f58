// Text helpers that know ASCII only, so that no locale changes what the program accepts.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kestrion::cli {

[[nodiscard]] std::string ToUpper(std::string_view text);
// Blanks, tabs and line ends taken off both ends; the view is into `text`.
[[nodiscard]] std::string_view TrimBlanks(std::string_view text);
// The pieces between separators; n separators give n + 1 pieces, which are views into `text`.
[[nodiscard]] std::vector<std::string_view> Split(std::string_view text, char separator);
// `items` with ", " between them and " and " in front of the last one.
[[nodiscard]] std::string Enumerate(const std::vector<std::string>& items);

}  // namespace kestrion::cli
