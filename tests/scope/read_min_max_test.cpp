// ReadWaveformMinMax: the acquisition by polling in front of the transfer of pairs.
#include <gmock/gmock.h>

#include "tests/scope/waveform_test.h"

namespace kestrion {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

class ReadMinMaxTest : public WaveformTest {
  protected:
    HRESULT ReadPairs(KestrionSourceEnum source, LONG maxTime) {
        return As<IKestrionWaveformTransfer>()->ReadWaveformMinMax(
            source, maxTime, waveform.Out(), maximum.Out(), &initialX, &xIncrement);
    }
    void ExpectStart() {
        ExpectChecksInMode("CH1", "PEAKDETECT");
        fake.Expect("ACQUIRE:STOPAFTER?\n").Reply("SEQUENCE\n");
        fake.Expect(":ACQUIRE:REPET 0;STATE 0\n");
        fake.Expect("DESE 1;*ESE 1;*SRE 32\n");
        fake.Expect("*CLS\n");
    }
    void ExpectTransfer() {
        ExpectSavedState();
        ExpectChannelSetUp("CH1", "4");
        fake.Expect("CURVE?\n").Reply("#14\x02\x04\x02\x06\n");
        ExpectPreamble();
        ExpectRestore();
    }
    void ExpectTimeout(HRESULT status) {
        EXPECT_EQ(status, MakeStatus(0x80042003));
        EXPECT_EQ(ErrorText(),
                  "Kestrion: Maximum time exceeded before the operation completed.\r\n"
                  "Maximum Acquisition timeout exceeded.");
        EXPECT_EQ(waveform.Get(), nullptr);
    }

