// ReadWaveform: the acquisition by service request in front of the transfer.
#include <gmock/gmock.h>

#include "tests/scope/waveform_test.h"

namespace kestrion {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;
using testing::StartsWith;

class ReadWaveformTest : public WaveformTest {
  protected:
    void ExpectTransfer() {
        ExpectSavedState();
        ExpectChannelSetUp("CH1", "2");
        fake.Expect("CURVE?\n").Reply("#12\x02\x03\n");
        ExpectPreamble();
        ExpectRestore();
    }
};

TEST_F(ReadWaveformTest, ASingleSequenceIsAwaitedByServiceRequest) {
    Connect();
    ExpectChecks("CH1");
    fake.Expect("ACQUIRE:STOPAFTER?\n").Reply("SEQUENCE\n");
    fake.Expect("ACQUIRE:REPET 0;STATE 0\n");
    fake.Expect("DESE 1;*ESE 1;*SRE 32;*CLS\n");
    fake.Expect("ACQUIRE:STATE 1\n");
    fake.Expect("*OPC\n").RequestService();
    ExpectTransfer();
    fake.ForgetCalls();
    EXPECT_EQ(Read(KestrionSourceCh1, 5000), S_OK);
    EXPECT_THAT(Volts(), ElementsAre(0.25, 0.75));
    EXPECT_THAT(fake.CallsOf("viEnableEvent"), testing::SizeIs(1));
    EXPECT_THAT(fake.CallsOf("viWaitOnEvent"), testing::SizeIs(1));
    EXPECT_THAT(fake.CallsOf("viReadSTB"), testing::SizeIs(1));
    EXPECT_THAT(fake.CallsOf("viDisableEvent"), testing::SizeIs(1));
    EXPECT_THAT(fake.Calls().front(), StartsWith("viEnableEvent"));
}

TEST_F(ReadWaveformTest, ARunningAcquisitionIsTakenAsItStands) {
    Connect();
    ExpectChecks("CH1");
    fake.Expect("ACQUIRE:STOPAFTER?\n").Reply("RUNSTOP\n");
    fake.Expect("ACQUIRE:STATE 1\n");
    ExpectTransfer();
    fake.ForgetCalls();
    EXPECT_EQ(Read(KestrionSourceCh1, 5000), S_OK);
    EXPECT_THAT(fake.Calls(), Not(Contains(StartsWith("viWaitOnEvent"))));
}

TEST_F(ReadWaveformTest, ATimeoutPutsTheHeaderBackAndLeavesTheEventEnabled) {
    Connect();
    ExpectChecks("CH1");
    fake.Expect("ACQUIRE:STOPAFTER?\n").Reply("SEQUENCE\n");
    fake.Expect("ACQUIRE:REPET 0;STATE 0\n");
    fake.Expect("DESE 1;*ESE 1;*SRE 32;*CLS\n");
    fake.Expect("ACQUIRE:STATE 1\n");
    fake.Expect("*OPC\n");
    fake.Expect("HEADER 0\n");
    fake.ForgetCalls();
    EXPECT_EQ(Read(KestrionSourceCh1, 20), MakeStatus(0x80042003));
    EXPECT_EQ(ErrorText(),
              "Kestrion: Maximum time exceeded before the operation completed.\r\n"
              "Maximum Acquisition timeout exceeded.");
    EXPECT_THAT(fake.Calls(), Not(Contains(StartsWith("viDisableEvent"))));
    EXPECT_EQ(waveform.Get(), nullptr);
}

TEST_F(ReadWaveformTest, AStartThatFailsEndsByTimeoutWithoutTheLaterSteps) {
    Connect();
    ExpectChecks("CH1");
    fake.Expect("ACQUIRE:STOPAFTER?\n").Reply("SEQUENCE\n");
    // From the answer on, nothing that is written arrives.
    fake.OnTransfer([this] {
        if (fake.Written().ends_with("ACQUIRE:STOPAFTER?\n")) {
            fake.FailFunction("viWrite", static_cast<visa::ViStatus>(0xBFFF003E));
        }
    });
    EXPECT_EQ(Read(KestrionSourceCh1, 20), MakeStatus(0x80042003));
}

TEST_F(ReadWaveformTest, ASourceThatIsOffLeavesTheEventEnabled) {
    Connect();
    fake.Expect("HEADER?\n").Reply("0\n");
    fake.Expect("HEADER OFF\n");
    fake.Expect("SELECT:CH1?\n").Reply("0\n");
    fake.Expect("HEADER 0\n");
    fake.ForgetCalls();
    EXPECT_EQ(Read(KestrionSourceCh1, 20), MakeStatus(0x80042001));
    EXPECT_THAT(fake.CallsOf("viEnableEvent"), testing::SizeIs(1));
    EXPECT_THAT(fake.Calls(), Not(Contains(StartsWith("viDisableEvent"))));
}

TEST_F(ReadWaveformTest, ASourceThatATwoChannelModelLacksIsRefusedWithoutAWord) {
    Connect("PL77002SX");
    fake.Expect("HEADER?\n").Reply("1\n");
    fake.Expect("HEADER OFF\n");
    fake.Expect("HEADER 1\n");
    EXPECT_EQ(Read(KestrionSourceCh3, 20), 1);
    EXPECT_EQ(ErrorText(), "");
    EXPECT_EQ(waveform.Get(), nullptr);
}

TEST_F(ReadWaveformTest, TheCountIsNotTested) {
    Connect();
    ExpectChecks("CH1");
    fake.Expect("ACQUIRE:STOPAFTER?\n").Reply("RUNSTOP\n");
    fake.Expect("ACQUIRE:STATE 1\n");
    ExpectSavedState();
    ExpectChannelSetUp("CH1", "5");
    fake.Expect("CURVE?\n").Reply("#12\x02\x03\n");
    ExpectPreamble();
    ExpectRestore();
    EXPECT_EQ(Read(KestrionSourceCh1, 20), S_OK);
    EXPECT_THAT(Volts(), ElementsAre(0.25, 0.75));
}

}  // namespace
}  // namespace kestrion
