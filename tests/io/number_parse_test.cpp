#include "io/number_parse.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <optional>
#include <random>
#include <string>

#include "tests/io/comma_locale.h"

namespace kestrion {
namespace {

std::optional<double> Real(std::string_view text) {
    double value = 0;
    return ParseReal(text, value) ? std::optional(value) : std::nullopt;
}

std::optional<std::int64_t> Whole(std::string_view text, int radix, int bits, bool isSigned) {
    std::int64_t value = 0;
    return ParseWhole(text, radix, bits, isSigned, value) ? std::optional(value) : std::nullopt;
}

std::optional<std::int64_t> Cut(double value, int bits, bool isSigned) {
    std::int64_t whole = 0;
    return CutToWhole(value, bits, isSigned, whole) ? std::optional(whole) : std::nullopt;
}

TEST(NumberParse, RealsOfEveryForm) {
    EXPECT_EQ(Real("1"), 1.0);
    EXPECT_EQ(Real("+2.50"), 2.5);
    EXPECT_EQ(Real("-.5"), -0.5);
    EXPECT_EQ(Real("5."), 5.0);
    EXPECT_EQ(Real("9.91E+37"), 9.91e37);
    EXPECT_EQ(Real("1.0e-3"), 0.001);
}

TEST(NumberParse, AnUnfinishedExponentIsLeftOut) {
    EXPECT_EQ(Real("3E"), 3.0);
    EXPECT_EQ(Real("3E-"), 3.0);
}

TEST(NumberParse, TextWithoutADigitIsNoReal) {
    EXPECT_EQ(Real(""), std::nullopt);
    EXPECT_EQ(Real("-"), std::nullopt);
    EXPECT_EQ(Real("."), std::nullopt);
    EXPECT_EQ(Real("+-1"), std::nullopt);
    EXPECT_EQ(Real("inf"), std::nullopt);
    EXPECT_EQ(Real("nan"), std::nullopt);
}

TEST(NumberParse, OverflowFailsAndUnderflowIsZero) {
    EXPECT_EQ(Real("1E400"), std::nullopt);
    EXPECT_EQ(Real("-1E400"), std::nullopt);
    EXPECT_EQ(Real("0.0001E999"), std::nullopt);
    EXPECT_EQ(Real("1E99999999999999999999"), std::nullopt);
    EXPECT_EQ(Real("1E-400"), 0.0);
    EXPECT_EQ(Real("1E-99999999999999999999"), 0.0);
    EXPECT_EQ(Real("0E999"), 0.0);
    EXPECT_EQ(Real("1" + std::string(400, '0') + "E-400"), 1.0);
    EXPECT_EQ(Real("1.7976931348623157e308"), std::numeric_limits<double>::max());
    const std::optional<double> negative = Real("-1E-400");
    ASSERT_TRUE(negative.has_value());
    EXPECT_TRUE(std::signbit(*negative));
    EXPECT_EQ(*negative, 0.0);
}

TEST(NumberParse, AFailureLeavesTheValueAlone) {
    double real = 7;
    EXPECT_FALSE(ParseReal("1E400", real));
    EXPECT_EQ(real, 7.0);
    std::int64_t whole = 7;
    EXPECT_FALSE(ParseWhole("99999", 10, 16, true, whole));
    EXPECT_EQ(whole, 7);
}

TEST(NumberParse, RealsAgreeWithTheCLibrary) {
    std::mt19937 random(9001);
    constexpr std::string_view kCharacters = "0123456789.eE+-";
    for (int i = 0; i < 50000; ++i) {
        std::string text;
        for (std::size_t length = random() % 12; length > 0; --length) {
            text += kCharacters[random() % kCharacters.size()];
        }
        char* end = nullptr;
        const double expected = std::strtod(text.c_str(), &end);
        const bool converted = end != text.c_str() && std::isfinite(expected);
        ASSERT_EQ(Real(text), converted ? std::optional(expected) : std::nullopt) << text;
    }
}

TEST(NumberParse, SignedRanges) {
    EXPECT_EQ(Whole("2147483647", 10, 32, true), 2147483647);
    EXPECT_EQ(Whole("2147483648", 10, 32, true), std::nullopt);
    EXPECT_EQ(Whole("-2147483648", 10, 32, true), -2147483648LL);
    EXPECT_EQ(Whole("-2147483649", 10, 32, true), std::nullopt);
    EXPECT_EQ(Whole("32768", 10, 16, true), std::nullopt);
    EXPECT_EQ(Whole("-32768", 10, 16, true), -32768);
    EXPECT_EQ(Whole("9223372036854775807", 10, 64, true), INT64_MAX);
    EXPECT_EQ(Whole("-9223372036854775808", 10, 64, true), INT64_MIN);
    EXPECT_EQ(Whole("9223372036854775808", 10, 64, true), std::nullopt);
}

TEST(NumberParse, UnsignedRangesTakeAMinusAsCDoes) {
    EXPECT_EQ(Whole("4294967295", 10, 32, false), 4294967295);
    EXPECT_EQ(Whole("4294967296", 10, 32, false), std::nullopt);
    EXPECT_EQ(Whole("-1", 10, 32, false), 4294967295);
    EXPECT_EQ(Whole("256", 10, 8, false), std::nullopt);
    EXPECT_EQ(Whole("18446744073709551615", 10, 64, false), -1);
    EXPECT_EQ(Whole("18446744073709551616", 10, 64, false), std::nullopt);
}

TEST(NumberParse, RadixAndPrefix) {
    EXPECT_EQ(Whole("0x1F", 16, 32, false), 31);
    EXPECT_EQ(Whole("-0x10", 16, 32, true), -16);
    EXPECT_EQ(Whole("ff", 16, 8, false), 255);
    EXPECT_EQ(Whole("777", 8, 32, false), 511);
    EXPECT_EQ(Whole("0x1F", 10, 32, true), 0);
    EXPECT_EQ(Whole("0X1F", 16, 32, false), 0);
    EXPECT_EQ(Whole("8", 8, 32, false), std::nullopt);
    EXPECT_EQ(Whole("", 10, 32, true), std::nullopt);
    EXPECT_EQ(Whole("+", 10, 32, true), std::nullopt);
}

TEST(NumberParse, CutsTowardZeroWithinTheRange) {
    EXPECT_EQ(Cut(2.9, 32, true), 2);
    EXPECT_EQ(Cut(-2.9, 32, true), -2);
    EXPECT_EQ(Cut(2147483647.9, 32, true), 2147483647);
    EXPECT_EQ(Cut(2147483648.0, 32, true), std::nullopt);
    EXPECT_EQ(Cut(-2147483649.0, 32, true), std::nullopt);
    EXPECT_EQ(Cut(-0.9, 8, false), 0);
    EXPECT_EQ(Cut(-1.0, 8, false), std::nullopt);
    EXPECT_EQ(Cut(256.0, 8, false), std::nullopt);
    EXPECT_EQ(Cut(9223372036854775808.0, 64, true), std::nullopt);
    EXPECT_EQ(Cut(-9223372036854775808.0, 64, true), INT64_MIN);
    EXPECT_EQ(Cut(std::nan(""), 32, true), std::nullopt);
}

TEST(NumberParse, SinglePrecisionLimits) {
    EXPECT_TRUE(FitsSingle(3.4028234663852886e+38));
    EXPECT_FALSE(FitsSingle(3.4028234663852889e+38));
    EXPECT_FALSE(FitsSingle(-1e39));
    EXPECT_TRUE(FitsSingle(1.1754943508222875e-38));
    EXPECT_FALSE(FitsSingle(1.17549435082228e-38));
    EXPECT_FALSE(FitsSingle(-1e-300));
    EXPECT_TRUE(FitsSingle(0.0));
    EXPECT_TRUE(FitsSingle(1e-310));  // smaller than any normal double: becomes zero
}

TEST(NumberParse, ACommaLocaleChangesNothing) {
    const CommaLocale comma;
    EXPECT_EQ(Real("1.5"), 1.5);
    EXPECT_EQ(Real("1,5"), 1.0);
}

}  // namespace
}  // namespace kestrion
