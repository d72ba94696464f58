// IKestrionAcquisition: every member's line, typed from the command set.
#include "tests/support/scope_fixture.h"

namespace kestrion {
namespace {

class AcquisitionTest : public ScopeTest {
  protected:
    ComPtr<IKestrionAcquisition> Acquisition() { return As<IKestrionAcquisition>(); }
};

TEST_F(AcquisitionTest, MethodsAreOneLineEach) {
    Connect();
    const auto acquisition = Acquisition();
    fake.Expect("AUTOSET EXECUTE\n");
    EXPECT_EQ(acquisition->AutoSet(), S_OK);
    fake.Expect("ACQUIRE:MODE AVERAGE;NUMAVG 16\n");
    EXPECT_EQ(acquisition->SetAverageMode(16), S_OK);
    fake.Expect("ACQUIRE:MODE ENVELOPE;NUMENV 8\n");
    EXPECT_EQ(acquisition->SetEnvelopeMode(8), S_OK);
    fake.Expect("ACQUIRE:MODE ENVELOPE;NUMENV 2000000000\n");
    EXPECT_EQ(acquisition->SetMaximumEnvelopes(), S_OK);
    fake.Expect("ACQUIRE:STATE ON\n");
    EXPECT_EQ(acquisition->Start(), S_OK);
    fake.Expect("ACQUIRE:STOPAFTER SEQUENCE;STATE ON\n");
    EXPECT_EQ(acquisition->StartSingleSequence(), S_OK);
    fake.Expect("ACQUIRE:STATE OFF\n");
    EXPECT_EQ(acquisition->Stop(), S_OK);
}

TEST_F(AcquisitionTest, WaveformDatabaseModeSetsModeAndSamples) {
    Connect();
    fake.Expect("ACQUIRE:MODE WFMDB\n");
    fake.Expect("ACQUIRE:NUMSAM 5000\n");
    EXPECT_EQ(Acquisition()->SetWfmDBMode(5000), S_OK);
}

TEST_F(AcquisitionTest, WaveformDatabaseModeEndsWithTheFirstRefusal) {
    Connect("HR5054B");
    EXPECT_EQ(Acquisition()->SetWfmDBMode(5000), MakeStatus(0x80020009));
}

TEST_F(AcquisitionTest, RunStopAndSingleSequenceAreOneSettingFromBothSides) {
    Connect();
    const auto acquisition = Acquisition();
    VARIANT_BOOL value = 9;
    fake.Expect("ACQUIRE:STOPAFTER?\n").Reply("SEQUENCE\n");
    EXPECT_EQ(acquisition->get_SingleSequence(&value), S_OK);
    EXPECT_EQ(value, VARIANT_TRUE);
    fake.Expect("ACQUIRE:STOPAFTER?\n").Reply("SEQUENCE\n");
    EXPECT_EQ(acquisition->get_RunStop(&value), S_OK);
    EXPECT_EQ(value, VARIANT_FALSE);
    fake.Expect("ACQUIRE:STOPAFTER SEQUENCE\n");
    EXPECT_EQ(acquisition->put_SingleSequence(VARIANT_TRUE), S_OK);
    fake.Expect("ACQUIRE:STOPAFTER RUNSTOP\n");
    EXPECT_EQ(acquisition->put_SingleSequence(VARIANT_FALSE), S_OK);
    fake.Expect("ACQUIRE:STOPAFTER RUNSTOP\n");
    EXPECT_EQ(acquisition->put_RunStop(VARIANT_TRUE), S_OK);
    fake.Expect("ACQUIRE:STOPAFTER SEQUENCE\n");
    EXPECT_EQ(acquisition->put_RunStop(VARIANT_FALSE), S_OK);
    // 1 stands for true as -1 does.
    fake.Expect("ACQUIRE:STOPAFTER RUNSTOP\n");
    EXPECT_EQ(acquisition->put_RunStop(1), S_OK);
}

TEST_F(AcquisitionTest, NumbersAreReadAndSet) {
    Connect();
    const auto acquisition = Acquisition();
    LONG value = 0;
    fake.Expect("ACQUIRE:NUMACQ?\n").Reply("12\n");
    EXPECT_EQ(acquisition->get_NumberAcquisitions(&value), S_OK);
    EXPECT_EQ(value, 12);
    fake.Expect("ACQUIRE:NUMAVG?\n").Reply("64\n");
    EXPECT_EQ(acquisition->get_NumberAverages(&value), S_OK);
    EXPECT_EQ(value, 64);
    fake.Expect("ACQUIRE:NUMAVG 2147483647\n");
    EXPECT_EQ(acquisition->put_NumberAverages(2147483647), S_OK);
    fake.Expect("ACQUIRE:NUMENV -2147483648\n");
    EXPECT_EQ(acquisition->put_NumberEnvelopes(-2147483647 - 1), S_OK);
    fake.Expect("ACQUIRE:NUMFRAMESACQUIRED?\n").Reply("3\n");
    EXPECT_EQ(acquisition->get_NumberOfFramesAcquired(&value), S_OK);
    EXPECT_EQ(value, 3);
}

TEST_F(AcquisitionTest, AResponseWithWhiteSpaceAroundItsTokenIsRead) {
    Connect();
    fake.Expect("ACQUIRE:SAMPLINGMODE?\n").Reply("  ET\r\n");
    auto mode = KestrionAcquisitionSamplingModeRT;
    EXPECT_EQ(Acquisition()->get_SamplingMode(&mode), S_OK);
    EXPECT_EQ(mode, KestrionAcquisitionSamplingModeET);
}

TEST_F(AcquisitionTest, StaleTextOfAnEarlierResponseIsDroppedByTheNextQuery) {
    Connect();
    LONG value = 0;
    fake.Expect("ACQUIRE:NUMAVG?\n").Reply("64;and more\n");
    EXPECT_EQ(Acquisition()->get_NumberAverages(&value), S_OK);
    EXPECT_EQ(value, 64);
    fake.Expect("ACQUIRE:NUMAVG?\n").Reply("32\n");
    EXPECT_EQ(Acquisition()->get_NumberAverages(&value), S_OK);
    EXPECT_EQ(value, 32);
}

}  // namespace
}  // namespace kestrion
