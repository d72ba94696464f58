// Waveforms as they are sent. A record of 1000 points at 400 us/div has a point every 4 us; with
// 500 mV/div a level of one byte is 20 mV, so that the sine of 1 V has 50 levels.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstring>
#include <numbers>

#include "tests/virtual/bench.h"

namespace virtual_scope {
namespace {

class Curve : public testing::Test {
  protected:
    Curve() { bench_.Write("HORIZONTAL:RECORDLENGTH 1000"); }

    // The data of a block, whose header has to be in order.
    static std::string DataOf(const std::string& response) {
        EXPECT_GE(response.size(), 3U);
        EXPECT_EQ(response[0], '#');
        const auto digits = static_cast<std::size_t>(response[1] - '0');
        const std::string data = response.substr(2 + digits);
        EXPECT_EQ(response.substr(2, digits), std::to_string(data.size()));
        return data;
    }

    // The points with those numbers, counted from 1.
    std::string Fetch(int first, int last) {
        return DataOf(bench_.Query("DATA:START " + std::to_string(first) + ";STOP " +
                                   std::to_string(last) + ";:CURVE?"));
    }

    std::string Preamble() {
        return bench_.Query("WFMOUTPRE:NR_PT?;XINCR?;XZERO?;PT_OFF?;YMULT?;YOFF?;YZERO?");
    }

