// The grammar of the option string and of the driver setup in it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "tables/hash_map.h"

namespace kestrion {

using OptionMap = HashMap<std::string, std::string>;

// The pairs of a list such as "a=1, b = two": runs without comma and equals sign around one equals
// sign. Everything else between them is skipped; blanks around name and value are taken off; a
// later pair of the same name wins. Never fails: a text without pairs gives an empty map.
[[nodiscard]] OptionMap SplitPairs(std::string_view text);

// An option string in its two halves.
struct OptionText {
    std::string options;                     // in front of "DriverSetup"
    std::optional<std::string> driverSetup;  // all that follows its equals sign
};

// "DriverSetup" is the last item: its value is the rest of the string, commas included.
[[nodiscard]] OptionText SplitDriverSetup(std::string_view text);

// "true", "VI_TRUE", "1" and "false", "VI_FALSE", "0", in any case; nothing for other texts.
[[nodiscard]] std::optional<bool> ParseBoolean(std::string_view value);

// The number at the front of the text, which ends at the first other character; 0 without one.
[[nodiscard]] std::int32_t ParseInteger(std::string_view value);

}  // namespace kestrion
