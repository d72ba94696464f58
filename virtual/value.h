// Typed settings: what values one may have, how they are read from a parameter and written in an
// answer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "virtual/scpi_error.h"

namespace virtual_scope {

// A flag is 0 or 1, a keyword the number of its word.
using Value = std::variant<std::int64_t, double, std::string>;

// ON, OFF or a number, of which zero is off. Two further words may stand for on and off.
struct Flag {
    bool initial = false;
    std::string_view onWord = {};
    std::string_view offWord = {};
};

// One of the words, parted by '|', in the notation of a command reference: `RUNSTop|SEQuence`.
struct Keyword {
    std::string_view words;
    std::int64_t initial = 0;
};

// A whole number; a parameter with a fraction is rounded.
struct Integer {
    std::int64_t low;
    std::int64_t high;
    std::int64_t initial;
};

// A number. `names` gives some values words of their own: `FIFty=50|MEG=1E6`. With `namedOnly` no
// other values are legal.
struct Real {
    double low;
    double high;
    double initial;
    std::string_view names = {};
    bool namedOnly = false;
};

// A string in quotes.
struct Text {
    std::string_view initial = "";
    std::size_t longest = 1000;
};

// Nothing: a command that is an action, or a query with an answer of its own form.
struct NoValue {};

using Spec = std::variant<NoValue, Flag, Keyword, Integer, Real, Text>;

// True if `word` is the short form, the long form or a length between, in any case.
[[nodiscard]] bool MatchesMnemonic(std::string_view mnemonic, std::string_view word);
// `RUNSTop` as RUNSTOP, or as RUNST when not `verbose`.
[[nodiscard]] std::string FormatMnemonic(std::string_view mnemonic, bool verbose);

// The value that a setting has after power-on.
[[nodiscard]] Value InitialValue(const Spec& spec);

// Reads a parameter. `kDataTypeError` for one of a wrong kind, `kIllegalParameterValue` for an
// unknown word, `kDataOutOfRange` for a number out of range or a string that is too long.
[[nodiscard]] ScpiError ParseValue(const Spec& spec, std::string_view parameter, Value& value);

// The answer to a query, with the words in long form if `verbose`.
[[nodiscard]] std::string FormatValue(const Spec& spec, const Value& value, bool verbose);

}  // namespace virtual_scope