    SafeArrayPtr maximum;
};

TEST_F(ReadMinMaxTest, ASingleSequenceIsAwaitedByPolling) {
    Connect();
    ExpectStart();
    fake.Expect(":ACQUIRE:STATE 1;*OPC\n").StatusByte(1);
    ExpectTransfer();
    fake.ForgetCalls();
    const auto begin = clock.Now();
    EXPECT_EQ(ReadPairs(KestrionSourceCh1, 5000), S_OK);
    EXPECT_THAT(Volts(), ElementsAre(0.25, 0.25));
    EXPECT_THAT(maximum.Elements<double>(), ElementsAre(1.25, 2.25));
    EXPECT_THAT(fake.CallsOf("viReadSTB"), SizeIs(1));
    EXPECT_EQ(clock.Now() - begin, std::chrono::milliseconds(100));
    // The event is enabled although nothing waits for it.
    EXPECT_THAT(fake.Calls().front(), StartsWith("viEnableEvent"));
    EXPECT_THAT(fake.CallsOf("viDisableEvent"), SizeIs(1));
    EXPECT_THAT(fake.Calls(), Not(Contains(StartsWith("viWaitOnEvent"))));
}

TEST_F(ReadMinMaxTest, AMaximumTimeOfZeroPollsOnceAfter100Milliseconds) {
    Connect();
    ExpectStart();
    fake.Expect(":ACQUIRE:STATE 1;*OPC\n");
    fake.Expect("HEADER 0\n");
    fake.ForgetCalls();
    const auto begin = clock.Now();
    ExpectTimeout(ReadPairs(KestrionSourceCh1, 0));
    EXPECT_EQ(clock.Now() - begin, std::chrono::milliseconds(100));
    EXPECT_THAT(fake.CallsOf("viReadSTB"), SizeIs(1));
    EXPECT_THAT(fake.Calls(), Not(Contains(StartsWith("viDisableEvent"))));
}

TEST_F(ReadMinMaxTest, AStatusByteOf0x21IsNoCompletion) {
    Connect();
    ExpectStart();
    fake.Expect(":ACQUIRE:STATE 1;*OPC\n").StatusByte(0x21);
    fake.Expect("HEADER 0\n");
    fake.ForgetCalls();
    ExpectTimeout(ReadPairs(KestrionSourceCh1, 450));
    // At 100, 200, 300, 400 and 500 ms.
    EXPECT_THAT(fake.CallsOf("viReadSTB"), SizeIs(5));
}

TEST_F(ReadMinMaxTest, AnInfiniteTimeWrapsAndPollsOnce) {
    Connect();
    ExpectStart();
    fake.Expect(":ACQUIRE:STATE 1;*OPC\n");
    fake.Expect("HEADER 0\n");
    fake.ForgetCalls();
    ExpectTimeout(ReadPairs(KestrionSourceCh1, KestrionTimeOutInfinite));
    EXPECT_THAT(fake.CallsOf("viReadSTB"), SizeIs(1));
}

TEST_F(ReadMinMaxTest, ARunningAcquisitionIsTakenAsItStands) {
    Connect();
    ExpectChecksInMode("CH1", "ENVELOPE");
    fake.Expect("ACQUIRE:STOPAFTER?\n").Reply("RUNSTOP\n");
    fake.Expect("ACQUIRE:STATE 1\n");
    ExpectTransfer();
    const auto begin = clock.Now();
    EXPECT_EQ(ReadPairs(KestrionSourceCh1, 5000), S_OK);
    EXPECT_EQ(clock.Now(), begin);
}

TEST_F(ReadMinMaxTest, ASequenceThatCannotBeReadStartsNothing) {
    Connect();
    ExpectChecksInMode("CH1", "ENVELOPE");
    fake.Expect("ACQUIRE:STOPAFTER?\n").Reply("SOMETHING\n");
    ExpectTransfer();
    EXPECT_EQ(ReadPairs(KestrionSourceCh1, 5000), S_OK);
    EXPECT_EQ(ErrorText(), "");
}

TEST_F(ReadMinMaxTest, AStartThatFailsEndsByTimeoutWithoutTheLaterSteps) {
    Connect();
    ExpectChecksInMode("CH1", "PEAKDETECT");
    fake.Expect("ACQUIRE:STOPAFTER?\n").Reply("SEQUENCE\n");
    fake.OnTransfer([this] {
        if (fake.Written().ends_with("ACQUIRE:STOPAFTER?\n")) {
            fake.FailFunction("viWrite", static_cast<visa::ViStatus>(0xBFFF003E));
        }
    });
    EXPECT_EQ(ReadPairs(KestrionSourceCh1, 150), MakeStatus(0x80042003));
    EXPECT_THAT(fake.CallsOf("viReadSTB"), SizeIs(2));
}

TEST_F(ReadMinMaxTest, AMathAsksForTheLengthInTwoLines) {
    Connect();
    ExpectChecksInMode("MATH1", "ENVELOPE");
    fake.Expect("ACQUIRE:STOPAFTER?\n").Reply("RUNSTOP\n");
    fake.Expect("ACQUIRE:STATE 1\n");
    ExpectSavedState();
    ExpectFloatSetUp("MATH1", "2");
    fake.Expect("CURVE?\n").Reply(std::string_view("#18\x00\x00\xC0\x3F\x00\x00\x00\xC0\n", 12));
    ExpectPreamble();
    ExpectRestore();
    EXPECT_EQ(ReadPairs(KestrionSourceMath1, 20), S_OK);
    EXPECT_THAT(Volts(), ElementsAre(-0.25));
}

TEST_F(ReadMinMaxTest, TheCountIsNotTested) {
    Connect();
    ExpectChecksInMode("CH1", "ENVELOPE");
    fake.Expect("ACQUIRE:STOPAFTER?\n").Reply("RUNSTOP\n");
    fake.Expect("ACQUIRE:STATE 1\n");
    ExpectSavedState();
    ExpectChannelSetUp("CH1", "1000");
    fake.Expect("CURVE?\n").Reply("#13\x02\x04\x06\n");
    ExpectPreamble();
    ExpectRestore();
    EXPECT_EQ(ReadPairs(KestrionSourceCh1, 20), S_OK);
    EXPECT_THAT(Volts(), ElementsAre(0.25));
}

TEST_F(ReadMinMaxTest, SampleModeIsRefused) {
    Connect();
    ExpectChecksInMode("CH1", "SAMPLE");
    fake.Expect("HEADER 0\n");
    EXPECT_EQ(ReadPairs(KestrionSourceCh1, 20), MakeStatus(0x80042004));
}

TEST_F(ReadMinMaxTest, AnAbsentSourceIsRefusedWithoutAWordAndTheEventStaysEnabled) {
    Connect("PL77002SX");
    fake.Expect("HEADER?\n").Reply("1\n");
    fake.Expect("HEADER OFF\n");
    fake.Expect("HEADER 1\n");
    fake.ForgetCalls();
    EXPECT_EQ(ReadPairs(KestrionSourceCh3, 20), 1);
    EXPECT_EQ(ErrorText(), "");
    EXPECT_EQ(waveform.Get(), nullptr);
    EXPECT_THAT(fake.CallsOf("viEnableEvent"), SizeIs(1));
    EXPECT_THAT(fake.Calls(), Not(Contains(StartsWith("viDisableEvent"))));
}

}  // namespace
}  // namespace kestrion
