// Waveforms that a program stores in the reference memories.
#include <gtest/gtest.h>

#include "tests/virtual/bench.h"

namespace virtual_scope {
namespace {

class Reference : public testing::Test {
  protected:
    Reference() { bench_.Write("SELECT:REF1 1;REF3 1;:DATA:SOURCE REF3;DESTINATION REF3"); }

    std::string Upload(const std::string& preamble, const std::string& curve) {
        bench_.Write("WFMINPRE:" + preamble);
        bench_.Write("CURVE " + curve);
        return bench_.Error();
    }
    std::string Curve() { return bench_.Query("DATA:START 1;STOP 1000000;:CURVE?"); }
    std::string Preamble() {
        return bench_.Query("WFMOUTPRE:NR_PT?;XINCR?;XZERO?;PT_OFF?;YMULT?;YOFF?;YZERO?");
    }

    BareBench bench_;
};

// 1.0, -2.5 and 3.3 as IEEE 754 singles: 0x3F800000, 0xC0200000 and 0x40533333.
const std::string kFloats("\x00\x00\x80\x3F\x00\x00\x20\xC0\x33\x33\x53\x40", 12);

TEST_F(Reference, FloatsComeBackAsFloats) {
    EXPECT_EQ(Upload("NR_PT 3;PT_OFF 1;XINCR 1e-9;:WFMINPRE:ENCDG BIN;BN_FMT FP;BYT_NR 4;"
                     "YMULT 1.0;:WFMINPRE:BYT_OR LSB",
                     "#212" + kFloats),
              kNoError);
    EXPECT_EQ(bench_.Query("WFMOUTPRE:BYT_NR 1;BYT_NR?;BN_FMT?"), "4;FP");
    bench_.Write("WFMOUTPRE:BYT_OR LSB");
    EXPECT_EQ(Curve(), "#212" + kFloats);
    EXPECT_EQ(Preamble(), "3;1.0000E-9;0.0000;1;1.0000;0.0000;0.0000");
}

TEST_F(Reference, SignedBytesComeBackAsLevels) {
    const std::string data("\x00\x7F\x80\x19;", 5);
    EXPECT_EQ(Upload("NR_PT 100;PT_OFF 2;XINCR 1E-6;XZERO 2E-6;BN_FMT RI;BYT_NR 1;YMULT 0.02;"
                     "YOFF 25;YZERO 0.5",
                     "#15" + data),
              kNoError);
    EXPECT_EQ(Curve(), "#15" + data);
    EXPECT_EQ(Preamble(), "5;1.0000E-6;2.0000E-6;2;20.0000E-3;25.0000;500.0000E-3");
}

TEST_F(Reference, TwoByteLevelsInBothOrdersAndBothSigns) {
    EXPECT_EQ(Upload("BN_FMT RI;BYT_NR 2;BYT_OR MSB;YMULT 1E-3;NR_PT 100",
                     std::string("#14\x12\x34\xFF\xFE")),
              kNoError);
    bench_.Write("WFMOUTPRE:BN_FMT RI;BYT_NR 2;BYT_OR LSB");
    EXPECT_EQ(Curve(), std::string("#14\x34\x12\xFE\xFF"));
    EXPECT_EQ(
        Upload("BN_FMT RP;BYT_NR 2;BYT_OR LSB;YOFF 32768", std::string("#14\x01\x80\xFF\x7F")),
        kNoError);
    EXPECT_EQ(Curve(), std::string("#14\x01\x00\xFF\xFF", 7));  // 1 and -1
}

TEST_F(Reference, NumbersWithCommasAreLevelsToo) {
    EXPECT_EQ(Upload("BN_FMT RI;BYT_NR 1;YMULT 0.5;NR_PT 100", "1, -2,3"), kNoError);
    EXPECT_EQ(Curve(), "#13\x01\xFE\x03");
    EXPECT_EQ(bench_.Query("WFMOUTPRE:YMULT?"), "500.0000E-3");
}

TEST_F(Reference, NoMorePointsAreKeptThanThePreambleSays) {
    EXPECT_EQ(Upload("BN_FMT RI;BYT_NR 1;NR_PT 2", "#13\x01\x02\x03"), kNoError);
    EXPECT_EQ(Curve(), "#12\x01\x02");
}

TEST_F(Reference, WhatIsNoWaveformIsRefusedAndTheOldOneStays) {
    const char* const kBlock = "-161,\"Invalid block data\"";
    EXPECT_EQ(Upload("BN_FMT RI;BYT_NR 2", "#13abc"), kBlock);
    EXPECT_EQ(Upload("BYT_NR 1", "#15abcd"), kBlock);  // a byte short
    EXPECT_EQ(Upload("BYT_NR 1", "#10"), kBlock);
    EXPECT_EQ(Upload("BYT_NR 1", "#0abc"), kBlock);
    EXPECT_EQ(Upload("BYT_NR 1", "1,two"), "-104,\"Data type error\"");
    EXPECT_EQ(Upload("BN_FMT FP;BYT_NR 1", "#14abcd"), "-221,\"Settings conflict\"");
    EXPECT_EQ(Upload("BN_FMT RI;YMULT 0", "#14abcd"), "-221,\"Settings conflict\"");
    EXPECT_EQ(Preamble(), "1000;4.0000E-6;0.0000;500;20.0000E-3;0.0000;0.0000");
}

TEST_F(Reference, EachMemoryIsItsOwnAndOutlivesAReset) {
    EXPECT_EQ(Upload("BN_FMT RI;BYT_NR 1;NR_PT 100", "#12\x05\x06"), kNoError);
    bench_.Write("*RST;:SELECT:REF1 1;REF3 1;:DATA:SOURCE REF3");
    EXPECT_EQ(Curve(), "#12\x05\x06");
    bench_.Write("DATA:SOURCE REF1");
    EXPECT_EQ(bench_.Query("WFMOUTPRE:NR_PT?"), "1000");
}

TEST_F(Reference, AMillionFloatsFitIntoOneMessage) {
    const std::string data(4'000'000, '\0');
    EXPECT_EQ(Upload("BN_FMT FP;BYT_NR 4;NR_PT 1000000", "#74000000" + data), kNoError);
    EXPECT_EQ(bench_.Query("DATA:STOP 1000000;:WFMOUTPRE:NR_PT?"), "1000000");
}

}  // namespace
}  // namespace virtual_scope