    BareBench bench_;
};

std::string Bytes(std::initializer_list<int> bytes) {
    std::string text;
    for (const int byte : bytes) {
        text += static_cast<char>(byte);
    }
    return text;
}

// Points 475, 500 and 525 counted from 0 are 100 us before the trigger, on it and 100 us after it:
// -0.5877853 V, 0 V and 0.5877853 V, that is 29.389 levels or 7523.65 of the finer ones.

TEST_F(Curve, OneByteSigned) {
    EXPECT_EQ(Fetch(476, 476), Bytes({0xE3}));
    EXPECT_EQ(Fetch(501, 501), Bytes({0x00}));
    EXPECT_EQ(Fetch(526, 526), Bytes({0x1D}));
    EXPECT_EQ(Preamble(), "1;4.0000E-6;0.0000;500;20.0000E-3;0.0000;0.0000");
}

TEST_F(Curve, OneByteUnsigned) {
    bench_.Write("WFMOUTPRE:BN_FMT RP");
    EXPECT_EQ(Fetch(476, 476), Bytes({0x63}));
    EXPECT_EQ(Fetch(501, 501), Bytes({0x80}));
    EXPECT_EQ(Fetch(526, 526), Bytes({0x9D}));
    EXPECT_EQ(Preamble(), "1;4.0000E-6;0.0000;500;20.0000E-3;128.0000;0.0000");
}

TEST_F(Curve, TwoBytesSignedInBothOrders) {
    bench_.Write("WFMOUTPRE:BYT_NR 2");
    EXPECT_EQ(Fetch(476, 476), Bytes({0xE2, 0x9C}));
    EXPECT_EQ(Fetch(526, 526), Bytes({0x1D, 0x64}));
    bench_.Write("WFMOUTPRE:BYT_OR LSB");
    EXPECT_EQ(Fetch(476, 476), Bytes({0x9C, 0xE2}));
    EXPECT_EQ(Fetch(526, 526), Bytes({0x64, 0x1D}));
    EXPECT_EQ(Preamble(), "1;4.0000E-6;0.0000;500;78.1250E-6;0.0000;0.0000");
}

TEST_F(Curve, TwoBytesUnsignedInBothOrders) {
    bench_.Write("WFMOUTPRE:BYT_NR 2;BN_FMT RP");
    EXPECT_EQ(Fetch(526, 526), Bytes({0x9D, 0x64}));
    bench_.Write("WFMOUTPRE:BYT_OR LSB");
    EXPECT_EQ(Fetch(526, 526), Bytes({0x64, 0x9D}));
    EXPECT_EQ(Preamble(), "1;4.0000E-6;0.0000;500;78.1250E-6;32.7680E+3;0.0000");
}

// The square wave is 3.3 V at the trigger: 75 levels at 1.1 V/div.
TEST_F(Curve, FourBytesAreTheTopOfAFinerScale) {
    bench_.Write("SELECT:CH2 1;:DATA:SOURCE CH2;:CH2:SCALE 1.1;:WFMOUTPRE:BYT_NR 4");
    EXPECT_EQ(Fetch(501, 501), Bytes({0x4B, 0x00, 0x00, 0x00}));
    bench_.Write("WFMOUTPRE:BYT_OR LSB");
    EXPECT_EQ(Fetch(501, 501), Bytes({0x00, 0x00, 0x00, 0x4B}));
    bench_.Write("WFMOUTPRE:BN_FMT RP");
    EXPECT_EQ(Fetch(501, 501), Bytes({0x00, 0x00, 0x00, 0xCB}));
    bench_.Write("WFMOUTPRE:BYT_NR 1");
    EXPECT_EQ(Fetch(501, 501), Bytes({0xCB}));
}

// 3.3 as an IEEE 754 single is 0x40533333.
TEST_F(Curve, FloatsAreVoltsInBothOrders) {
    bench_.Write("SELECT:CH2 1;:DATA:SOURCE CH2;:WFMOUTPRE:BN_FMT FP");
    EXPECT_EQ(Fetch(501, 501), Bytes({0x40, 0x53, 0x33, 0x33}));
    bench_.Write("WFMOUTPRE:BYT_OR LSB");
    EXPECT_EQ(Fetch(501, 501), Bytes({0x33, 0x33, 0x53, 0x40}));
    EXPECT_EQ(bench_.Query("WFMOUTPRE:BYT_NR?;YMULT?;YOFF?;YZERO?"), "4;1.0000;0.0000;0.0000");
}

TEST_F(Curve, ANarrowerPointIsALevelAgain) {
    bench_.Write("WFMOUTPRE:BN_FMT FP");
    EXPECT_EQ(bench_.Query("WFMOUTPRE:BYT_NR 1;BYT_NR?;BN_FMT?"), "1;RI");
    EXPECT_EQ(Fetch(526, 526), Bytes({0x1D}));
    // In the order in which settings are put back.
    EXPECT_EQ(bench_.Query("WFMOUTPRE:BN_FMT FP;BYT_NR 4;BN_FMT?;BYT_NR?"), "FP;4");
    EXPECT_EQ(bench_.Query("WFMOUTPRE:BN_FMT RP;BYT_NR 2;BN_FMT?;BYT_NR?"), "RP;2");
    // A math waveform has nothing but floats.
    EXPECT_EQ(bench_.Query("DATA:SOURCE MATH1;:WFMOUTPRE:BYT_NR 1;BYT_NR?;BN_FMT?"), "4;FP");
}

TEST_F(Curve, PositionAndOffsetMoveTheLevels) {
    bench_.Write("CH1:POSITION 2;OFFSET 0.5");  // (0 - 0.5) / 0.02 + 2 * 25
    EXPECT_EQ(Fetch(501, 501), Bytes({25}));
    EXPECT_EQ(Preamble(), "1;4.0000E-6;0.0000;500;20.0000E-3;50.0000;500.0000E-3");
    bench_.Write("WFMOUTPRE:BYT_NR 2");
    EXPECT_EQ(Fetch(501, 501), Bytes({0x19, 0x00}));
    EXPECT_EQ(bench_.Query("WFMOUTPRE:YOFF?"), "12.8000E+3");
    bench_.Write("WFMOUTPRE:BYT_NR 1;BN_FMT RP");
    EXPECT_EQ(Fetch(501, 501), Bytes({128 + 25}));
    EXPECT_EQ(bench_.Query("WFMOUTPRE:YOFF?"), "178.0000");
}

TEST_F(Curve, LevelsEndAtTheLimitsOfTheirType) {
    bench_.Write("CH1:SCALE 0.1");  // the peak would be 250 levels
    EXPECT_EQ(Fetch(563, 563), Bytes({0x7F}));
    EXPECT_EQ(Fetch(438, 438), Bytes({0x80}));
    bench_.Write("WFMOUTPRE:BN_FMT RP");
    EXPECT_EQ(Fetch(563, 563), Bytes({0xFF}));
    EXPECT_EQ(Fetch(438, 438), Bytes({0x00}));
    bench_.Write("WFMOUTPRE:BN_FMT RI;BYT_NR 2");
    EXPECT_EQ(Fetch(563, 563), Bytes({0x7F, 0xFF}));
    EXPECT_EQ(Fetch(438, 438), Bytes({0x80, 0x00}));
}

TEST_F(Curve, StartAndStopAreHeldToTheRecordAndTakenInEitherOrder) {
    bench_.Write("DATA:START 1;STOP 800000000");
    EXPECT_EQ(bench_.Query("WFMOUTPRE:NR_PT?"), "1000");
    EXPECT_EQ(DataOf(bench_.Query("CURVE?")).size(), 1000U);
    EXPECT_EQ(Fetch(526, 501).size(), 26U);
    EXPECT_EQ(Fetch(526, 501), Fetch(501, 526));
    EXPECT_EQ(Fetch(1000, 1000), Fetch(5000, 6000));
    EXPECT_EQ(Fetch(5000, 6000).size(), 1U);
    EXPECT_EQ(bench_.Query("DATA:START?;STOP?"), "5000;6000");  // as they were set
}

TEST_F(Curve, EveryPointIsWithinHalfALevelOfTheSignal) {
    for (const int length : {1000, 12345, 300'000}) {
        bench_.Write("HORIZONTAL:RECORDLENGTH " + std::to_string(length));
        const std::string data = Fetch(1, length);
        ASSERT_EQ(data.size(), static_cast<std::size_t>(length));
        for (int i = 0; i < length; i += 7) {
            const double time = (i - length / 2) * (4e-3 / length);
            const double exact = 50 * std::sin(2 * std::numbers::pi * 1000 * time);
            const auto level = static_cast<signed char>(data[static_cast<std::size_t>(i)]);
            ASSERT_LE(std::abs(level - exact), 0.5 + 1e-6) << i << " of " << length;
        }
    }
}

TEST_F(Curve, TheTriggerPointFollowsPositionAndDelay) {
    EXPECT_EQ(bench_.Query("WFMOUTPRE:XZERO?;PT_OFF?"), "0.0000;500");
    bench_.Write("HORIZONTAL:POSITION 10");
    EXPECT_EQ(bench_.Query("WFMOUTPRE:XZERO?;PT_OFF?"), "0.0000;100");
    EXPECT_EQ(Fetch(101, 101), Bytes({0}));
    EXPECT_EQ(Fetch(126, 126), Bytes({0x1D}));
    bench_.Write("HORIZONTAL:DELAY:MODE ON;POSITION 0;TIME 1E-4");
    EXPECT_EQ(bench_.Query("WFMOUTPRE:XZERO?;PT_OFF?"), "100.0000E-6;0");
    EXPECT_EQ(Fetch(1, 1), Bytes({0x1D}));
    bench_.Write("HORIZONTAL:DELAY:MODE OFF;:HORIZONTAL:POSITION 50;RECORDLENGTH 1001");
    EXPECT_EQ(bench_.Query("WFMOUTPRE:PT_OFF?"), "500");
    EXPECT_EQ(Fetch(501, 501), Bytes({0}));
}

TEST_F(Curve, MathIsTheDifferenceInFloats) {
    bench_.Write("SELECT:MATH1 1;:DATA:SOURCE MATH1");
    EXPECT_EQ(bench_.Query("WFMOUTPRE:BYT_NR?;BN_FMT?"), "4;FP");
    EXPECT_EQ(bench_.Query("WFMOUTPRE:BYT_NR 1;BYT_NR?"), "4");
    EXPECT_EQ(bench_.Query("WFMOUTPRE:YMULT?;YOFF?;YZERO?"), "1.0000;0.0000;0.0000");
    EXPECT_EQ(Fetch(501, 501), Bytes({0xC0, 0x53, 0x33, 0x33}));  // 0 V - 3.3 V
    EXPECT_EQ(bench_.Query("DATA:SOURCE CH1;:WFMOUTPRE:BYT_NR?;BN_FMT?"), "1;RI");
}

TEST_F(Curve, AReferenceHoldsAThousandPointsWhateverTheTimeBase) {
    bench_.Write("SELECT:REF2 1;:HORIZONTAL:RECORDLENGTH 50000;SCALE 1;:DATA:SOURCE REF2");
    bench_.Write("DATA:START 1;STOP 800000000");
    EXPECT_EQ(Preamble(), "1000;4.0000E-6;0.0000;500;20.0000E-3;0.0000;0.0000");
    EXPECT_EQ(Fetch(526, 526), Bytes({0x1D}));
}

TEST_F(Curve, CouplingTakesTheMeanOrAllOfTheSignal) {
    bench_.Write("SELECT:CH2 1;:DATA:SOURCE CH2;:CH2:COUPLING AC");
    EXPECT_EQ(Fetch(501, 501), Bytes({41}));  // 1.65 V at 40 mV a level: 41.25
    bench_.Write("CH2:COUPLING DCREJECT");
    EXPECT_EQ(Fetch(501, 501), Bytes({41}));
    bench_.Write("CH2:COUPLING GND");
    EXPECT_EQ(Fetch(501, 501), Bytes({0}));
    EXPECT_EQ(Fetch(1, 1000), std::string(1000, '\0'));
}

// A point every 40 us, so that a pair is 80 us long, with a finer point every 10 us.
TEST_F(Curve, PeakDetectAndEnvelopeHavePairsOfLeastAndGreatest) {
    bench_.Write("HORIZONTAL:SCALE 4E-3");
    const std::string plain = Fetch(1, 1000);
    for (const char* mode : {"PEAKDETECT", "ENVELOPE"}) {
        bench_.Write(std::string("ACQUIRE:MODE ") + mode);
        EXPECT_EQ(bench_.Query("WFMOUTPRE:PT_FMT?"), "ENV");
        const std::string pairs = Fetch(1, 1000);
        for (std::size_t i = 0; i < 1000; i += 2) {
            const auto a = static_cast<signed char>(plain[i]);
            const auto b = static_cast<signed char>(plain[i + 1]);
            ASSERT_LE(static_cast<signed char>(pairs[i]), std::min(a, b)) << i;
            ASSERT_GE(static_cast<signed char>(pairs[i + 1]), std::max(a, b)) << i;
        }
        // From the trigger to 70 us behind it: 0 V to sin(0.14 pi) V = 0.42578 V, 21.3 levels.
        EXPECT_EQ(pairs.substr(500, 2), Bytes({0, 21}));
        // From 240 us to 310 us: sin(0.62 pi) V = 0.92978 V, 46.5 levels, to 1 V.
        EXPECT_EQ(pairs.substr(506, 2), Bytes({46, 50}));
    }
}

TEST_F(Curve, PeakDetectFindsWhatLiesBetweenThePoints) {
    bench_.Write("SELECT:CH2 1;:DATA:SOURCE CH2;:HORIZONTAL:SCALE 10E-3;:WFMOUTPRE:BN_FMT FP");
    // A point every 100 us meets the square wave at the same place of each period.
    EXPECT_EQ(Fetch(501, 502), Bytes({0x40, 0x53, 0x33, 0x33, 0x40, 0x53, 0x33, 0x33}));
    bench_.Write("ACQUIRE:MODE PEAKDETECT");
    EXPECT_EQ(Fetch(501, 502), Bytes({0, 0, 0, 0, 0x40, 0x53, 0x33, 0x33}));
}

// The levels of CH4 are 4 mV, so that noise of 0.2 V reaches 50 of them.
TEST_F(Curve, ModesTakeNoiseAwayOrGatherIt) {
    bench_.Write("SELECT:CH4 1;:DATA:SOURCE CH4");
    const auto spread = [&] {
        int sum = 0;
        const std::string data = Fetch(1, 1000);
        for (std::size_t i = 0; i < 1000; i += 2) {
            sum +=
                std::abs(static_cast<signed char>(data[i + 1]) - static_cast<signed char>(data[i]));
        }
        return sum / 500.0;
    };
    bench_.Advance(std::chrono::milliseconds(500));
    // Two values of a triangular distribution of half width a are 7/15 a apart: 23.3 levels.
    EXPECT_NEAR(spread(), 23.3, 1.5);
    bench_.Write("ACQUIRE:MODE AVERAGE;NUMAVG 100");
    EXPECT_NEAR(spread(), 2.3, 0.3);
    bench_.Write("ACQUIRE:MODE HIRES");
    EXPECT_NEAR(spread(), 5.8, 0.5);
    bench_.Write("ACQUIRE:MODE PEAKDETECT");
    const double peaks = spread();
    EXPECT_GT(peaks, 50);
    bench_.Write("ACQUIRE:MODE ENVELOPE");
    bench_.Advance(std::chrono::milliseconds(500));
    EXPECT_GT(spread(), peaks + 10);
}

TEST_F(Curve, AsciiIsNumbersWithCommas) {
    bench_.Write("WFMOUTPRE:ENCDG ASCII;:DATA:START 500;STOP 502");
    EXPECT_EQ(bench_.Query("CURVE?"), "-1,0,1");  // 1.2565 levels from point to point
    bench_.Write("WFMOUTPRE:BYT_NR 2;BN_FMT RP;:DATA:START 526;STOP 526");
    EXPECT_EQ(bench_.Query("CURVE?"), "40292");
    bench_.Write("SELECT:MATH1 1;:DATA:SOURCE MATH1;START 501;STOP 501");
    EXPECT_EQ(bench_.Query("CURVE?"), "-3.3000");
}

TEST_F(Curve, HeadersAndFurtherAnswersStandAroundTheBlock) {
    bench_.Write("DATA:START 501;STOP 502;:HEADER ON");
    EXPECT_EQ(
        bench_.Query("HEADER?;:CURVE?;:CURVE?;*OPC?"),
        std::string(":HEADER 1;:CURVE #12") + Bytes({0, 1}) + ";:CURVE #12" + Bytes({0, 1}) + ";1");
}

class ReadSize : public Curve, public testing::WithParamInterface<std::size_t> {};

TEST_P(ReadSize, DoesNotChangeTheBytes) {
    bench_.Write("HORIZONTAL:RECORDLENGTH 3000;:SELECT:CH2 1;CH3 1;CH4 1;MATH1 1");
    bench_.Write("ACQUIRE:STATE OFF;:DATA:START 2;STOP 2999");
    for (const char* form : {"ENCDG BINARY;BN_FMT RI;BYT_NR 1", "ENCDG BINARY;BN_FMT RP;BYT_NR 2",
                             "ENCDG BINARY;BN_FMT FP", "ENCDG ASCII;BN_FMT RI;BYT_NR 1"}) {
        bench_.Write(std::string("WFMOUTPRE:") + form);
        for (const char* source : {"CH1", "CH2", "CH3", "CH4", "MATH1"}) {
            bench_.Write(std::string("DATA:SOURCE ") + source);
            const std::string whole = bench_.Query("CURVE?");
            bench_.Write("CURVE?");
            ASSERT_EQ(Bench::ReadFrom(bench_.link(), GetParam()), whole) << form << ' ' << source;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Sizes, ReadSize, testing::Values(1, 7, 511, 512, 513, 2047, 65536));

TEST_F(Curve, AHundredMillionPointsAreMadeOnlyWhenTheyAreRead) {
    bench_.Write("HORIZONTAL:RECORDLENGTH 100000000;:DATA:STOP 100000000");
    for (int i = 0; i < 1000; ++i) {  // a thousand records would not fit any memory
        bench_.Write("CURVE?");
        std::array<std::byte, 14> start{};
        const ReadPiece piece = bench_.link().Read(start);
        ASSERT_EQ(piece.count, 14U);
        ASSERT_FALSE(piece.end);
        ASSERT_EQ(std::memcmp(start.data(), "#9100000000\0\0\0", 14), 0);
        bench_.link().Clear();
    }
    // A quarter of a period after the trigger, which is a quarter of a millisecond or 6,250,000.
    EXPECT_EQ(Fetch(56'250'001, 56'250'001), Bytes({50}));
    EXPECT_EQ(Fetch(100'000'000, 100'000'000), Bytes({0}));
}

TEST_F(Curve, SettingsChangedMeanwhileDoNotReachAnAnswer) {
    BareBench reference;
    reference.Write("HORIZONTAL:RECORDLENGTH 5000");
    const std::string expected = reference.Query("DATA:STOP 5000;:CURVE?");
    bench_.Write("HORIZONTAL:RECORDLENGTH 5000;:DATA:STOP 5000");
    bench_.Write("CURVE?");
    std::array<std::byte, 100> start{};
    EXPECT_EQ(bench_.link().Read(start).count, 100U);
    const auto other = bench_.instrument().Connect();
    Bench::WriteTo(*other, "CH1:SCALE 0.1;:HORIZONTAL:RECORDLENGTH 1000;SCALE 1;:WFMO:BYT_NR 2");
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(start.data()), 100) + bench_.Read(),
              expected);
}

TEST_F(Curve, AStoppedInstrumentKeepsItsLastRecord) {
    bench_.Write("ACQUIRE:STATE OFF");
    bench_.Write("HORIZONTAL:RECORDLENGTH 2000;:CH1:SCALE 1;:DATA:START 1;STOP 800000000");
    EXPECT_EQ(Preamble(), "1000;4.0000E-6;0.0000;500;20.0000E-3;0.0000;0.0000");
    bench_.Write("ACQUIRE:STATE ON");
    EXPECT_EQ(Preamble(), "2000;2.0000E-6;0.0000;1000;40.0000E-3;0.0000;0.0000");
}

TEST_F(Curve, ASequenceDeliversTheRecordBeforeItUntilItEnds) {
    bench_.Write("ACQUIRE:STATE OFF;STOPAFTER SEQUENCE;:DATA:STOP 800000000");
    bench_.Write("HORIZONTAL:RECORDLENGTH 2000;:ACQUIRE:STATE ON");
    EXPECT_EQ(bench_.Query("WFMOUTPRE:NR_PT?"), "1000");
    bench_.Advance(std::chrono::milliseconds(5));
    EXPECT_EQ(bench_.Query("WFMOUTPRE:NR_PT?"), "2000");
}

TEST_F(Curve, NoiseIsNewInEachAcquisitionAndStillWhenStopped) {
    bench_.Write("SELECT:CH4 1;:DATA:SOURCE CH4");
    const std::string first = Fetch(1, 1000);
    EXPECT_EQ(Fetch(1, 1000), first);
    bench_.Advance(std::chrono::milliseconds(5));
    const std::string second = Fetch(1, 1000);
    EXPECT_NE(second, first);
    bench_.Write("ACQUIRE:STATE OFF");
    bench_.Advance(std::chrono::seconds(1));
    EXPECT_EQ(Fetch(1, 1000), second);
    bench_.Write("ACQUIRE:STATE ON");
    bench_.Advance(std::chrono::milliseconds(5));
    EXPECT_NE(Fetch(1, 1000), second);
    EXPECT_NE(Fetch(1, 1000), first);
}

}  // namespace
}  // namespace virtual_scope
