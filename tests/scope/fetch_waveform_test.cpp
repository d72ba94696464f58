// FetchWaveform, line by line.
#include <gmock/gmock.h>

#include "tests/scope/waveform_test.h"

namespace kestrion {
namespace {

using testing::Contains;
using testing::DoubleEq;
using testing::ElementsAre;
using testing::Not;
using testing::StartsWith;

class FetchWaveformTest : public WaveformTest {};

TEST_F(FetchWaveformTest, AChannelIsTransferredAsOneByteIntegers) {
    Connect();
    ExpectChecks("CH1");
    ExpectSavedState();
    ExpectChannelSetUp("CH1", "4");
    fake.Expect("CURVE?\n").Reply(std::string_view("#14\x02\x03\x00\xFE\n", 8));
    ExpectPreamble();
    ExpectRestore();
    ASSERT_EQ(Fetch(KestrionSourceCh1), S_OK);
    // (point - 2) * 0.5 + 0.25 for the points 2, 3, 0 and -2.
    EXPECT_THAT(Volts(), ElementsAre(0.25, 0.75, -0.75, -1.75));
    EXPECT_THAT(xIncrement, DoubleEq(4.0e-7));
    // 1e-3 - 500 * 4e-7
    EXPECT_THAT(initialX, DoubleEq(8.0e-4));
    LONG lower = 9;
    EXPECT_EQ(SafeArrayGetLBound(waveform.Get(), 1, &lower), S_OK);
    EXPECT_EQ(lower, 0);
}

TEST_F(FetchWaveformTest, TheDataComeInOneReadWithTheLineEnding) {
    Connect();
    ExpectChecks("CH2");
    ExpectSavedState();
    ExpectChannelSetUp("CH2", "10000");
    fake.Expect("CURVE?\n").Reply("#510000" + std::string(10000, '\n') + "\n");
    ExpectPreamble();
    ExpectRestore();
    fake.ForgetCalls();
    ASSERT_EQ(Fetch(KestrionSourceCh2), S_OK);
    EXPECT_EQ(waveform.Elements<double>().size(), 10000U);
    // '\n' is the point 10: (10 - 2) * 0.5 + 0.25.
    EXPECT_EQ(waveform.Elements<double>()[9999], 4.25);
    EXPECT_THAT(fake.CallsOf("viRead(2)"), ElementsAre("viRead(2)"));
    EXPECT_THAT(fake.CallsOf("viRead(5)"), ElementsAre("viRead(5)"));
    EXPECT_THAT(fake.CallsOf("viRead(10001)"), ElementsAre("viRead(10001)"));
}

TEST_F(FetchWaveformTest, TheLockIsTakenAroundCurveAndPreamble) {
    Connect();
    ExpectChecks("CH1");
    ExpectSavedState();
    ExpectChannelSetUp("CH1", "1");
    fake.Expect("CURVE?\n").Reply(std::string_view("#11\0\n", 5));
    ExpectPreamble();
    ExpectRestore();
    fake.ForgetCalls();
    ASSERT_EQ(Fetch(KestrionSourceCh1), S_OK);
    const auto calls = fake.Calls();
    const auto find = [&calls](std::string_view text) {
        return std::ranges::find_if(calls,
                                    [text](const auto& call) { return call.starts_with(text); });
    };
    EXPECT_LT(find("viWrite(\"WFMOUTPRE:ENCD"), find("viLock(1, 1000"));
    EXPECT_LT(find("viLock(1, 1000"), find("viWrite(\"CURVE?"));
    EXPECT_LT(find("viWrite(\"WFMOUTPRE:YOFF?"), find("viUnlock("));
    EXPECT_LT(find("viUnlock("), find("viWrite(\"WFMOUTPRE:PT_OFF?"));
    EXPECT_FALSE(fake.Locked());
}

TEST_F(FetchWaveformTest, ALockThatIsNotGrantedStopsNothing) {
    Connect();
    ExpectChecks("CH1");
    ExpectSavedState();
    ExpectChannelSetUp("CH1", "1");
    fake.Expect("CURVE?\n").Reply(std::string_view("#11\0\n", 5));
    ExpectPreamble();
    ExpectRestore();
    fake.FailFunction("viLock", static_cast<visa::ViStatus>(0xBFFF000F));
    fake.ForgetCalls();
    EXPECT_EQ(Fetch(KestrionSourceCh1), S_OK);
    EXPECT_EQ(ErrorText(), "");
    EXPECT_THAT(fake.Calls(), Not(Contains(StartsWith("viUnlock"))));
}

TEST_F(FetchWaveformTest, AMathIsTransferredAsFloatingPointNumbers) {
    Connect();
    ExpectChecks("MATH2");
    ExpectSavedState();
    ExpectFloatSetUp("MATH2", "2");
    // 1.5 is 3FC00000 and -2.0 is C0000000, least significant byte first.
    fake.Expect("CURVE?\n").Reply(std::string_view("#18\x00\x00\xC0\x3F\x00\x00\x00\xC0\n", 12));
    ExpectPreamble();
    ExpectRestore();
    ASSERT_EQ(Fetch(KestrionSourceMath2), S_OK);
    // point - 2 + 0.25; the multiplier has no part in it.
    EXPECT_THAT(Volts(), ElementsAre(-0.25, -3.75));
}

TEST_F(FetchWaveformTest, AReferenceThatHoldsFloatingPointDataTakesThatBranch) {
    Connect();
    ExpectChecks("REF1");
    ExpectSavedState();
    ExpectFloatSetUp("REF1", "1");
    fake.Expect("CURVE?\n").Reply(std::string_view("#14\x00\x00\xC0\x3F\n", 8));
    ExpectPreamble();
    ExpectRestore();
    ASSERT_EQ(Fetch(KestrionSourceRef1), S_OK);
    EXPECT_THAT(Volts(), ElementsAre(-0.25));
}

TEST_F(FetchWaveformTest, AReferenceOfIntegersTakesTheIntegerBranch) {
    Connect();
    ExpectChecks("REF4");
    ExpectSavedState();
    fake.Expect("DATA:SOURCE REF4\n");
    fake.Expect("DATA:STOP 800000000\n");
    fake.Expect(":WFMOUTPRE:NR_PT?\n").Reply("2\n");
    fake.Expect("DATA:START 1;STOP 2\n");
    fake.Expect("WFMOUTPRE:BYT_NR 1;BYT_NR?\n").Reply("1\n");
    fake.Expect(
        "WFMOUTPRE:ENCD BIN;BN_FMT RI;BYT_NR\xA0"
        "1\n");
    fake.Expect("CURVE?\n").Reply("#12\x02\x04\n");
    ExpectPreamble();
    ExpectRestore();
    ASSERT_EQ(Fetch(KestrionSourceRef4), S_OK);
    EXPECT_THAT(Volts(), ElementsAre(0.25, 1.25));
}

TEST_F(FetchWaveformTest, ASourceThatIsOffPutsTheHeaderBack) {
    Connect();
    fake.Expect("HEADER?\n").Reply("1\n");
    fake.Expect("HEADER OFF\n");
    fake.Expect("SELECT:CH3?\n").Reply("0\n");
    fake.Expect("HEADER 1\n");
    EXPECT_EQ(Fetch(KestrionSourceCh3), MakeStatus(0x80042001));
    EXPECT_EQ(ErrorText(),
              "Kestrion: Specified channel is not enabled.\r\nChannel Not Enabled error");
    EXPECT_EQ(waveform.Get(), nullptr);
}

TEST_F(FetchWaveformTest, AWrongAcquisitionModePutsTheHeaderBack) {
    Connect();
    fake.Expect("HEADER?\n").Reply("0\n");
    fake.Expect("HEADER OFF\n");
    fake.Expect("SELECT:CH1?\n").Reply("1\n");
    fake.Expect("ACQUIRE:MODE?\n").Reply("PEAKDETECT\n");
    fake.Expect("HEADER 0\n");
    EXPECT_EQ(Fetch(KestrionSourceCh1), MakeStatus(0x80042004));
    EXPECT_EQ(ErrorText(), "Kestrion: Invalid acquisition type.\r\nInvalid Acquisition Type error");
}

TEST_F(FetchWaveformTest, HighResolutionAndAverageAreTransferred) {
    Connect();
    for (const char* mode : {"HIRES", "AVERAGE"}) {
        fake.Expect("HEADER?\n").Reply("0\n");
        fake.Expect("HEADER OFF\n");
        fake.Expect("SELECT:CH1?\n").Reply("1\n");
        fake.Expect("ACQUIRE:MODE?\n").Reply(std::string(mode) + "\n");
        ExpectSavedState();
        ExpectChannelSetUp("CH1", "1");
        fake.Expect("CURVE?\n").Reply("#11\x02\n");
        ExpectPreamble();
        ExpectRestore();
        EXPECT_EQ(Fetch(KestrionSourceCh1), S_OK) << mode;
    }
}

TEST_F(FetchWaveformTest, AModeThatCannotBeReadStopsNothing) {
    Connect();
    fake.Expect("HEADER?\n").Reply("0\n");
    fake.Expect("HEADER OFF\n");
    fake.Expect("SELECT:CH1?\n").Reply("1\n");
    fake.Expect("ACQUIRE:MODE?\n").Reply("SOMETHING\n");
    ExpectSavedState();
    ExpectChannelSetUp("CH1", "1");
    fake.Expect("CURVE?\n").Reply("#11\x02\n");
    ExpectPreamble();
    ExpectRestore();
    EXPECT_EQ(Fetch(KestrionSourceCh1), S_OK);
    EXPECT_EQ(ErrorText(), "");
}

TEST_F(FetchWaveformTest, Channel3OfATwoChannelModelGoesOnToTheInstrument) {
    Connect("PL77002SX");
    fake.Expect("HEADER?\n").Reply("0\n");
    fake.Expect("HEADER OFF\n");
    fake.Expect("SELECT:CH3?\n").Reply("0\n");
    fake.Expect("HEADER 0\n");
    EXPECT_EQ(Fetch(KestrionSourceCh3), MakeStatus(0x80042001));
}

// Its data is read all the same, so that the next answer is that of the next query.
TEST_F(FetchWaveformTest, ABlockThatIsRefusedLeavesNothingUnread) {
    Connect();
    for (const std::string points : {"8", "9000"}) {
        ExpectChecks("CH1");
        ExpectSavedState();
        ExpectChannelSetUp("CH1", "1000");
        fake.Expect("CURVE?\n")
            .Reply("#" + std::to_string(points.size()) + points +
                   std::string(std::stoul(points), '7') + "\n");
        ExpectRestore();
        EXPECT_EQ(Fetch(KestrionSourceCh1), MakeStatus(0x80044217));
        EXPECT_EQ(ErrorText(), "Kestrion: Preview State,Acquire the Waveform.");
        fake.Expect("HORIZONTAL:RECORDLENGTH?\n").Reply("1000\n");
        LONG length = 0;
        EXPECT_EQ(As<IKestrionHorizontal>()->get_RecordLength(&length), S_OK);
        EXPECT_EQ(length, 1000);
    }
}

TEST_F(FetchWaveformTest, ABlockOfAnotherLengthThanTheRecordIsReportedAfterTheRestore) {
    Connect();
    ExpectChecks("CH1");
    ExpectSavedState();
    ExpectChannelSetUp("CH1", "1000");
    fake.Expect("CURVE?\n").Reply("#3999");
    ExpectRestore();
    EXPECT_EQ(Fetch(KestrionSourceCh1), MakeStatus(0x80044217));
    EXPECT_EQ(ErrorText(), "Kestrion: Preview State,Acquire the Waveform.");
    EXPECT_EQ(waveform.Get(), nullptr);
    // The lock is given back behind the block alone, and this one isn't taken.
    EXPECT_TRUE(fake.Locked());
}

TEST_F(FetchWaveformTest, ABlockWithoutALengthFailsTheCountTest) {
    Connect();
    ExpectChecks("CH1");
    ExpectSavedState();
    ExpectChannelSetUp("CH1", "1000");
    fake.Expect("CURVE?\n").Reply("#0");
    ExpectRestore();
    EXPECT_EQ(Fetch(KestrionSourceCh1), MakeStatus(0x80044217));
}

TEST_F(FetchWaveformTest, ADigitCountIsReadAsAHexadecimalDigit) {
    Connect();
    ExpectChecks("CH1");
    ExpectSavedState();
    ExpectChannelSetUp("CH1", "3");
    fake.Expect("CURVE?\n").Reply("#A0000000003\x02\x02\x02\n");
    ExpectPreamble();
    ExpectRestore();
    EXPECT_EQ(Fetch(KestrionSourceCh1), S_OK);
    EXPECT_THAT(Volts(), ElementsAre(0.25, 0.25, 0.25));
}

TEST_F(FetchWaveformTest, ASilentInstrumentAfterCurveEndsInATimeoutAndRestoresNothing) {
    Connect();
    ExpectChecks("CH1");
    ExpectSavedState();
    ExpectChannelSetUp("CH1", "4");
    fake.Expect("CURVE?\n");
    EXPECT_EQ(Fetch(KestrionSourceCh1), MakeStatus(0x80044215));
    EXPECT_EQ(ErrorText(), "Kestrion: I/O timeout error: .");
    EXPECT_EQ(waveform.Get(), nullptr);
    // Only the road through the block gives the lock back; closing does in any case.
    EXPECT_TRUE(fake.Locked());
    EXPECT_EQ(scope->Close(), S_OK);
    EXPECT_EQ(fake.OpenObjects(), 0);
}

TEST_F(FetchWaveformTest, ABlockThatEndsEarlyIsAnUnexpectedResponse) {
    Connect();
    ExpectChecks("CH1");
    ExpectSavedState();
    ExpectChannelSetUp("CH1", "4");
    fake.Expect("CURVE?\n").Reply("#14\x02\x02");
    EXPECT_EQ(Fetch(KestrionSourceCh1), MakeStatus(0x80047059));
    EXPECT_EQ(ErrorText(),
              "Kestrion: Unexpected response from the instrument.\r\n"
              "The waveform block is shorter than announced.");
    EXPECT_EQ(waveform.Get(), nullptr);
    EXPECT_FALSE(fake.Locked());
}

TEST_F(FetchWaveformTest, ABlockLongerThanAnnouncedIsAnUnexpectedResponse) {
    Connect();
    ExpectChecks("CH1");
    ExpectSavedState();
    ExpectChannelSetUp("CH1", "4");
    fake.Expect("CURVE?\n").Reply("#14\x02\x02\x02\x02\x02\x02\n");
    EXPECT_EQ(Fetch(KestrionSourceCh1), MakeStatus(0x80047059));
    EXPECT_EQ(ErrorText(),
              "Kestrion: Unexpected response from the instrument.\r\n"
              "The waveform block is longer than announced.");
    EXPECT_EQ(waveform.Get(), nullptr);
}

TEST_F(FetchWaveformTest, AConnectionThatIsLostInTheBlockEndsWithItsStatus) {
    Connect();
    ExpectChecks("CH1");
    ExpectSavedState();
    ExpectChannelSetUp("CH1", "4");
    fake.Expect("CURVE?\n").Reply("#14\x02\x02\x02\x02\n");
    fake.SetDescription(static_cast<visa::ViStatus>(0xBFFF00A6), "The connection is lost.");
    // From the second read of the header on: the next one is the block's.
    int reads = 0;
    fake.OnTransfer([this, &reads] {
        if (fake.Written().ends_with("CURVE?\n") && ++reads == 2) {
            fake.FailFunction("viRead", static_cast<visa::ViStatus>(0xBFFF00A6));
        }
    });
    EXPECT_EQ(Fetch(KestrionSourceCh1), MakeStatus(0x800400A6));
    EXPECT_EQ(ErrorText(), "The connection is lost.");
    EXPECT_EQ(waveform.Get(), nullptr);
}

TEST_F(FetchWaveformTest, AnUnknownSourceSendsNothing) {
    Connect();
    fake.ForgetCalls();
    EXPECT_EQ(Fetch(static_cast<KestrionSourceEnum>(13)), MakeStatus(0x80047010));
    EXPECT_EQ(ErrorText(),
              "Kestrion: Invalid value (13) for method FetchWaveform, parameter nVal.");
    EXPECT_THAT(fake.Calls(), ElementsAre());
}

TEST_F(FetchWaveformTest, APreambleThatFailsLeavesTheScaleZero) {
    Connect();
    ExpectChecks("CH1");
    ExpectSavedState();
    ExpectChannelSetUp("CH1", "2");
    fake.Expect("CURVE?\n").Reply("#12\x02\x03\n");
    fake.Expect("WFMOUTPRE:XINCR?\n").Reply("broken\n");
    fake.Expect("WFMOUTPRE:PT_OFF?\n").Reply("500\n");
    ExpectRestore();
    EXPECT_EQ(Fetch(KestrionSourceCh1), S_OK);
    EXPECT_THAT(Volts(), ElementsAre(0.0, 0.0));
}

TEST_F(FetchWaveformTest, AStateThatCannotBeReadSkipsTheTransfer) {
    Connect();
    ExpectChecks("CH1");
    fake.Expect("DATA:SOURCE?\n").Reply("CH4\n");
    fake.Expect("DATA:START?\n").Reply("3\n");
    fake.Expect("DATA:STOP?\n").Reply("777\n");
    fake.Expect("WFMOUTPRE:BN_FMT?\n").Reply("RP\n");
    fake.Expect("WFMOUTPRE:BYT_OR?\n").Reply("MSB\n");
    fake.Expect("WFMOUTPRE:ENCD?\n").Reply("ASC\n");
    fake.Expect("WFMOUTPRE:BYT_NR?\n").Reply("2\n");
    fake.Expect("ACQUIRE:STATE?\n");  // never answered
    EXPECT_EQ(Fetch(KestrionSourceCh1), MakeStatus(0x80044215));
    EXPECT_EQ(waveform.Get(), nullptr);
}

TEST_F(FetchWaveformTest, StatusPollingNeverComesBetweenCurveAndItsAnswer) {
    Connect();
    EXPECT_EQ(As<IIviDriverOperation>()->put_QueryInstrumentStatus(VARIANT_TRUE), S_OK);
    fake.Expect("HEADER?\n").Reply("0\n");
    fake.Expect("*ESR?\n").Reply("0\n");
    fake.Expect("HEADER OFF\n");
    fake.Expect("*ESR?\n").Reply("0\n");
    fake.Expect("SELECT:CH1?\n").Reply("0\n");
    fake.Expect("*ESR?\n").Reply("0\n");
    fake.Expect("HEADER 0\n");
    fake.Expect("*ESR?\n").Reply("0\n");
    EXPECT_EQ(Fetch(KestrionSourceCh1), MakeStatus(0x80042001));
}

}  // namespace
}  // namespace kestrion
