#include "cli/si_format.h"

#include <gtest/gtest.h>

#include <limits>

namespace kestrion::cli {
namespace {

TEST(SiFormat, ShowsFourSignificantDigits) {
    EXPECT_EQ(FormatSi(1000, "Hz"), "1.000 kHz");
    EXPECT_EQ(FormatSi(25.3e-3, "V"), "25.30 mV");
    EXPECT_EQ(FormatSi(-0.5, "V"), "-500.0 mV");
    EXPECT_EQ(FormatSi(1.23456e9, "Hz"), "1.235 GHz");
    EXPECT_EQ(FormatSi(99.999, "V"), "100.0 V");
}

TEST(SiFormat, RoundingCarriesIntoTheNextPrefix) {
    EXPECT_EQ(FormatSi(999.96, "Hz"), "1.000 kHz");
    EXPECT_EQ(FormatSi(-999.97e-3, "V"), "-1.000 V");
}

TEST(SiFormat, PowersOfTenKeepTheirPrefixDespiteRoundingErrors) {
    EXPECT_EQ(FormatSi(1e-9, "s"), "1.000 ns");
    EXPECT_EQ(FormatSi(1e-6, "s"), "1.000 µs");
    EXPECT_EQ(FormatSi(1e-3, "s"), "1.000 ms");
    EXPECT_EQ(FormatSi(1e-10, "s"), "100.0 ps");
    EXPECT_EQ(FormatSi(0.1 * 3 * 1e-8, "s"), "3.000 ns");
}

TEST(SiFormat, ZeroHasNoPrefixAndNoDecimals) {
    EXPECT_EQ(FormatSi(0, "V"), "0 V");
    EXPECT_EQ(FormatSi(-0.0, "V"), "0 V");
    EXPECT_EQ(FormatSiShort(0, "s"), "0 s");
}

TEST(SiFormat, ShortFormDropsClosingZeros) {
    EXPECT_EQ(FormatSiShort(400e-9, "s"), "400 ns");
    EXPECT_EQ(FormatSiShort(1.25e3, "Hz"), "1.25 kHz");
    EXPECT_EQ(FormatSiShort(1.996e-6, "s"), "1.996 µs");
    EXPECT_EQ(FormatSiShort(100, "V"), "100 V");
    EXPECT_EQ(FormatSiShort(-5e-3, "s"), "-5 ms");
}

TEST(SiFormat, BeyondThePrefixesTheLastOneStays) {
    EXPECT_EQ(FormatSi(2e-21, "s"), "0.002 as");
    EXPECT_EQ(FormatSiShort(5e21, "Hz"), "5000 EHz");
}

TEST(SiFormat, WhatIsNoNumberIsSaidSo) {
    EXPECT_EQ(FormatSi(std::numeric_limits<double>::infinity(), "V"), "inf V");
    EXPECT_EQ(FormatSiShort(std::numeric_limits<double>::quiet_NaN(), "V"), "nan V");
}

TEST(SiPrefix, IsTheLargestThatStaysAtOneOrAbove) {
    EXPECT_EQ(PrefixFor(0.0021).symbol, "m");
    EXPECT_EQ(PrefixFor(-999).symbol, "");
    EXPECT_EQ(PrefixFor(1000).exponent, 3);
    EXPECT_EQ(PrefixFor(0).exponent, 0);
    EXPECT_EQ(PrefixFor(1e-3).Scale(), 1e-3);
}

}  // namespace
}  // namespace kestrion::cli
