// Numbers with SI prefixes, for people.
#pragma once

#include <string>
#include <string_view>

namespace kestrion::cli {

// A power of ten that is a multiple of three, and its SI prefix.
struct SiPrefix {
    int exponent = 0;
    // "n", "µ", "" or "k"; UTF-8.
    std::string_view symbol;

    [[nodiscard]] double Scale() const;
};

// The prefix that brings `magnitude` to 1 or above and below 1000, from atto to exa; none for zero
// and for what isn't finite.
[[nodiscard]] SiPrefix PrefixFor(double magnitude);

// `value` with four significant digits: "1.000 kHz", "-25.30 mV", "0 V".
[[nodiscard]] std::string FormatSi(double value, std::string_view unit);
// `value` with up to six significant digits and no closing zeros: "400 ns", "1.25 kHz".
[[nodiscard]] std::string FormatSiShort(double value, std::string_view unit);

}  // namespace kestrion::cli
