// IIviScopeMeasurement of a channel: the class's waveform methods.
#include <gmock/gmock.h>

#include <limits>

#include "tests/scope/waveform_test.h"

namespace kestrion {
namespace {

using testing::Each;
using testing::ElementsAre;

class ClassWaveformTest : public WaveformTest {
  protected:
    ComPtr<IIviScopeMeasurement> Measurement(std::string_view channel) {
        auto found = Query<IIviScopeMeasurement>(Channel(channel).Get());
        EXPECT_TRUE(found);
        return found;
    }
    void ExpectZeros(const SafeArrayPtr& array) {
        EXPECT_EQ(array.Elements<double>().size(), 500U);
        EXPECT_THAT(array.Elements<double>(), Each(0.0));
    }

    SafeArrayPtr maximum;
};

TEST_F(ClassWaveformTest, AChannelsRecordIsFetched) {
    Connect();
    const auto measurement = Measurement("Channel2");
    ExpectChecks("CH2");
    ExpectSavedState();
    ExpectChannelSetUp("CH2", "2");
    fake.Expect("CURVE?\n").Reply("#12\x02\x03\n");
    ExpectPreamble();
    ExpectRestore();
    EXPECT_EQ(measurement->FetchWaveform(waveform.Out(), &initialX, &xIncrement), S_OK);
    EXPECT_THAT(Volts(), ElementsAre(0.25, 0.75));
    EXPECT_DOUBLE_EQ(initialX, 8.0e-4);
}

TEST_F(ClassWaveformTest, AChannelsRecordIsAcquiredAndRead) {
    Connect();
    const auto measurement = Measurement("Channel1");
    ExpectChecks("CH1");
    fake.Expect("ACQUIRE:STOPAFTER?\n").Reply("RUNSTOP\n");
    fake.Expect("ACQUIRE:STATE 1\n");
    ExpectSavedState();
    ExpectChannelSetUp("CH1", "2");
    fake.Expect("CURVE?\n").Reply("#12\x02\x03\n");
    ExpectPreamble();
    ExpectRestore();
    EXPECT_EQ(measurement->ReadWaveform(20, waveform.Out(), &initialX, &xIncrement), S_OK);
    EXPECT_THAT(Volts(), ElementsAre(0.25, 0.75));
}

TEST_F(ClassWaveformTest, AChannelsPairsAreFetchedAndRead) {
    Connect();
    const auto measurement = Measurement("Channel4");
    for (const bool read : {false, true}) {
        ExpectChecksInMode("CH4", "PEAKDETECT");
        if (read) {
            fake.Expect("ACQUIRE:STOPAFTER?\n").Reply("RUNSTOP\n");
            fake.Expect("ACQUIRE:STATE 1\n");
        }
        ExpectSavedState();
        ExpectChannelSetUp("CH4", "2");
        fake.Expect("CURVE?\n").Reply("#12\x02\x03\n");
        ExpectPreamble();
        ExpectRestore();
        EXPECT_EQ(read ? measurement->ReadWaveformMinMax(20, waveform.Out(), maximum.Out(),
                                                         &initialX, &xIncrement)
                       : measurement->FetchWaveformMinMax(waveform.Out(), maximum.Out(), &initialX,
                                                          &xIncrement),
                  S_OK);
        EXPECT_THAT(Volts(), ElementsAre(0.25));
        EXPECT_THAT(maximum.Elements<double>(), ElementsAre(0.75));
    }
}

TEST_F(ClassWaveformTest, AnElementIsToldAsTheInstrumentMemberTellsIt) {
    Connect();
    const auto measurements = As<IIviScopeMeasurements>();
    VARIANT_BOOL invalid = VARIANT_FALSE;
    EXPECT_EQ(measurements->IsWaveformElementInvalid(0.5, &invalid), S_OK);
    EXPECT_EQ(invalid, VARIANT_TRUE);
    EXPECT_EQ(
        measurements->IsWaveformElementInvalid(std::numeric_limits<double>::quiet_NaN(), &invalid),
        S_OK);
    EXPECT_EQ(invalid, VARIANT_FALSE);
}

TEST_F(ClassWaveformTest, AFailureIsTheInstrumentMembers) {
    Connect();
    const auto measurement = Measurement("Channel1");
    ExpectHeaderOff();
    fake.Expect("SELECT:CH1?\n").Reply("0\n");
    fake.Expect("HEADER 0\n");
    EXPECT_EQ(measurement->FetchWaveform(waveform.Out(), &initialX, &xIncrement),
              MakeStatus(0x80042001));
    EXPECT_EQ(ErrorText(),
              "Kestrion: Specified channel is not enabled.\r\nChannel Not Enabled error");
}

TEST_F(ClassWaveformTest, SimulationGives500ZerosInPlaceOfTheCallersArrays) {
    Simulate();
    const auto measurement = Measurement("Channel1");
    // Arrays that the caller hands in are freed: a leak shows under the address sanitizer.
    SAFEARRAY* first = SafeArrayCreateVector(VT_R8, 0, 3);
    SAFEARRAY* second = SafeArrayCreateVector(VT_I4, 0, 7);
    EXPECT_EQ(measurement->FetchWaveform(&first, &initialX, &xIncrement), S_OK);
    EXPECT_EQ(initialX, 0.0);
    EXPECT_EQ(xIncrement, 0.0);
    initialX = xIncrement = -1.0;
    EXPECT_EQ(measurement->FetchWaveformMinMax(&first, &second, &initialX, &xIncrement), S_OK);
    ExpectZeros(waveform = SafeArrayPtr(first));
    ExpectZeros(maximum = SafeArrayPtr(second));
    EXPECT_EQ(initialX, 0.0);
    EXPECT_EQ(xIncrement, 0.0);
}

TEST_F(ClassWaveformTest, SimulationReadsZerosWithoutWaiting) {
    Simulate();
    const auto measurement = Measurement("Channel3");
    const auto begin = clock.Now();
    EXPECT_EQ(measurement->ReadWaveform(1000, waveform.Out(), &initialX, &xIncrement), S_OK);
    ExpectZeros(waveform);
    EXPECT_EQ(measurement->ReadWaveformMinMax(1000, waveform.Out(), maximum.Out(), &initialX,
                                              &xIncrement),
              S_OK);
    ExpectZeros(waveform);
    ExpectZeros(maximum);
    EXPECT_EQ(clock.Now(), begin);
    EXPECT_THAT(fake.Calls(), ElementsAre());
}

TEST_F(ClassWaveformTest, SimulationLeavesAnArrayThatIsInUse) {
    Simulate();
    SAFEARRAY* used = SafeArrayCreateVector(VT_R8, 0, 3);
    ASSERT_EQ(SafeArrayLock(used), S_OK);
    SAFEARRAY* handed = used;
    EXPECT_EQ(Measurement("Channel1")->FetchWaveform(&handed, &initialX, &xIncrement),
              MakeStatus(0x8002000D));
    EXPECT_EQ(handed, used);
    EXPECT_EQ(SafeArrayUnlock(used), S_OK);
    waveform = SafeArrayPtr(used);
}

TEST_F(ClassWaveformTest, TheRootHasNoMeasurementOfItsOwn) {
    Simulate();
    EXPECT_FALSE(Query<IIviScopeMeasurement>(scope.Get()));
}

}  // namespace
}  // namespace kestrion
