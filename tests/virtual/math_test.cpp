// Math waveforms and their definitions. Points are floats, most significant byte first.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <numbers>

#include "tests/virtual/bench.h"

namespace virtual_scope {
namespace {

class Math : public testing::Test {
  protected:
    Math() {
        bench_.Write("HORIZONTAL:RECORDLENGTH 1000;:SELECT:MATH1 1;MATH2 1;:DATA:SOURCE MATH1");
    }

    // The volts of one point, counted from 0; the trigger is number 500, a point every 4 us.
    double Point(int number) {
        const std::string place = std::to_string(number + 1);
        const std::string data =
            bench_.Query("DATA:START " + place + ";STOP " + place + ";:CURVE?");
        EXPECT_EQ(data.substr(0, 3), "#14");
        std::uint32_t bits = 0;
        for (const char byte : data.substr(3)) {
            bits = (bits << 8) | static_cast<unsigned char>(byte);
        }
        return static_cast<double>(std::bit_cast<float>(bits));
    }

    BareBench bench_;
};

// 100 us after the trigger: 0.58779 V on CH1; CH2 is 3.3 V for 50 us, 0 V for 50 us, and so on.
constexpr double kSine = 0.5877853;

TEST_F(Math, DefinitionsOfPowerOn) {
    EXPECT_EQ(bench_.Query("MATH1:DEFINE?;:MATH2:DEFINE?;:MATH3:DEFINE?;:MATH4:DEFINE?"),
              "\"CH1-CH2\";\"CH1+CH2\";\"CH1*CH2\";\"CH1\"");
    EXPECT_NEAR(Point(525), kSine - 3.3, 1e-6);
    EXPECT_NEAR(Point(540), std::sin(2 * std::numbers::pi * 0.16), 1e-6);
}

TEST_F(Math, SumsProductsAndQuotients) {
    const struct {
        const char* definition;
        double expected;
    } kCases[] = {
        {"CH1+CH2", kSine + 3.3},
        {"CH1*CH2", kSine * 3.3},
        {"CH1/CH2", kSine / 3.3},
        {"CH2-CH1", 3.3 - kSine},
        {"ch1", kSine},
        {"-CH1", -kSine},
        {"1+2*CH1", 1 + 2 * kSine},
        {"(1+2)*CH1", 3 * kSine},
        {" 1.5E1 * CH1 ", 15 * kSine},
        {"1-2-3", -4},
        {"8/2/2", 2},
        {"2*-CH1", -2 * kSine},
        {"REF1+CH1", 2 * kSine},
    };
    for (const auto& [definition, expected] : kCases) {
        bench_.Write(std::string("MATH1:DEFINE '") + definition + '\'');
        EXPECT_NEAR(Point(525), expected, 1e-5) << definition;
        EXPECT_EQ(bench_.Error(), kNoError) << definition;
    }
}

TEST_F(Math, ADefinitionMayUseAMathWaveformOfALowerNumber) {
    bench_.Write("MATH1:DEFINE 'CH1';:MATH2:DEFINE 'MATH1*4';:DATA:SOURCE MATH2");
    EXPECT_NEAR(Point(525), 4 * kSine, 1e-6);
    bench_.Write("MATH1:DEFINE 'CH2'");
    EXPECT_NEAR(Point(525), 13.2, 1e-6);
}

TEST_F(Math, AReferenceIsTakenByItsTimes) {
    // The reference has a point every 4 us, from 2 ms before to 2 ms after the trigger; the record
    // now has one every 8 us from 4 ms before it on.
    bench_.Write("HORIZONTAL:SCALE 800E-6;:MATH1:DEFINE 'REF1'");
    EXPECT_NEAR(Point(500), 0, 1e-6);
    EXPECT_NEAR(Point(525), std::sin(2 * std::numbers::pi * 0.2), 1e-6);
    EXPECT_EQ(Point(100), 0);
    EXPECT_EQ(Point(900), 0);
}

TEST_F(Math, WhatCannotBeReadIsRefusedAndTheOldDefinitionStays) {
    const std::string deep = std::string(40, '(') + "CH1" + std::string(40, ')');
    for (const std::string& definition :
         {std::string("CH1+"), std::string(""), std::string("CH9"), std::string("CH0"),
          std::string("CH"), std::string("(CH1"), std::string("CH1)"), std::string("CH1 CH2"),
          std::string("ABS(CH1)"), std::string("MATH1"), std::string("MATH2"), std::string("1E999"),
          deep}) {
        bench_.Write("MATH1:DEFINE '" + definition + '\'');
        EXPECT_EQ(bench_.Error(), "-171,\"Invalid expression\"") << definition;
    }
    EXPECT_EQ(bench_.Query("MATH1:DEFINE?"), "\"CH1-CH2\"");
    EXPECT_NEAR(Point(525), kSine - 3.3, 1e-6);
}

TEST_F(Math, AMissingChannelIsRefused) {
    BareBench two("PL77002SX");
    for (const char* definition : {"CH3", "REF4", "CH1+MATH3"}) {
        two.Write(std::string("MATH2:DEFINE '") + definition + '\'');
        EXPECT_EQ(two.Error(), "-241,\"Hardware missing\"") << definition;
    }
}

TEST_F(Math, ResetBringsTheFirstDefinitionsBack) {
    bench_.Write("MATH1:DEFINE 'CH1';*RST;:HORIZONTAL:RECORDLENGTH 1000");
    bench_.Write("SELECT:MATH1 1;:DATA:SOURCE MATH1");
    EXPECT_EQ(bench_.Query("MATH1:DEFINE?"), "\"CH1-CH2\"");
    EXPECT_NEAR(Point(525), kSine - 3.3, 1e-6);
}

}  // namespace
}  // namespace virtual_scope
