#include "io/number_forms.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace kestrion {
namespace {

std::string Form(char form, double value, const FieldFormat& format = {}) {
    NumberDigits digits;
    TextField field;
    EXPECT_EQ(FormatNumericForm(form, value, format, digits, field), S_OK);
    std::string text;
    field.AppendTo(text);
    return text;
}

HRESULT FormStatus(char form, double value) {
    NumberDigits digits;
    TextField field;
    return FormatNumericForm(form, value, {}, digits, field);
}

TEST(NumberForms, DecimalIntegerRoundsByAddingAHalfAndCutting) {
    EXPECT_EQ(Form('1', 2.5), "3");
    EXPECT_EQ(Form('1', 2.4), "2");
    EXPECT_EQ(Form('1', -2.5), "-2");
    EXPECT_EQ(Form('1', -2.6), "-2");
    EXPECT_EQ(Form('1', -3.0), "-2");  // the rule is the same below zero
    EXPECT_EQ(Form('1', -0.2), "0");
    EXPECT_EQ(Form('1', 42, {.plusSign = true, .zeroFill = true, .width = 6}), "+00042");
}

TEST(NumberForms, FixedPointAndExponential) {
    EXPECT_EQ(Form('2', 5), "5.000000");
    EXPECT_EQ(Form('2', -1.255, {.width = 8, .precision = 1}), "    -1.3");
    EXPECT_EQ(Form('3', 12345.5), "1.234550E+04");
    EXPECT_EQ(Form('3', 0.5, {.precision = 0}), "5E-01");
}

TEST(NumberForms, PrefixStandsInFrontWhereThereIsNoPadding) {
    EXPECT_EQ(Form('H', 255), "#HFF");
    EXPECT_EQ(Form('Q', 8), "#Q10");
    EXPECT_EQ(Form('H', 0x1234, {.width = 4}), "#H1234");  // grows by two
    EXPECT_EQ(Form('H', 254.6), "#HFF");
}

TEST(NumberForms, PrefixTakesThePlaceOfTwoPaddingBlanks) {
    EXPECT_EQ(Form('H', 255, {.width = 5}), " #HFF");
    EXPECT_EQ(Form('H', 255, {.leftAlign = true, .width = 5}), "#HFF ");
    EXPECT_EQ(Form('Q', 8, {.width = 6}), "  #Q10");
    EXPECT_EQ(Form('H', 255, {.width = 3}), "#HFF");  // one blank of padding, all of it goes
}

TEST(NumberForms, PrefixTakesThePlaceOfTwoPaddingZeros) {
    EXPECT_EQ(Form('H', 255, {.zeroFill = true, .width = 6}), "#H00FF");
    EXPECT_EQ(Form('H', 255, {.zeroFill = true, .width = 3}), "#HFF");
    EXPECT_EQ(Form('H', 0, {.zeroFill = true, .width = 4}), "#H00");
    EXPECT_EQ(Form('H', 0), "#H0");  // the value's own digit is no padding
}

TEST(NumberForms, ZerosOfAPrecisionStay) {
    EXPECT_EQ(Form('H', 255, {.precision = 4}), "#H00FF");
    EXPECT_EQ(Form('H', 255, {.width = 8, .precision = 4}), "  #H00FF");
    EXPECT_EQ(Form('H', 255, {.zeroFill = true, .width = 8, .precision = 4}), "  #H00FF");
}

TEST(NumberForms, NegativeValuesShowTheir64Bits) {
    EXPECT_EQ(Form('H', -2), "#HFFFFFFFFFFFFFFFF");  // -2 and a half is -1.5, cut to -1
    EXPECT_EQ(Form('Q', -2), "#Q1777777777777777777777");
}

TEST(NumberForms, Binary) {
    EXPECT_EQ(Form('B', 5), "#B101");
    EXPECT_EQ(Form('B', 0), "#B0");
    EXPECT_EQ(Form('B', 5, {.precision = 6}), "#B000101");
    EXPECT_EQ(Form('B', 5, {.width = 8}), "   #B101");
    EXPECT_EQ(Form('B', 5, {.leftAlign = true, .width = 8}), "#B101   ");
    EXPECT_EQ(Form('B', 5, {.zeroFill = true, .width = 8}), "#B000101");
    EXPECT_EQ(Form('B', 5, {.zeroFill = true, .width = 8, .precision = 4}), "  #B0101");
    EXPECT_EQ(Form('B', 5, {.leftAlign = true, .zeroFill = true, .width = 8}), "#B101   ");
    EXPECT_EQ(Form('B', 5, {.width = 3}), "#B101");
}

TEST(NumberForms, BinaryTakesTheLow32Bits) {
    EXPECT_EQ(Form('B', 4294967295.0), "#B11111111111111111111111111111111");
    EXPECT_EQ(Form('B', 4294967298.0), "#B10");
    EXPECT_EQ(Form('B', -2), "#B11111111111111111111111111111111");
}

TEST(NumberForms, ValuesWithoutAWholeNumberOf64BitsFail) {
    EXPECT_EQ(FormStatus('1', 1e19), E_INVALIDARG);
    EXPECT_EQ(FormStatus('H', -1e19), E_INVALIDARG);
    EXPECT_EQ(FormStatus('B', std::nan("")), E_INVALIDARG);
    EXPECT_EQ(FormStatus('2', 1e300), S_OK);
}

TEST(NumberForms, UnknownFormFails) {
    EXPECT_EQ(FormStatus('4', 1), E_UNEXPECTED);
}

}  // namespace
}  // namespace kestrion
