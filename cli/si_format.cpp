#include "cli/si_format.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace kestrion::cli {
namespace {

struct Prefix {
    int exponent;
    double scale;
    std::string_view symbol;
};
constexpr std::array kPrefixes{
    Prefix{-18, 1e-18, "a"}, Prefix{-15, 1e-15, "f"}, Prefix{-12, 1e-12, "p"},
    Prefix{-9, 1e-9, "n"},   Prefix{-6, 1e-6, "µ"},   Prefix{-3, 1e-3, "m"},
    Prefix{0, 1e0, ""},      Prefix{3, 1e3, "k"},     Prefix{6, 1e6, "M"},
    Prefix{9, 1e9, "G"},     Prefix{12, 1e12, "T"},   Prefix{15, 1e15, "P"},
    Prefix{18, 1e18, "E"}};
// A value this little below a power of ten is that power with a rounding error.
constexpr double kTolerance = 1e-12;

// `digits` significant digits of a number below 1000, or one more where rounding brings 999.96 to
// 1000.
std::string FixedDigits(double value, int digits) {
    int before = 1;
    for (double limit = 10; limit <= 100 && std::abs(value) >= limit; limit *= 10) {
        ++before;
    }
    return fmt::format("{:.{}f}", value, std::max(0, digits - before));
}

// The number and the prefix that it is shown with. Rounding may carry it into the next one.
struct Shown {
    std::string number;
    std::string_view prefix;
};

Shown Show(double value, int digits) {
    if (value == 0) {
        return {"0", ""};
    }
    if (!std::isfinite(value)) {
        return {fmt::format("{}", value), ""};
    }
    // Rounds first, so that the prefix and the number of digits before the point are final.
    const std::string text = fmt::format("{:.{}e}", value, digits - 1);
    double rounded = value;
    std::from_chars(text.data(), text.data() + text.size(), rounded);
    const SiPrefix prefix = PrefixFor(rounded);
    return {FixedDigits(rounded / prefix.Scale() * (1 + kTolerance), digits), prefix.symbol};
}

std::string Join(const Shown& shown, std::string_view unit) {
    return fmt::format("{} {}{}", shown.number, shown.prefix, unit);
}

}  // namespace

double SiPrefix::Scale() const {
    for (const Prefix& prefix : kPrefixes) {
        if (prefix.exponent == exponent) {
            return prefix.scale;
        }
    }
    return 1;
}

SiPrefix PrefixFor(double magnitude) {
    const double value = std::abs(magnitude);
    if (value == 0 || !std::isfinite(value)) {
        return {};
    }
    const Prefix* best = kPrefixes.data();
    for (const Prefix& prefix : kPrefixes) {
        if (value >= prefix.scale * (1 - kTolerance)) {
            best = &prefix;
        }
    }
    return {best->exponent, best->symbol};
}

std::string FormatSi(double value, std::string_view unit) {
    constexpr int kDigits = 4;
    return Join(Show(value, kDigits), unit);
}

std::string FormatSiShort(double value, std::string_view unit) {
    constexpr int kDigits = 6;
    Shown shown = Show(value, kDigits);
    if (shown.number.find('.') != std::string::npos) {
        shown.number.erase(shown.number.find_last_not_of('0') + 1);
        if (shown.number.back() == '.') {
            shown.number.pop_back();
        }
    }
    return Join(shown, unit);
}

}  // namespace kestrion::cli
