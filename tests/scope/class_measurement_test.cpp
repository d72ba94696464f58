// IIviScopeMeasurements and IIviScopeMeasurement: acquisitions and measurements of the class.
#include <gmock/gmock.h>

#include "tests/support/scope_fixture.h"

namespace kestrion {
namespace {

using testing::Contains;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

class ClassMeasurementTest : public ScopeTest {
  protected:
    ComPtr<IIviScopeMeasurements> Measurements() {
        ComPtr<IIviScopeMeasurements> measurements;
        EXPECT_EQ(As<IIviScope>()->get_Measurements(measurements.Out()), S_OK);
        return measurements;
    }
    ComPtr<IIviScopeMeasurement> Measurement(std::string_view channel) {
        ComPtr<IIviScopeMeasurement> measurement;
        const BstrPtr name(channel);
        EXPECT_EQ(Measurements()->get_Item(name.Get(), measurement.Out()), S_OK);
        return measurement;
    }
    HRESULT Read(LONG maxTime) {
        return Measurement("Channel2")
            ->ReadWaveformMeasurement(IviScopeMeasurementPeriod, maxTime, &value);
    }
    void ExpectStart() {
        fake.Expect("ACQUIRE:STOPAFTER?\n").Reply("SEQUENCE\n");
        fake.Expect("ACQUIRE:REPET 0;STATE 0\n");
        fake.Expect("DESE 1;*ESE 1;*SRE 32;*CLS\n");
        fake.Expect("ACQUIRE:STATE 1\n");
    }
    void ExpectMeasurement() {
        fake.Expect("MEASUREMENT:IMMED:SOURCE1 CH2\n");
        fake.Expect("MEASUREMENT:IMMED:TYPE PERIOD\n");
        fake.Expect("MEASUREMENT:IMMED:VALUE?\n").Reply("1.0E-3\n");
    }

