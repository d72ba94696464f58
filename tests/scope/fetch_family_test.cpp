// The members that fetch levels, pairs, given parts and two-byte records, line by line.
#include <gmock/gmock.h>

#include "tests/scope/waveform_test.h"

namespace kestrion {
namespace {

using testing::DoubleEq;
using testing::ElementsAre;
using testing::HasSubstr;

class FetchFamilyTest : public WaveformTest {
  protected:
    // What a member that reports an absent source does on a two-channel model.
    void ExpectReportedRefusal() {
        fake.Expect("HEADER?\n").Reply("1\n");
        fake.Expect("HEADER OFF\n");
        fake.Expect("HEADER 1\n");
    }
    HRESULT FetchLevels(KestrionChannelEnum source) {
        return As<IKestrionWaveformTransfer>()->FetchWaveformDigitizedLevel(
            source, waveform.Out(), &initialX, &xIncrement, &yZero, &yMult, &yOffset);
    }
    HRESULT FetchPairs(KestrionSourceEnum source) {
        return As<IKestrionWaveformTransfer>()->FetchWaveformMinMax(
            source, waveform.Out(), maximum.Out(), &initialX, &xIncrement);
    }
    HRESULT FetchPart(KestrionSourceEnum source, LONG start, LONG stop) {
        return As<IKestrionWaveformTransfer>()->FetchWaveformStartStop(
            source, start, stop, waveform.Out(), &initialX, &xIncrement);
    }
    HRESULT FetchFine(KestrionSourceEnum source) {
        return As<IKestrionWaveformTransfer>()->FetchWaveformHighResolution(source, waveform.Out(),
                                                                            &initialX, &xIncrement);
    }

