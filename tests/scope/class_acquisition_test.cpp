// IIviScopeAcquisition: the class's view, live and in simulation.
#include <gmock/gmock.h>

#include "tests/support/scope_fixture.h"

namespace kestrion {
namespace {

class ClassAcquisitionTest : public ScopeTest {
  protected:
    ComPtr<IIviScopeAcquisition> Acquisition() { return As<IIviScopeAcquisition>(); }
};

TEST_F(ClassAcquisitionTest, TimePerRecordIsTenDivisionsInTheShortForm) {
    Connect();
    fake.Expect("HORIZONTAL:SCALE 0.0001\n");
    EXPECT_EQ(Acquisition()->put_TimePerRecord(1e-3), S_OK);
    fake.Expect("HORIZONTAL:SCALE 1.23457e-05\n");
    EXPECT_EQ(Acquisition()->put_TimePerRecord(1.23456789e-4), S_OK);
    fake.Expect("HORIZONTAL:SCALE?\n").Reply("4.0E-4\n");
    double time = 0.0;
    EXPECT_EQ(Acquisition()->get_TimePerRecord(&time), S_OK);
    EXPECT_DOUBLE_EQ(time, 4.0e-3);
}

TEST_F(ClassAcquisitionTest, StartTimeComesFromThePreamble) {
    Connect();
    fake.Expect("WFMOUTPRE:XINCR?\n").Reply("4.0E-7\n");
    fake.Expect("WFMOUTPRE:XZERO?\n").Reply("1.0E-3\n");
    fake.Expect("WFMOUTPRE:PT_OFF?\n").Reply("500\n");
    double time = 0.0;
    EXPECT_EQ(Acquisition()->get_StartTime(&time), S_OK);
    EXPECT_DOUBLE_EQ(time, 8.0e-4);
    fake.Expect("HORIZONTAL:DELAY:MODE ON;POSITION 0;TIME 0.002\n");
    EXPECT_EQ(Acquisition()->put_StartTime(2e-3), S_OK);
}

TEST_F(ClassAcquisitionTest, StartTimeStopsAtTheFirstFailure) {
    Connect();
    fake.Expect("WFMOUTPRE:XINCR?\n").Reply("4.0E-7\n");
    fake.Expect("WFMOUTPRE:XZERO?\n");
    double time = 1.0;
    EXPECT_EQ(Acquisition()->get_StartTime(&time), MakeStatus(0x80044215));
    EXPECT_EQ(time, 0.0);
}

TEST_F(ClassAcquisitionTest, ConfigureRecordPutsThreeSettingsInOrder) {
    Connect();
    fake.Expect("HORIZONTAL:SCALE 0.0001\n");
    fake.Expect("HORIZONTAL:RECORDLENGTH 2000\n");
    fake.Expect("HORIZONTAL:DELAY:MODE ON;POSITION 0;TIME -0.0005\n");
    EXPECT_EQ(Acquisition()->ConfigureRecord(1e-3, 2000, -5e-4), S_OK);
}

TEST_F(ClassAcquisitionTest, ConfigureRecordStopsAtTheFirstFailure) {
    Connect();
    fake.ForgetCalls();
    fake.FailFunction("viWrite", static_cast<visa::ViStatus>(0xBFFF003E));
    EXPECT_TRUE(Failed(Acquisition()->ConfigureRecord(1e-3, 2000, -5e-4)));
    EXPECT_THAT(fake.CallsOf("viWrite"), testing::SizeIs(1));
}

TEST_F(ClassAcquisitionTest, ConfigureRecordInSimulationSendsNothing) {
    Simulate();
    EXPECT_EQ(Acquisition()->ConfigureRecord(1e-3, 2000, -5e-4), S_OK);
    EXPECT_THAT(fake.Calls(), testing::IsEmpty());
}

TEST_F(ClassAcquisitionTest, MappedAttributes) {
    Connect();
    LONG number = 0;
    double real = 0.0;
    fake.Expect("HORIZONTAL:RECORDLENGTH?\n").Reply("1000\n");
    EXPECT_EQ(Acquisition()->get_RecordLength(&number), S_OK);
    EXPECT_EQ(number, 1000);
    fake.Expect("HORIZONTAL:RECORDLENGTH 5000\n");
    EXPECT_EQ(Acquisition()->put_NumberOfPointsMin(5000), S_OK);
    fake.Expect("HORIZONTAL:MAIN:SAMPLERATE?\n").Reply("1E9\n");
    EXPECT_EQ(Acquisition()->get_SampleRate(&real), S_OK);
    EXPECT_EQ(real, 1e9);
    fake.Expect("ACQUIRE:NUMAVG 32\n");
    EXPECT_EQ(Acquisition()->put_NumberOfAverages(32), S_OK);
    fake.Expect("ACQUIRE:NUMENV?\n").Reply("7\n");
    EXPECT_EQ(Acquisition()->get_NumberOfEnvelopes(&number), S_OK);
    EXPECT_EQ(number, 7);
}

TEST_F(ClassAcquisitionTest, TypePassesTheFirstFiveModesUnchanged) {
    Connect();
    const char* const words[] = {"SAMPLE", "PEAKDETECT", "HIRES", "ENVELOPE", "AVERAGE"};
    int number = 0;
    for (const char* word : words) {
        fake.Expect("ACQUIRE:MODE?\n").Reply(std::string(word) + "\n");
        auto type = static_cast<IviScopeAcquisitionTypeEnum>(9);
        EXPECT_EQ(Acquisition()->get_Type(&type), S_OK);
        EXPECT_EQ(static_cast<int>(type), number);
        fake.Expect("ACQUIRE:MODE " + std::string(word) + "\n");
        EXPECT_EQ(Acquisition()->put_Type(static_cast<IviScopeAcquisitionTypeEnum>(number)), S_OK);
        ++number;
    }
}

TEST_F(ClassAcquisitionTest, TypeHasNoNameForTheWaveformDatabase) {
    Connect();
    auto type = IviScopeAcquisitionTypeAverage;
    fake.Expect("ACQUIRE:MODE?\n").Reply("WFMDB\n");
    EXPECT_EQ(Acquisition()->get_Type(&type), MakeStatus(0x80047059));
    EXPECT_EQ(ErrorText(), "Kestrion: Unexpected response from the instrument.");
    EXPECT_EQ(static_cast<int>(type), 0);
}

TEST_F(ClassAcquisitionTest, SampleModeHasNoNameForInterpolatedTime) {
    Connect();
    auto mode = static_cast<IviScopeSampleModeEnum>(9);
    fake.Expect("ACQUIRE:SAMPLINGMODE?\n").Reply("ET\n");
    EXPECT_EQ(Acquisition()->get_SampleMode(&mode), S_OK);
    EXPECT_EQ(static_cast<int>(mode), 1);
    fake.Expect("ACQUIRE:SAMPLINGMODE?\n").Reply("IT\n");
    EXPECT_EQ(Acquisition()->get_SampleMode(&mode), MakeStatus(0x80047059));
    EXPECT_EQ(ErrorText(), "Kestrion: Unexpected response from the instrument.");
}

TEST_F(ClassAcquisitionTest, InterpolationIsTheDisplaysFilter) {
    Connect();
    auto interpolation = IviScopeInterpolationNone;
    fake.Expect("DISPLAY:FILTER?\n").Reply("SINX\n");
    EXPECT_EQ(Acquisition()->get_Interpolation(&interpolation), S_OK);
    EXPECT_EQ(interpolation, IviScopeInterpolationSineX);
    fake.Expect("DISPLAY:FILTER?\n").Reply("LINEAR\n");
    EXPECT_EQ(Acquisition()->get_Interpolation(&interpolation), S_OK);
    EXPECT_EQ(interpolation, IviScopeInterpolationLinear);
    fake.Expect("DISPLAY:FILTER SINX\n");
    EXPECT_EQ(Acquisition()->put_Interpolation(IviScopeInterpolationSineX), S_OK);
    EXPECT_EQ(Acquisition()->put_Interpolation(IviScopeInterpolationNone), MakeStatus(0x80047013));
}

TEST_F(ClassAcquisitionTest, SimulationKeepsEveryKindOfValue) {
    Simulate();
    double real = 0.0;
    EXPECT_EQ(Acquisition()->put_TimePerRecord(2.5), S_OK);
    EXPECT_EQ(Acquisition()->get_TimePerRecord(&real), S_OK);
    EXPECT_EQ(real, 2.5);
    EXPECT_EQ(Acquisition()->put_Interpolation(IviScopeInterpolationLinear), S_OK);
    auto interpolation = IviScopeInterpolationNone;
    EXPECT_EQ(Acquisition()->get_Interpolation(&interpolation), S_OK);
    EXPECT_EQ(interpolation, IviScopeInterpolationLinear);
    EXPECT_EQ(Acquisition()->put_NumberOfEnvelopes(-5), S_OK);
    LONG number = 0;
    EXPECT_EQ(Acquisition()->get_NumberOfEnvelopes(&number), S_OK);
    EXPECT_EQ(number, -5);
}

}  // namespace
}  // namespace kestrion