    double value = -1.0;
};

TEST_F(ClassMeasurementTest, CollectionOfChannels) {
    Connect();
    LONG count = 0;
    EXPECT_EQ(Measurements()->get_Count(&count), S_OK);
    EXPECT_EQ(count, 4);
    BstrPtr name;
    EXPECT_EQ(Measurements()->get_Name(1, name.Out()), S_OK);
    EXPECT_EQ(name.Utf8(), "Channel1");
}

TEST_F(ClassMeasurementTest, InitiateAbortAndAutoSetup) {
    Connect();
    fake.Expect("ACQUIRE:STATE ON\n");
    EXPECT_EQ(Measurements()->Initiate(), S_OK);
    fake.Expect("ACQUIRE:STATE OFF\n");
    EXPECT_EQ(Measurements()->Abort(), S_OK);
    fake.Expect("AUTOSET EXECUTE\n");
    EXPECT_EQ(Measurements()->AutoSetup(), S_OK);
}

TEST_F(ClassMeasurementTest, StatusOfARunningAcquisitionIsInProgress) {
    Connect();
    fake.Expect("ACQUIRE:STATE?\n").Reply("1\n");
    auto status = IviScopeAcquisitionStatusUnknown;
    EXPECT_EQ(Measurements()->Status(&status), S_OK);
    EXPECT_EQ(static_cast<int>(status), 0);
}

TEST_F(ClassMeasurementTest, StatusOfAStoppedOneGoesByTheAcquisitionsSoFar) {
    Connect();
    auto status = IviScopeAcquisitionStatusInProgress;
    fake.Expect("ACQUIRE:STATE?\n").Reply("0\n");
    fake.Expect("ACQUIRE:NUMACQ?\n").Reply("3\n");
    EXPECT_EQ(Measurements()->Status(&status), S_OK);
    EXPECT_EQ(static_cast<int>(status), 1);
    fake.Expect("ACQUIRE:STATE?\n").Reply("0\n");
    fake.Expect("ACQUIRE:NUMACQ?\n").Reply("0\n");
    EXPECT_EQ(Measurements()->Status(&status), S_OK);
    EXPECT_EQ(static_cast<int>(status), -1);
}

TEST_F(ClassMeasurementTest, StatusStopsAtTheFirstFailure) {
    Connect();
    auto status = IviScopeAcquisitionStatusComplete;
    fake.Expect("ACQUIRE:STATE?\n").Reply("MAYBE\n");
    EXPECT_EQ(Measurements()->Status(&status), MakeStatus(0x80047059));
    fake.Expect("ACQUIRE:STATE?\n").Reply("0\n");
    fake.Expect("ACQUIRE:NUMACQ?\n");
    EXPECT_EQ(Measurements()->Status(&status), MakeStatus(0x80044215));
    EXPECT_EQ(static_cast<int>(status), 0);
}

TEST_F(ClassMeasurementTest, SimulationIsCompleteAndSendsNothing) {
    Simulate();
    auto status = IviScopeAcquisitionStatusUnknown;
    EXPECT_EQ(Measurements()->Status(&status), S_OK);
    EXPECT_EQ(static_cast<int>(status), 1);
    EXPECT_EQ(Measurements()->Initiate(), S_OK);
    EXPECT_EQ(Measurements()->Abort(), S_OK);
    EXPECT_EQ(Measurements()->AutoSetup(), S_OK);
    EXPECT_EQ(Measurement("Channel1")->FetchWaveformMeasurement(IviScopeMeasurementPeriod, &value),
              S_OK);
    EXPECT_EQ(value, 0.0);
    value = -1.0;
    EXPECT_EQ(Read(1000), S_OK);
    EXPECT_EQ(value, 0.0);
    EXPECT_THAT(fake.Calls(), IsEmpty());
}

TEST_F(ClassMeasurementTest, FetchTakesThreeStepsOfTheImmediateMeasurement) {
    Connect();
    fake.Expect("MEASUREMENT:IMMED:SOURCE1 CH3\n");
    fake.Expect("MEASUREMENT:IMMED:TYPE NOVERSHOOT\n");
    fake.Expect("MEASUREMENT:IMMED:VALUE?\n").Reply("12.5\n");
    EXPECT_EQ(
        Measurement("Channel3")->FetchWaveformMeasurement(IviScopeMeasurementPreshoot, &value),
        S_OK);
    EXPECT_EQ(value, 12.5);
}

TEST_F(ClassMeasurementTest, TheNumberOfAFunctionPassesAsItStands) {
    Connect();
    fake.Expect("MEASUREMENT:IMMED:SOURCE1 CH1\n");
    fake.Expect("MEASUREMENT:IMMED:TYPE AREA\n");
    fake.Expect("MEASUREMENT:IMMED:VALUE?\n").Reply("1E-6\n");
    // One more than the class has; the instrument's own type of that number.
    EXPECT_EQ(Measurement("Channel1")
                  ->FetchWaveformMeasurement(static_cast<IviScopeMeasurementEnum>(20), &value),
              S_OK);
    fake.Expect("MEASUREMENT:IMMED:SOURCE1 CH1\n");
    EXPECT_EQ(Measurement("Channel1")
                  ->FetchWaveformMeasurement(static_cast<IviScopeMeasurementEnum>(52), &value),
              MakeStatus(0x80047010));
}

TEST_F(ClassMeasurementTest, FetchStopsAtTheFirstFailure) {
    Connect();
    fake.FailFunction("viWrite", static_cast<visa::ViStatus>(0xBFFF003E));
    fake.ForgetCalls();
    EXPECT_TRUE(Failed(
        Measurement("Channel3")->FetchWaveformMeasurement(IviScopeMeasurementPeriod, &value)));
    EXPECT_THAT(fake.CallsOf("viWrite"), SizeIs(1));
    EXPECT_EQ(value, 0.0);
}

TEST_F(ClassMeasurementTest, AVeryLargeValueIsReturnedWithAGoodStatus) {
    Connect();
    fake.Expect("MEASUREMENT:IMMED:SOURCE1 CH1\n");
    fake.Expect("MEASUREMENT:IMMED:TYPE FREQUENCY\n");
    fake.Expect("MEASUREMENT:IMMED:VALUE?\n").Reply("9.91E37\n");
    EXPECT_EQ(
        Measurement("Channel1")->FetchWaveformMeasurement(IviScopeMeasurementFrequency, &value),
        S_OK);
    EXPECT_DOUBLE_EQ(value, 9.91e37);
    EXPECT_EQ(ErrorText(), "");
}

TEST_F(ClassMeasurementTest, ReadAwaitsASingleSequenceAndLeavesTheEventEnabled) {
    Connect();
    ExpectStart();
    fake.Expect("*OPC\n").RequestService();
    ExpectMeasurement();
    fake.ForgetCalls();
    const auto before = clock.Now();
    EXPECT_EQ(Read(5000), S_OK);
    EXPECT_DOUBLE_EQ(value, 1e-3);
    EXPECT_THAT(fake.Calls().front(), StartsWith("viEnableEvent"));
    EXPECT_THAT(fake.CallsOf("viWaitOnEvent"), SizeIs(1));
    EXPECT_THAT(fake.CallsOf("viReadSTB"), SizeIs(1));
    EXPECT_THAT(fake.Calls(), Not(Contains(StartsWith("viDisableEvent"))));
    EXPECT_EQ(clock.Now(), before);
}

TEST_F(ClassMeasurementTest, ReadWithSingleSequenceOffSleepsThreeSecondsAndDoesNotWait) {
    Connect();
    fake.Expect("ACQUIRE:STOPAFTER?\n").Reply("RUNSTOP\n");
    fake.Expect("ACQUIRE:STATE 1\n");
    ExpectMeasurement();
    fake.ForgetCalls();
    const auto before = clock.Now();
    EXPECT_EQ(Read(5000), S_OK);
    EXPECT_EQ(clock.Now() - before, std::chrono::milliseconds(3000));
    EXPECT_THAT(fake.CallsOf("viEnableEvent"), SizeIs(1));
    EXPECT_THAT(fake.Calls(), Not(Contains(StartsWith("viWaitOnEvent"))));
}

TEST_F(ClassMeasurementTest, ReadGoesOnWhereSingleSequenceCantBeRead) {
    Connect();
    fake.Expect("ACQUIRE:STOPAFTER?\n").Reply("SOMETIMES\n");
    ExpectMeasurement();
    EXPECT_EQ(Read(5000), S_OK);
    EXPECT_DOUBLE_EQ(value, 1e-3);
    EXPECT_EQ(ErrorText(), "");
}

TEST_F(ClassMeasurementTest, ReadThatTimesOutReportsItAndMeasuresNothing) {
    Connect();
    ExpectStart();
    fake.Expect("*OPC\n");
    fake.ForgetCalls();
    EXPECT_EQ(Read(20), MakeStatus(0x80042003));
    EXPECT_EQ(ErrorText(),
              "Kestrion: Maximum time exceeded before the operation completed.\r\n"
              "Maximum Acquisition timeout exceeded.");
    EXPECT_EQ(value, 0.0);
    EXPECT_THAT(fake.Calls(), Not(Contains(StartsWith("viDisableEvent"))));
}

TEST_F(ClassMeasurementTest, AWarningOfTheWaitIsNoTimeoutHere) {
    Connect();
    ExpectStart();
    fake.Expect("*OPC\n");
    ExpectMeasurement();
    // More events were in the queue than it holds.
    fake.FailFunction("viWaitOnEvent", 0x3FFF0080);
    EXPECT_EQ(Read(5000), S_OK);
    EXPECT_DOUBLE_EQ(value, 1e-3);
    fake.FailFunction("viWaitOnEvent", 0);
}

}  // namespace
}  // namespace kestrion
