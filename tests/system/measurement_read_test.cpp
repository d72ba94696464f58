// ReadWaveformMeasurement: acquiring first.
#include "tests/system/measurement_link_test.h"

namespace kestrion {
namespace {

class MeasurementReadTest : public MeasurementLinkTest {
  protected:
    HRESULT Read(IviScopeMeasurementEnum function, LONG maxTime, double& value) {
        return ClassMeasurement(1)->ReadWaveformMeasurement(function, maxTime, &value);
    }
    void SetSingle(bool single) {
        EXPECT_EQ(client_.As<IKestrionAcquisition>()->put_SingleSequence(ToVariantBool(single)),
                  S_OK);
    }
};

TEST_P(MeasurementReadTest, ASequenceIsAwaitedWhereTheLinkHasServiceRequests) {
    SetSingle(true);
    double value = -1.0;
    if (IsSocket()) {
        EXPECT_EQ(Read(IviScopeMeasurementFrequency, 100, value), kMaxTimeExceeded);
        EXPECT_EQ(TakeErrorText(), kMaxTimeText);
    } else {
        for (int round = 0; round < 2; ++round) {
            ASSERT_EQ(Read(IviScopeMeasurementFrequency, 5000, value), S_OK) << TakeErrorText();
            EXPECT_NEAR(value, 1000.0, 0.01);
            EXPECT_EQ(Ask("ACQUIRE:STATE?;NUMACQ?"), "0;1");
        }
    }
    // The next member finds everything in order.
    client_.AcquireOnce(10000);
    EXPECT_EQ(ClassMeasurement(1)->FetchWaveformMeasurement(IviScopeMeasurementPeriod, &value),
              S_OK)
        << TakeErrorText();
    EXPECT_NEAR(value, 1e-3, 1e-8);
}

TEST_P(MeasurementReadTest, WithoutATriggerTheTimeRunsOut) {
    SetSingle(true);
    Send("TRIGGER:A:MODE NORMAL;:TRIGGER:A:LEVEL 5");
    double value = -1.0;
    EXPECT_EQ(Read(IviScopeMeasurementVoltageMax, 50, value), kMaxTimeExceeded);
    EXPECT_EQ(TakeErrorText(), kMaxTimeText);
    EXPECT_EQ(Ask("ACQUIRE:STATE?;NUMACQ?"), "1;0");
    Waveform waveform;
    EXPECT_EQ(client_.Fetch(KestrionSourceCh1, waveform), S_OK) << TakeErrorText();
}

// It gives what was set up last some time to show, three seconds.
TEST_P(MeasurementReadTest, ARunningAcquisitionIsMeasuredAsItStands) {
    SetSingle(false);
    double value = -1.0;
    ASSERT_EQ(Read(IviScopeMeasurementVoltagePeakToPeak, 0, value), S_OK) << TakeErrorText();
    EXPECT_NEAR(value, 2.0, 1e-6);
    EXPECT_EQ(Ask("ACQUIRE:STATE?"), "1");
}

INSTANTIATE_TEST_SUITE_P(Links, MeasurementReadTest, testing::Bool(), LinkName);

}  // namespace
}  // namespace kestrion
