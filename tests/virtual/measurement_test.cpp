// Measurements of the signals: CH1 is four periods of a sine of 1 kHz and 1 V that rises through 0
// V at the trigger, 2 ms after the record's beginning; CH2 a square wave of 10 kHz from 0 V to 3.3
// V; a point every 400 ns.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "tests/virtual/bench.h"
#include "virtual/text.h"

namespace virtual_scope {
namespace {

class Measurement : public testing::Test {
  protected:
    Measurement() { bench_.Write("SELECT:CH2 1;CH3 1;CH4 1;MATH1 1;REF1 1"); }

    double Ask(const std::string& query) { return ParseNumber(bench_.Query(query)).value_or(-999); }
    double Value(const std::string& source, const std::string& type) {
        bench_.Write("MEASUREMENT:IMMED:SOURCE1 " + source + ";TYPE " + type);
        return Ask("MEASUREMENT:IMMED:VALUE?");
    }
    std::string Text(const std::string& source, const std::string& type) {
        bench_.Write("MEASUREMENT:IMMED:SOURCE1 " + source + ";TYPE " + type);
        return bench_.Query("MEASUREMENT:IMMED:VALUE?");
    }

    BareBench bench_;
};

constexpr const char* kNone = "9.91E+37";

TEST_F(Measurement, OfTheSine) {
    bench_.Write("MEASUREMENT:METHOD MINMAX");
    const struct {
        const char* type;
        double expected;
        double tolerance;
    } kCases[] = {
        {"FREQUENCY", 1000, 1e-3},
        {"PERIOD", 1e-3, 1e-9},
        {"RMS", 0.70710678, 1e-6},
        {"PK2PK", 2, 1e-6},
        {"MAXIMUM", 1, 1e-6},
        {"MINIMUM", -1, 1e-6},
        {"HIGH", 1, 1e-6},
        {"LOW", -1, 1e-6},
        {"AMPLITUDE", 2, 1e-6},
        {"MEAN", 0, 1e-9},
        {"RISE", 0.295167235e-3, 1e-9},  // from -0.8 V to 0.8 V: asin(0.8) / pi of a period
        {"FALL", 0.295167235e-3, 1e-9},
        {"PWIDTH", 0.5e-3, 1e-9},
        {"NWIDTH", 0.5e-3, 1e-9},
        {"PDUTY", 50, 1e-4},
        {"NDUTY", 50, 1e-4},
        {"CRMS", 0.70710678, 1e-6},
        {"CMEAN", 0, 1e-3},
        {"AREA", 0, 1e-12},
        {"CAREA", 0, 1e-6},
        {"BURST", 3e-3, 1e-9},  // the first edge is after half a period, the last one before it
        {"POVERSHOOT", 0, 1e-6},
        {"NOVERSHOOT", 0, 1e-6},
        {"MEDIAN", 0, 1e-3},
        {"STDDEV", 0.70710678, 1e-6},
        // Within one standard deviation the sine is for half of its period, within 1.4142 always.
        {"SIGMA1", 50, 0.1},
        {"SIGMA2", 100, 1e-9},
        {"SIGMA3", 100, 1e-9},
    };
    for (const auto& [type, expected, tolerance] : kCases) {
        EXPECT_NEAR(Value("CH1", type), expected, tolerance) << type;
    }
}

TEST_F(Measurement, OfTheSquareWave) {
    const struct {
        const char* type;
        double expected;
    } kCases[] = {{"HIGH", 3.3},      {"LOW", 0},           {"FREQUENCY", 1e4}, {"PWIDTH", 50e-6},
                  {"NWIDTH", 50e-6},  {"MEAN", 1.65},       {"RMS", 2.33345},   {"RISE", 320e-9},
                  {"FALL", 320e-9},   {"POVERSHOOT", 0},    {"STDDEV", 1.65},   {"CMEAN", 1.65},
                  {"CAREA", 1.65e-4}, {"AREA", 1.65 * 4e-3}};
    for (const auto& [type, expected] : kCases) {
        EXPECT_NEAR(Value("CH2", type), expected, 1e-5 * std::abs(expected) + 1e-10) << type;
    }
}

TEST_F(Measurement, HighAndLowByEachMethod) {
    // The most frequent values of a sine are those at its peaks.
    EXPECT_NEAR(Value("CH1", "HIGH"), 1, 0.01);
    EXPECT_LT(Value("CH1", "HIGH"), 1);
    bench_.Write("MEASUREMENT:METHOD MEAN");
    EXPECT_NEAR(Value("CH1", "HIGH"), 2 / std::numbers::pi, 1e-3);
    EXPECT_NEAR(Value("CH1", "LOW"), -2 / std::numbers::pi, 1e-3);
    EXPECT_NEAR(Value("CH1", "POVERSHOOT"), 100 * (1 - 0.63662) / 1.27324, 0.1);
}

TEST_F(Measurement, DelayGoesFromAnEdgeToAnEdge) {
    // The sine first rises at -1 ms. The square wave's edges lie half-way to the point before them.
    bench_.Write("MEASUREMENT:IMMED:SOURCE1 CH1;SOURCE2 CH2;TYPE DELAY");
    EXPECT_NEAR(Ask("MEASUREMENT:IMMED:VALUE?"), 99.8e-6, 1e-9);
    bench_.Write("MEASUREMENT:IMMED:DELAY:EDGE2 FALL");
    EXPECT_NEAR(Ask("MEASUREMENT:IMMED:VALUE?"), 49.8e-6, 1e-9);
    bench_.Write("MEASUREMENT:IMMED:DELAY:EDGE2 RISE;DIRECTION BACKWARDS");
    EXPECT_NEAR(Ask("MEASUREMENT:IMMED:VALUE?"), 2.8998e-3, 1e-9);
    bench_.Write("MEASUREMENT:IMMED:DELAY:EDGE1 FALL");  // at -1.5 ms
    EXPECT_NEAR(Ask("MEASUREMENT:IMMED:VALUE?"), 3.3998e-3, 1e-9);
}

TEST_F(Measurement, PhaseIsInDegreesOfTheFirstSource) {
    bench_.Write("MATH1:DEFINE '-CH1';:MEASUREMENT:IMMED:SOURCE2 MATH1");
    EXPECT_NEAR(Value("CH1", "PHASE"), 180, 1e-3);
    bench_.Write("MEASUREMENT:IMMED:SOURCE2 CH1");
    EXPECT_NEAR(Value("CH1", "PHASE"), 0, 1e-3);
}

TEST_F(Measurement, ReferenceLevelsInPercentAndAbsolute) {
    bench_.Write("MEASUREMENT:METHOD MINMAX;REFLEVEL:PERCENT:MID 75");  // 0.5 V
    EXPECT_NEAR(Value("CH1", "PWIDTH"), 1e-3 / 3, 1e-9);
    bench_.Write("MEASUREMENT:REFLEVEL:METHOD ABSOLUTE;ABSOLUTE:HIGH 0.5;LOW -0.5;MID 0");
    EXPECT_NEAR(Value("CH1", "PWIDTH"), 0.5e-3, 1e-9);
    EXPECT_NEAR(Value("CH1", "RISE"), 1e-3 / 6, 1e-9);
    // A slot has levels of its own.
    bench_.Write("MEASUREMENT:MEAS1:METHOD MINMAX;SOURCE1 CH1;TYPE RISE");
    EXPECT_NEAR(Ask("MEASUREMENT:MEAS1:VALUE?"), 0.295167235e-3, 1e-9);
}

TEST_F(Measurement, MathAndReferencesAreMeasuredToo) {
    EXPECT_NEAR(Value("REF1", "FREQUENCY"), 1000, 1e-2);
    EXPECT_NEAR(Value("MATH1", "MEAN"), -1.65, 1e-6);
    EXPECT_NEAR(Value("MATH1", "MINIMUM"), -4.3, 1e-2);
}

TEST_F(Measurement, AGateLeavesAPart) {
    bench_.Write("MEASUREMENT:GATING CURSOR;:CURSOR:VBARS:POSITION1 250E-6;POSITION2 0");
    EXPECT_NEAR(Value("CH1", "MAXIMUM"), 1, 1e-6);
    EXPECT_NEAR(Value("CH1", "MINIMUM"), 0, 1e-6);
    EXPECT_NEAR(Value("CH1", "MEAN"), 2 / std::numbers::pi, 1e-3);
    // A sixteenth of the record, 125 us to either side of the trigger.
    bench_.Write("MEASUREMENT:GATING ZOOM1;:ZOOM:CH1:HORIZONTAL:SCALE 16");
    EXPECT_NEAR(Value("CH1", "MAXIMUM"), 0.70443, 1e-5);   // at 124.4 us
    EXPECT_NEAR(Value("CH1", "MINIMUM"), -0.70622, 1e-5);  // at -124.8 us
    bench_.Write("MEASUREMENT:GATING ON;:CURSOR:VBARS:POSITION1 1;POSITION2 2");
    EXPECT_EQ(Text("CH1", "MAXIMUM"), kNone);
}

TEST_F(Measurement, WhatAWaveformDoesNotHaveIsNoNumber) {
    for (const char* type : {"HITS", "PEAKHITS", "WAVEFORMS", "EYEHEIGHT", "QFACTOR", "RMSNOISE",
                             "EXTINCTRATIO", "DISTDUTY", "UNDEFINED"}) {
        EXPECT_EQ(Text("CH1", type), kNone) << type;
    }
    EXPECT_EQ(Text("HISTOGRAM", "MEAN"), kNone);
    bench_.Write("CH1:COUPLING GND");
    for (const char* type : {"FREQUENCY", "PERIOD", "RISE", "FALL", "PWIDTH", "NDUTY", "BURST",
                             "CRMS", "POVERSHOOT", "DELAY", "PHASE"}) {
        EXPECT_EQ(Text("CH1", type), kNone) << type;
    }
    EXPECT_EQ(Text("CH1", "PK2PK"), "0.0000");
    EXPECT_EQ(Text("CH1", "AMPLITUDE"), "0.0000");
    bench_.Write("SELECT:CH2 0");
    EXPECT_EQ(Text("CH2", "MEAN"), kNone);
    EXPECT_EQ(bench_.Error(), kNoError);
}

TEST_F(Measurement, UnitsFollowTheType) {
    const struct {
        const char* type;
        const char* unit;
    } kCases[] = {{"RISE", "\"s\""},   {"FREQUENCY", "\"Hz\""}, {"RMS", "\"V\""},
                  {"PDUTY", "\"%\""},  {"AREA", "\"Vs\""},      {"PHASE", "\"deg\""},
                  {"DELAY", "\"s\""},  {"STDDEV", "\"V\""},     {"HITS", "\"\""},
                  {"SIGMA2", "\"%\""}, {"UNDEFINED", "\"\""}};
    for (const auto& [type, unit] : kCases) {
        EXPECT_EQ(bench_.Query(std::string("MEASUREMENT:MEAS4:TYPE ") + type + ";UNITS?"), unit);
    }
}

TEST_F(Measurement, TheSixSettingsOfOneWriteAreReadWithTheValue) {
    bench_.Write(
        "MEASUREMENT:MEAS2:SOURCE1 CH1;SOURCE2 CH2;TYPE DELAY;DELAY:DIRECTION FORWARDS;EDGE1 RISE;"
        "EDGE2 FALL");
    EXPECT_EQ(bench_.Query("MEASUREMENT:MEAS2:SOURCE1?;SOURCE2?;TYPE?;DELAY:DIRECTION?;EDGE1?;"
                           "EDGE2?"),
              "CH1;CH2;DELAY;FORWARDS;RISE;FALL");
    const std::string answer = bench_.Query("MEASUREMENT:MEAS2:VALUE?;UNIT?");
    EXPECT_NEAR(ParseNumber(answer.substr(0, answer.find(';'))).value_or(0), 49.8e-6, 1e-9);
    EXPECT_EQ(answer.substr(answer.find(';')), ";\"s\"");
}

TEST_F(Measurement, TheUnitOfReferenceLevelsIsABranch) {
    bench_.Write(
        "MEASUREMENT:MEAS3:METHOD MINMAX;REFLEVEL:METHOD ABSOLUTE;ABSOLUTE:HIGH 3;LOW 1;"
        "MID 2;MID2 2.5");
    EXPECT_EQ(bench_.Query("MEASUREMENT:MEAS3:METHOD?;REFLEVEL:METHOD?"), "MINMAX;ABSOLUTE");
    EXPECT_EQ(bench_.Query("MEASUREMENT:MEAS3:REFLEVEL:ABSOLUTE:HIGH?;LOW?;MID?;MID2?"),
              "3.0000;1.0000;2.0000;2.5000");
    EXPECT_EQ(bench_.Query("MEASUREMENT:METHOD?;REFLEVEL:METHOD?"), "HISTOGRAM;PERCENT");
    EXPECT_EQ(bench_.Error(), kNoError);
}

TEST_F(Measurement, StatisticsAreOverTheAcquisitionsSinceTheReset) {
    bench_.Write("MEASUREMENT:MEAS1:SOURCE1 CH4;TYPE MAXIMUM;:MEASUREMENT:STATISTICS:COUNT RESET");
    EXPECT_EQ(bench_.Query("MEASUREMENT:MEAS1:COUNT?;MEAN?"), "0;9.91E+37");
    bench_.Advance(std::chrono::milliseconds(15));  // three acquisitions
    EXPECT_EQ(bench_.Query("MEASUREMENT:MEAS1:COUNT?"), "3");
    const double minimum = Ask("MEASUREMENT:MEAS1:MINIMUM?");
    const double maximum = Ask("MEASUREMENT:MEAS1:MAXIMUM?");
    const double mean = Ask("MEASUREMENT:MEAS1:MEAN?");
    EXPECT_LT(minimum, mean);
    EXPECT_LT(mean, maximum);
    EXPECT_GT(minimum, 0.19);
    EXPECT_LE(maximum, 0.2);
    EXPECT_GT(Ask("MEASUREMENT:MEAS1:STDDEV?"), 0);
    // The sine is the same each time.
    bench_.Write("MEASUREMENT:MEAS1:SOURCE1 CH1");
    EXPECT_NEAR(Ask("MEASUREMENT:MEAS1:MEAN?"), 1, 1e-6);
    EXPECT_NEAR(Ask("MEASUREMENT:MEAS1:STDDEV?"), 0, 1e-9);
    bench_.Write("MEASUREMENT:STATISTICS:COUNT RESET");
    EXPECT_EQ(bench_.Query("MEASUREMENT:MEAS1:COUNT?"), "0");
}

TEST_F(Measurement, StatisticsWithoutATriggerAreOfRecordsThatBeginAnywhere) {
    bench_.Write("MEASUREMENT:GATING CURSOR;:CURSOR:VBARS:POSITION1 0;POSITION2 100E-6");
    bench_.Write("MEASUREMENT:MEAS1:TYPE MEAN;:MEASUREMENT:STATISTICS:COUNT RESET");
    bench_.Advance(std::chrono::milliseconds(50));
    EXPECT_NEAR(Ask("MEASUREMENT:MEAS1:STDDEV?"), 0, 1e-9);
    bench_.Write("TRIGGER:A:LEVEL 5");
    EXPECT_GT(Ask("MEASUREMENT:MEAS1:STDDEV?"), 0.3);
    EXPECT_EQ(bench_.Query("MEASUREMENT:MEAS1:VALUE?"), bench_.Query("MEASUREMENT:MEAS1:VALUE?"));
}

TEST_F(Measurement, AStoppedInstrumentIsMeasuredByItsLastRecord) {
    const double value = Value("CH4", "MAXIMUM");
    bench_.Write("ACQUIRE:STATE OFF");
    bench_.Advance(std::chrono::seconds(1));
    EXPECT_EQ(Value("CH4", "MAXIMUM"), value);
}

TEST_F(Measurement, LongRecordsAreThinnedOut) {
    bench_.Write("HORIZONTAL:RECORDLENGTH 100000000;:MEASUREMENT:METHOD MINMAX");
    EXPECT_NEAR(Value("CH1", "FREQUENCY"), 1000, 1e-3);
    EXPECT_NEAR(Value("CH1", "MAXIMUM"), 1, 1e-6);
}

TEST(MeasurementFamilies, TheOlderHeronHasFewerMethodsAndGates) {
    BareBench bench("HR5104");
    for (const char* command : {"MEASUREMENT:METHOD MEAN", "MEASUREMENT:MEAS1:METHOD MEAN",
                                "MEASUREMENT:GATING ZOOM1", "MEASUREMENT:GATING ZOOM4"}) {
        bench.Write(command);
        EXPECT_EQ(bench.Error(), "-221,\"Settings conflict\"") << command;
    }
    bench.Write("MEASUREMENT:METHOD MINMAX;GATING ZOOM");
    EXPECT_EQ(bench.Error(), kNoError);
}

TEST(MeasurementFamilies, AMissingChannelIsNoSource) {
    BareBench bench("PL77002SX");
    for (const char* source : {"CH3", "CH4", "MATH3", "REF4"}) {
        bench.Write(std::string("MEASUREMENT:IMMED:SOURCE1 ") + source);
        EXPECT_EQ(bench.Error(), "-241,\"Hardware missing\"") << source;
    }
}

}  // namespace
}  // namespace virtual_scope
