#include "virtual/text.h"

#include <gtest/gtest.h>

#include <locale>

namespace virtual_scope {
namespace {

TEST(VirtualText, RealsAreInEngineeringNotation) {
    EXPECT_EQ(FormatReal(0), "0.0000");
    EXPECT_EQ(FormatReal(50), "50.0000");
    EXPECT_EQ(FormatReal(1e6), "1.0000E+6");
    EXPECT_EQ(FormatReal(400e-6), "400.0000E-6");
    EXPECT_EQ(FormatReal(-0.5), "-500.0000E-3");
    EXPECT_EQ(FormatReal(999), "999.0000");
    EXPECT_EQ(FormatReal(1000), "1.0000E+3");
    EXPECT_EQ(FormatReal(0.001), "1.0000E-3");
    EXPECT_EQ(FormatReal(1e-12), "1.0000E-12");
    EXPECT_EQ(FormatReal(2.5e10), "25.0000E+9");
}

TEST(VirtualText, RealsKeepEveryDigitThatTheyNeed) {
    EXPECT_EQ(FormatReal(1.23456789e-3), "1.23456789E-3");
    EXPECT_EQ(FormatReal(123.456789012345), "123.456789012345");
    for (const double value : {1.0 / 3, 4e-11, 2.0 / 3e9, 1.7976931348623157e308}) {
        EXPECT_EQ(ParseNumber(FormatReal(value)), value);
    }
}

struct DecimalComma : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
};

TEST(VirtualText, NumbersDoNotDependOnTheLocale) {
    const std::locale before =
        std::locale::global(std::locale(std::locale::classic(), new DecimalComma));
    EXPECT_EQ(FormatReal(0.5), "500.0000E-3");
    EXPECT_EQ(ParseNumber("1.5"), 1.5);
    EXPECT_EQ(ParseNumber("1,5"), std::nullopt);
    std::locale::global(before);
}

TEST(VirtualText, NumbersComeInThreeForms) {
    EXPECT_EQ(ParseNumber("10"), 10);
    EXPECT_EQ(ParseNumber("-10"), -10);
    EXPECT_EQ(ParseNumber("+10"), 10);
    EXPECT_EQ(ParseNumber(".5"), 0.5);
    EXPECT_EQ(ParseNumber("2."), 2);
    EXPECT_EQ(ParseNumber("4.0E-4"), 4e-4);
    EXPECT_EQ(ParseNumber("1e+03"), 1000);
}

TEST(VirtualText, OtherTextIsNoNumber) {
    for (const char* text :
         {"", "+", "-", "+-1", "1x", "inf", "-inf", "nan", "E3", "1 2", "0x10"}) {
        EXPECT_EQ(ParseNumber(text), std::nullopt) << text;
    }
}

TEST(VirtualText, QuotesComeOffInBothKinds) {
    EXPECT_EQ(Unquote("\"abc\""), "abc");
    EXPECT_EQ(Unquote("'abc'"), "abc");
    EXPECT_EQ(Unquote("\"say \"\"hi\"\"\""), "say \"hi\"");
    EXPECT_EQ(Unquote("'it''s'"), "it's");
    EXPECT_EQ(Unquote("\"it's\""), "it's");
    EXPECT_EQ(Unquote("\"\""), "");
}

TEST(VirtualText, WhatIsNotOneWholeStringIsRefused) {
    for (const char* text : {"abc", "\"abc", "abc\"", "\"", "\"a\" \"b\"", "\"a'", "'a'b'"}) {
        EXPECT_EQ(Unquote(text), std::nullopt) << text;
    }
}

TEST(VirtualText, QuoteDoublesTheQuotesInside) {
    EXPECT_EQ(Quote("say \"hi\""), "\"say \"\"hi\"\"\"");
}

TEST(VirtualText, TheNoBreakSpaceIsWhiteSpace) {
    EXPECT_EQ(Trim("\xA0 \t1\r\n"), "1");
    EXPECT_TRUE(IsBlank('\xA0'));
    EXPECT_FALSE(IsBlank('\n'));
}

}  // namespace
}  // namespace virtual_scope