    SafeArrayPtr maximum;
    double yZero = -1.0;
    double yMult = -1.0;
    double yOffset = -1.0;
};

TEST_F(FetchFamilyTest, LevelsComeAsTheyAreWithTheirScale) {
    Connect();
    ExpectChecks("CH2");
    ExpectSavedState();
    fake.Expect("DATA:SOURCE CH2\n");
    fake.Expect("HORIZONTAL:RECORDLENGTH?\n").Reply("4\n");
    fake.Expect("DATA:START 1;STOP 4\n");
    fake.Expect(
        "WFMOUTPRE:ENCD BIN;BN_FMT RI;BYT_NR\xA0"
        "1\n");
    fake.Expect("CURVE?\n").Reply(std::string_view("#14\x02\x7F\x80\xFF\n", 8));
    ExpectPreamble();
    ExpectRestore();
    ASSERT_EQ(FetchLevels(KestrionChannelCh2), S_OK);
    EXPECT_THAT(waveform.Elements<LONG>(), ElementsAre(2, 127, -128, -1));
    EXPECT_EQ(yZero, 0.25);
    EXPECT_EQ(yMult, 0.5);
    EXPECT_EQ(yOffset, 2.0);
    EXPECT_THAT(xIncrement, DoubleEq(4.0e-7));
    EXPECT_THAT(initialX, DoubleEq(8.0e-4));
}

TEST_F(FetchFamilyTest, TheCountOfLevelsIsNotTested) {
    Connect();
    ExpectChecks("CH1");
    ExpectSavedState();
    fake.Expect("DATA:SOURCE CH1\n");
    fake.Expect("HORIZONTAL:RECORDLENGTH?\n").Reply("1000\n");
    fake.Expect("DATA:START 1;STOP 1000\n");
    fake.Expect(
        "WFMOUTPRE:ENCD BIN;BN_FMT RI;BYT_NR\xA0"
        "1\n");
    fake.Expect("CURVE?\n").Reply("#13\x01\x02\x03\n");
    ExpectPreamble();
    ExpectRestore();
    ASSERT_EQ(FetchLevels(KestrionChannelCh1), S_OK);
    EXPECT_THAT(waveform.Elements<LONG>(), ElementsAre(1, 2, 3));
}

TEST_F(FetchFamilyTest, LevelsOfAChannelThatATwoChannelModelLacksAreRefused) {
    Connect("PL77002SX");
    for (const auto source : {KestrionChannelCh3, KestrionChannelCh4}) {
        ExpectReportedRefusal();
        EXPECT_EQ(FetchLevels(source), MakeStatus(0x80020009));
        EXPECT_THAT(ErrorText(), HasSubstr("Resource ID = 246"));
    }
    EXPECT_EQ(waveform.Get(), nullptr);
    EXPECT_EQ(yMult, 0.0);
}

TEST_F(FetchFamilyTest, LevelsAreForChannelsOnly) {
    Connect();
    fake.ForgetCalls();
    EXPECT_EQ(FetchLevels(static_cast<KestrionChannelEnum>(4)), MakeStatus(0x80047010));
    EXPECT_THAT(fake.Calls(), ElementsAre());
}

TEST_F(FetchFamilyTest, PairsOfAChannelAreTakenApart) {
    Connect();
    ExpectChecksInMode("CH1", "PEAKDETECT");
    ExpectSavedState();
    ExpectChannelSetUp("CH1", "4");
    fake.Expect("CURVE?\n").Reply(std::string_view("#14\x00\x02\x04\x06\n", 8));
    ExpectPreamble();
    ExpectRestore();
    ASSERT_EQ(FetchPairs(KestrionSourceCh1), S_OK);
    // (0 - 2) / 2 + 1/4 and (4 - 2) / 2 + 1/4, then the same of 2 and 6.
    EXPECT_THAT(Volts(), ElementsAre(-0.75, 1.25));
    EXPECT_THAT(maximum.Elements<double>(), ElementsAre(0.25, 2.25));
    EXPECT_THAT(initialX, DoubleEq(8.0e-4));
}

TEST_F(FetchFamilyTest, AnOddRecordOfPairsLosesItsLastPoint) {
    Connect();
    ExpectChecksInMode("CH1", "ENVELOPE");
    ExpectSavedState();
    ExpectChannelSetUp("CH1", "5");
    fake.Expect("CURVE?\n").Reply("#15\x02\x04\x02\x04\x06\n");
    ExpectPreamble();
    ExpectRestore();
    ASSERT_EQ(FetchPairs(KestrionSourceCh1), S_OK);
    EXPECT_THAT(Volts(), ElementsAre(0.25, 0.25));
    EXPECT_THAT(maximum.Elements<double>(), ElementsAre(1.25, 1.25));
}

TEST_F(FetchFamilyTest, PairsOfAMathAskForTheLengthInOneLine) {
    Connect();
    ExpectChecksInMode("MATH1", "ENVELOPE");
    ExpectSavedState();
    fake.Expect("DATA:SOURCE MATH1\n");
    fake.Expect("DATA:STOP 800000000;:WFMOUTPRE:NR_PT?\n").Reply("2\n");
    fake.Expect("DATA:START 1;STOP 2\n");
    fake.Expect("WFMOUTPRE:BYT_NR 1;BYT_NR?\n").Reply("4\n");
    fake.Expect("WFMOUTPRE:ENCDG BIN;BN_FMT FP\n");
    fake.Expect(":WFMOUTPRE:BYT_OR LSB\n");
    fake.Expect("CURVE?\n").Reply(std::string_view("#18\x00\x00\xC0\x3F\x00\x00\x00\xC0\n", 12));
    ExpectPreamble();
    ExpectRestore();
    ASSERT_EQ(FetchPairs(KestrionSourceMath1), S_OK);
    // 1.5 - 2 + 0.25 and -2 - 2 + 0.25
    EXPECT_THAT(Volts(), ElementsAre(-0.25));
    EXPECT_THAT(maximum.Elements<double>(), ElementsAre(-3.75));
}

TEST_F(FetchFamilyTest, PairsNeedPeakDetectOrEnvelope) {
    Connect();
    for (const char* mode : {"SAMPLE", "HIRES", "AVERAGE", "WFMDB"}) {
        ExpectChecksInMode("CH1", mode);
        fake.Expect("HEADER 0\n");
        EXPECT_EQ(FetchPairs(KestrionSourceCh1), MakeStatus(0x80042004)) << mode;
        EXPECT_EQ(ErrorText(),
                  "Kestrion: Invalid acquisition type.\r\nInvalid Acquisition Type error");
    }
}

TEST_F(FetchFamilyTest, PairsOfASourceThatATwoChannelModelLacksAreError246) {
    Connect("PL77002SX");
    ExpectReportedRefusal();
    EXPECT_EQ(FetchPairs(KestrionSourceCh3), MakeStatus(0x80020009));
    EXPECT_THAT(ErrorText(), HasSubstr("Resource ID = 246"));
    EXPECT_EQ(waveform.Get(), nullptr);
    EXPECT_EQ(maximum.Get(), nullptr);
}

TEST_F(FetchFamilyTest, APairBlockOfAnotherLengthIsReported) {
    Connect();
    ExpectChecksInMode("CH1", "PEAKDETECT");
    ExpectSavedState();
    ExpectChannelSetUp("CH1", "1000");
    fake.Expect("CURVE?\n").Reply("#3500");
    ExpectRestore();
    EXPECT_EQ(FetchPairs(KestrionSourceCh1), MakeStatus(0x80044217));
    EXPECT_EQ(ErrorText(), "Kestrion: Preview State,Acquire the Waveform.");
}

TEST_F(FetchFamilyTest, AGivenPartIsAskedForAsItIsTold) {
    Connect();
    ExpectChecks("CH1");
    ExpectSavedState();
    fake.Expect("DATA:SOURCE CH1\n");
    fake.Expect("HORIZONTAL:RECORDLENGTH?\n").Reply("1000\n");
    fake.Expect("DATA:START 11;STOP 13\n");
    fake.Expect("WFMOUTPRE:BYT_NR 1;BYT_NR?\n").Reply("1\n");
    fake.Expect(
        "WFMOUTPRE:ENCD BIN;BN_FMT RI;BYT_NR\xA0"
        "1\n");
    fake.Expect("CURVE?\n").Reply("#13\x02\x03\x04\n");
    ExpectPreamble();
    ExpectRestore();
    ASSERT_EQ(FetchPart(KestrionSourceCh1, 11, 13), S_OK);
    EXPECT_THAT(Volts(), ElementsAre(0.25, 0.75, 1.25));
    // The whole record's, whatever the start is.
    EXPECT_THAT(initialX, DoubleEq(8.0e-4));
}

TEST_F(FetchFamilyTest, APartIsNotCheckedBeforeItIsAskedFor) {
    Connect();
    ExpectChecks("CH1");
    ExpectSavedState();
    fake.Expect("DATA:SOURCE CH1\n");
    fake.Expect("HORIZONTAL:RECORDLENGTH?\n").Reply("1000\n");
    fake.Expect("DATA:START -2147483648;STOP 2147483647\n");
    fake.Expect("WFMOUTPRE:BYT_NR 1;BYT_NR?\n").Reply("1\n");
    fake.Expect(
        "WFMOUTPRE:ENCD BIN;BN_FMT RI;BYT_NR\xA0"
        "1\n");
    fake.Expect("CURVE?\n").Reply("#41000");
    ExpectRestore();
    EXPECT_EQ(FetchPart(KestrionSourceCh1, -2147483647 - 1, 2147483647), MakeStatus(0x80044217));
}

TEST_F(FetchFamilyTest, APartShorterThanItsLimitsIsReported) {
    Connect();
    ExpectChecks("CH1");
    ExpectSavedState();
    fake.Expect("DATA:SOURCE CH1\n");
    fake.Expect("HORIZONTAL:RECORDLENGTH?\n").Reply("1000\n");
    fake.Expect("DATA:START 999;STOP 1003\n");
    fake.Expect("WFMOUTPRE:BYT_NR 1;BYT_NR?\n").Reply("1\n");
    fake.Expect(
        "WFMOUTPRE:ENCD BIN;BN_FMT RI;BYT_NR\xA0"
        "1\n");
    fake.Expect("CURVE?\n").Reply("#12");
    ExpectRestore();
    EXPECT_EQ(FetchPart(KestrionSourceCh1, 999, 1003), MakeStatus(0x80044217));
}

TEST_F(FetchFamilyTest, APartOfASourceThatATwoChannelModelLacksIsError246) {
    Connect("PL77002SX");
    ExpectReportedRefusal();
    EXPECT_EQ(FetchPart(KestrionSourceRef4, 1, 2), MakeStatus(0x80020009));
    EXPECT_THAT(ErrorText(), HasSubstr("Resource ID = 246"));
}

TEST_F(FetchFamilyTest, TwoBytePointsAreScaledAsIntegers) {
    Connect();
    ExpectChecksInMode("CH1", "HIRES");
    ExpectSavedState();
    fake.Expect("DATA:SOURCE CH1\n");
    fake.Expect("HORIZONTAL:RECORDLENGTH?\n").Reply("2\n");
    fake.Expect("DATA:START 1;STOP 2\n");
    fake.Expect("WFMOUTPRE:BYT_NR 1;BYT_NR?\n").Reply("2\n");
    fake.Expect(
        "WFMOUTPRE:ENCD BIN;BN_FMT RI;BYT_NR\xA0"
        "2\n");
    fake.Expect(":WFMOUTPRE:BYT_OR LSB\n");
    fake.Expect("CURVE?\n").Reply(std::string_view("#14\x02\x01\xFE\xFF\n", 8));
    ExpectPreamble();
    ExpectRestore();
    ASSERT_EQ(FetchFine(KestrionSourceCh1), S_OK);
    // (258 - 2) / 2 + 1/4 and (-2 - 2) / 2 + 1/4
    EXPECT_THAT(Volts(), ElementsAre(128.25, -1.75));
}

TEST_F(FetchFamilyTest, TheCountOfTwoBytePointsIsTakenWithTheWidthFromBefore) {
    Connect();
    ExpectChecks("CH1");
    ExpectSavedState();
    fake.Expect("DATA:SOURCE CH1\n");
    fake.Expect("HORIZONTAL:RECORDLENGTH?\n").Reply("2\n");
    fake.Expect("DATA:START 1;STOP 2\n");
    fake.Expect("WFMOUTPRE:BYT_NR 1;BYT_NR?\n").Reply("1\n");
    fake.Expect(
        "WFMOUTPRE:ENCD BIN;BN_FMT RI;BYT_NR\xA0"
        "2\n");
    fake.Expect(":WFMOUTPRE:BYT_OR LSB\n");
    // Four bytes by a width of one are twice the record.
    fake.Expect("CURVE?\n").Reply("#14");
    ExpectRestore();
    EXPECT_EQ(FetchFine(KestrionSourceCh1), MakeStatus(0x80044217));
}

TEST_F(FetchFamilyTest, AMathOfHighResolutionStaysInFloatingPoint) {
    Connect();
    ExpectChecks("MATH3");
    ExpectSavedState();
    ExpectFloatSetUp("MATH3", "1");
    fake.Expect("CURVE?\n").Reply(std::string_view("#14\x00\x00\xC0\x3F\n", 8));
    ExpectPreamble();
    ExpectRestore();
    ASSERT_EQ(FetchFine(KestrionSourceMath3), S_OK);
    EXPECT_THAT(Volts(), ElementsAre(-0.25));
}

TEST_F(FetchFamilyTest, HighResolutionOfASourceThatATwoChannelModelLacksIsError246) {
    Connect("PL77002SX");
    ExpectReportedRefusal();
    EXPECT_EQ(FetchFine(KestrionSourceMath4), MakeStatus(0x80020009));
    EXPECT_THAT(ErrorText(), HasSubstr("Resource ID = 246"));
}

TEST_F(FetchFamilyTest, TheHistogramTakesTheBranchOfAMath) {
    Connect();
    ExpectChecks("HISTOGRAM");
    ExpectSavedState();
    ExpectFloatSetUp("HISTOGRAM", "1");
    fake.Expect("CURVE?\n").Reply(std::string_view("#14\x00\x00\xC0\x3F\n", 8));
    ExpectPreamble();
    ExpectRestore();
    EXPECT_EQ(Fetch(KestrionSourceHistogram), S_OK);
    EXPECT_THAT(Volts(), ElementsAre(-0.25));
}

TEST_F(FetchFamilyTest, EveryUpperSourceIsAbsentOnATwoChannelModelAndNoOther) {
    Connect("PL77002SX");
    for (const auto source : {KestrionSourceCh3, KestrionSourceCh4, KestrionSourceMath3,
                              KestrionSourceMath4, KestrionSourceRef3, KestrionSourceRef4}) {
        ExpectReportedRefusal();
        EXPECT_EQ(FetchPairs(source), MakeStatus(0x80020009)) << source;
    }
    for (const char* name : {"CH1", "CH2", "MATH1", "MATH2", "REF1", "REF2"}) {
        fake.Expect("HEADER?\n").Reply("1\n");
        fake.Expect("HEADER OFF\n");
        fake.Expect("SELECT:" + std::string(name) + "?\n").Reply("0\n");
        fake.Expect("HEADER 1\n");
    }
    for (const auto source : {KestrionSourceCh1, KestrionSourceCh2, KestrionSourceMath1,
                              KestrionSourceMath2, KestrionSourceRef1, KestrionSourceRef2}) {
        EXPECT_EQ(FetchPairs(source), MakeStatus(0x80042001)) << source;
    }
}

TEST_F(FetchFamilyTest, AnElementIsInvalidWhenItIsANumber) {
    Connect();
    fake.ForgetCalls();
    VARIANT_BOOL invalid = VARIANT_FALSE;
    const auto transfer = As<IKestrionWaveformTransfer>();
    for (const double number : {0.0, -1.5, 9.91e37, std::numeric_limits<double>::infinity()}) {
        invalid = VARIANT_FALSE;
        EXPECT_EQ(transfer->IsWaveformElementInvalid(number, &invalid), S_OK);
        EXPECT_EQ(invalid, VARIANT_TRUE) << number;
    }
    EXPECT_EQ(
        transfer->IsWaveformElementInvalid(std::numeric_limits<double>::quiet_NaN(), &invalid),
        S_OK);
    EXPECT_EQ(invalid, VARIANT_FALSE);
    EXPECT_THAT(fake.Calls(), ElementsAre());
}

TEST_F(FetchFamilyTest, SimulationHasNoInstrumentToFetchFrom) {
    Simulate();
    EXPECT_EQ(Fetch(KestrionSourceCh1), MakeStatus(0x8004701D));
    EXPECT_EQ(Read(KestrionSourceCh1, 0), MakeStatus(0x8004701D));
    EXPECT_EQ(FetchPairs(KestrionSourceCh1), MakeStatus(0x8004701D));
    EXPECT_EQ(FetchLevels(KestrionChannelCh1), MakeStatus(0x8004701D));
    EXPECT_EQ(waveform.Get(), nullptr);
    VARIANT_BOOL invalid = VARIANT_FALSE;
    EXPECT_EQ(As<IKestrionWaveformTransfer>()->IsWaveformElementInvalid(0.0, &invalid), S_OK);
    EXPECT_EQ(invalid, VARIANT_TRUE);
}

}  // namespace
}  // namespace kestrion
