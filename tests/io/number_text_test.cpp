#include "io/number_text.h"

#include <gtest/gtest.h>

#include <bit>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <random>
#include <string>

#include "tests/io/comma_locale.h"

namespace kestrion {
namespace {

std::string Real(double value, const FieldFormat& format) {
    NumberDigits digits;
    std::string text;
    FormatReal(value, format, digits).AppendTo(text);
    return text;
}

std::string Signed(std::int64_t value, const FieldFormat& format) {
    NumberDigits digits;
    std::string text;
    FormatSigned(value, format, digits).AppendTo(text);
    return text;
}

std::string Unsigned(std::uint64_t value, const FieldFormat& format) {
    NumberDigits digits;
    std::string text;
    FormatUnsigned(value, format, digits).AppendTo(text);
    return text;
}

std::string Text(std::string_view value, char quote, const FieldFormat& format) {
    std::string text;
    FormatText(value, quote, format).AppendTo(text);
    return text;
}

// What the C library makes of the same format, in the "C" locale.
template <typename T>
std::string CLibrary(const FieldFormat& format, const char* length, T value) {
    std::string spec = "%";
    spec += format.leftAlign ? "-" : "";
    spec += format.plusSign ? "+" : "";
    spec += format.blankSign ? " " : "";
    spec += format.zeroFill ? "0" : "";
    spec += format.width > 0 ? std::to_string(format.width) : "";
    spec += format.precision >= 0 ? "." + std::to_string(format.precision) : "";
    spec += length;
    spec += format.letter;
    std::string text(4096, '\0');
    const int size = std::snprintf(text.data(), text.size(), spec.c_str(), value);
    EXPECT_GE(size, 0);
    EXPECT_LT(static_cast<std::size_t>(size), text.size());
    text.resize(static_cast<std::size_t>(size));
    return text;
}

FieldFormat RandomFormat(std::mt19937_64& random, std::string_view letters) {
    FieldFormat format;
    format.letter = letters[random() % letters.size()];
    format.leftAlign = random() % 4 == 0;
    format.plusSign = random() % 4 == 0;
    format.blankSign = random() % 4 == 0;
    format.zeroFill = random() % 3 == 0;
    format.width = random() % 2 == 0 ? 0 : static_cast<std::int64_t>(random() % 40);
    format.precision = random() % 3 == 0 ? -1 : static_cast<std::int64_t>(random() % 25);
    return format;
}

double RandomReal(std::mt19937_64& random) {
    switch (random() % 6) {
        case 0:
            return static_cast<double>(static_cast<std::int64_t>(random() % 2001) - 1000);
        case 1:
            return static_cast<double>(random() % 100000) / 1000.0;
        case 2:
            return std::ldexp(static_cast<double>(random() % 1000),
                              static_cast<int>(random() % 200) - 100);
        case 3:
            return std::pow(10.0, static_cast<double>(random() % 40) - 20.0);
        case 4:
            return -std::ldexp(1.0, static_cast<int>(random() % 2098) - 1074);
        default:
            return std::bit_cast<double>(random());  // infinities and not-a-numbers among them
    }
}

TEST(NumberText, RealsAgreeWithTheCLibrary) {
    ASSERT_NE(std::setlocale(LC_ALL, "C"), nullptr);
    std::mt19937_64 random(7001);
    for (int i = 0; i < 60000; ++i) {
        const FieldFormat format = RandomFormat(random, "eEfFgG");
        const double value = RandomReal(random);
        ASSERT_EQ(Real(value, format), CLibrary(format, "", value))
            << std::hexfloat << value << " letter " << format.letter << " width " << format.width
            << " precision " << format.precision;
    }
}

TEST(NumberText, IntegersAgreeWithTheCLibrary) {
    ASSERT_NE(std::setlocale(LC_ALL, "C"), nullptr);
    std::mt19937_64 random(7002);
    for (int i = 0; i < 60000; ++i) {
        const std::uint64_t bits = random() >> (random() % 64);
        const FieldFormat decimal = RandomFormat(random, "di");
        const std::int64_t value = static_cast<std::int64_t>(random() % 2 == 0 ? bits : 0 - bits);
        ASSERT_EQ(Signed(value, decimal), CLibrary(decimal, "ll", static_cast<long long>(value)));
        const FieldFormat other = RandomFormat(random, "ouxX");
        ASSERT_EQ(Unsigned(bits, other),
                  CLibrary(other, "ll", static_cast<unsigned long long>(bits)));
    }
}

TEST(NumberText, TextsAgreeWithTheCLibrary) {
    std::mt19937_64 random(7003);
    for (int i = 0; i < 5000; ++i) {
        FieldFormat format = RandomFormat(random, "s");
        format.plusSign = format.blankSign = format.zeroFill = false;
        const std::string value(random() % 30, 'x');
        ASSERT_EQ(Text(value, '\0', format), CLibrary(format, "", value.c_str()));
    }
}

TEST(NumberText, FifteenDigitsAsTheDriverAsksForThem) {
    const FieldFormat format{.letter = 'g', .zeroFill = true, .precision = 15};
    EXPECT_EQ(Real(0.1, format), "0.1");
    EXPECT_EQ(Real(1e-9, format), "1e-09");
    EXPECT_EQ(Real(-0.25, format), "-0.25");
    EXPECT_EQ(Real(1e15, format), "1e+15");
    EXPECT_EQ(Real(123456789012345.0, format), "123456789012345");
    EXPECT_EQ(Real(1.0 / 3.0, format), "0.333333333333333");
}

TEST(NumberText, ShortestGeneralForm) {
    const FieldFormat format{.letter = 'g'};
    EXPECT_EQ(Real(100000, format), "100000");
    EXPECT_EQ(Real(1000000, format), "1e+06");
    EXPECT_EQ(Real(0.0001, format), "0.0001");
    EXPECT_EQ(Real(0.00001, format), "1e-05");
    EXPECT_EQ(Real(0.0, format), "0");
    EXPECT_EQ(Real(-0.0, format), "-0");
    EXPECT_EQ(Real(999999.5, format), "1e+06");
}

TEST(NumberText, ZeroPrecisionOfGeneralCountsAsOne) {
    EXPECT_EQ(Real(123.0, {.letter = 'g', .precision = 0}), "1e+02");
    EXPECT_EQ(Real(7.0, {.letter = 'G', .precision = 0}), "7");
}

TEST(NumberText, InfinityAndNotANumberAreNeverZeroFilled) {
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(Real(infinity, {.letter = 'f', .zeroFill = true, .width = 6}), "   inf");
    EXPECT_EQ(Real(-infinity, {.letter = 'E', .leftAlign = true, .width = 6}), "-INF  ");
    EXPECT_EQ(Real(std::numeric_limits<double>::quiet_NaN(), {.letter = 'G', .plusSign = true}),
              "+NAN");
}

TEST(NumberText, MinusOverridesZeroFill) {
    EXPECT_EQ(Signed(5, {.leftAlign = true, .zeroFill = true, .width = 4}), "5   ");
}

TEST(NumberText, APrecisionOverridesZeroFillOfIntegers) {
    EXPECT_EQ(Signed(-5, {.zeroFill = true, .width = 6, .precision = 3}), "  -005");
}

TEST(NumberText, PlusOverridesTheBlankSign) {
    EXPECT_EQ(Signed(5, {.plusSign = true, .blankSign = true}), "+5");
    EXPECT_EQ(Signed(5, {.blankSign = true}), " 5");
}

TEST(NumberText, ZeroWithoutDigitsHasNoText) {
    EXPECT_EQ(Signed(0, {.precision = 0}), "");
    EXPECT_EQ(Signed(0, {.plusSign = true, .precision = 0}), "+");
    EXPECT_EQ(Unsigned(0, {.letter = 'x', .width = 3, .precision = 0}), "   ");
}

TEST(NumberText, ExtremeIntegers) {
    EXPECT_EQ(Signed(INT64_MIN, {}), "-9223372036854775808");
    EXPECT_EQ(Unsigned(UINT64_MAX, {.letter = 'o'}), "1777777777777777777777");
    EXPECT_EQ(Unsigned(UINT64_MAX, {.letter = 'X'}), "FFFFFFFFFFFFFFFF");
    EXPECT_EQ(Unsigned(UINT64_MAX, {.letter = 'x'}), "ffffffffffffffff");
    EXPECT_EQ(Unsigned(UINT64_MAX, {.letter = 'u'}), "18446744073709551615");
}

TEST(NumberText, HugeWidthsAndPrecisionsTakeNoMemory) {
    NumberDigits digits;
    const FieldFormat wide{.letter = 'f', .width = 2147483647};
    EXPECT_EQ(FormatReal(1.5, wide, digits).Size(), 2147483647U);
    EXPECT_EQ(FormatReal(1.5, wide, digits).body, "1.500000");
    const TextField precise = FormatReal(1.5, {.letter = 'e', .precision = 2147483647}, digits);
    EXPECT_EQ(precise.Size(), 2147483653U);  // 1, point, digits, e+00
    EXPECT_EQ(precise.tail, "e+00");
    EXPECT_EQ(FormatSigned(7, {.precision = 2147483647}, digits).Size(), 2147483647U);
    EXPECT_EQ(FormatReal(0.1, {.letter = 'g', .precision = 2147483647}, digits).Size(), 57U);
}

TEST(NumberText, DigitsBeyondTheExactValueAreZeros) {
    const FieldFormat format{.letter = 'f', .precision = 1500};
    const double tiny = std::numeric_limits<double>::denorm_min();
    EXPECT_EQ(Real(tiny, format), CLibrary(format, "", tiny));
    EXPECT_EQ(Real(1.0, format), "1." + std::string(1500, '0'));
    const FieldFormat scientific{.letter = 'E', .precision = 1500};
    const double largest = std::numeric_limits<double>::max();
    EXPECT_EQ(Real(largest, scientific), CLibrary(scientific, "", largest));
    EXPECT_EQ(Real(largest, format), CLibrary(format, "", largest));
}

TEST(NumberText, QuotesCountForWidthAndPrecision) {
    EXPECT_EQ(Text("abc", '"', {.width = 10}), "     \"abc\"");
    EXPECT_EQ(Text("abc", '\'', {.leftAlign = true, .width = 7}), "'abc'  ");
    EXPECT_EQ(Text("abc", '"', {.precision = 3}), "\"ab");
    EXPECT_EQ(Text("abc", '"', {.precision = 0}), "");
    EXPECT_EQ(Text("", '"', {}), "\"\"");
}

TEST(NumberText, ACommaLocaleChangesNothing) {
    const CommaLocale comma;
    EXPECT_EQ(Real(1234567.25, {.letter = 'f', .precision = 2}), "1234567.25");
    EXPECT_EQ(Real(0.5, {.letter = 'g'}), "0.5");
    EXPECT_EQ(Signed(1234567, {}), "1234567");
}

}  // namespace
}  // namespace kestrion
