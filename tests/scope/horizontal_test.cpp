// IKestrionHorizontal: lines typed from the command set.
#include "tests/support/scope_fixture.h"

namespace kestrion {
namespace {

class HorizontalTest : public ScopeTest {
  protected:
    ComPtr<IKestrionHorizontal> Horizontal() { return As<IKestrionHorizontal>(); }
};

TEST_F(HorizontalTest, ConfigureIsOneCompoundLine) {
    Connect();
    fake.Expect("HORIZONTAL:POSITION 50;SCALE 0.0004;RECORDLENGTH 10000\n");
    EXPECT_EQ(Horizontal()->Configure(50.0, 4.0e-4, 10000), S_OK);
}

TEST_F(HorizontalTest, ReadTakesThreeFields) {
    Connect();
    fake.Expect("HORIZONTAL:POSITION?;SCALE?;RECORDLENGTH?\n").Reply("5.0E1;4.0E-4;10000\n");
    double position = 0.0;
    double scale = 0.0;
    LONG length = 0;
    EXPECT_EQ(Horizontal()->Read(&position, &scale, &length), S_OK);
    EXPECT_EQ(position, 50.0);
    EXPECT_EQ(scale, 4.0e-4);
    EXPECT_EQ(length, 10000);
}

TEST_F(HorizontalTest, DelayLines) {
    Connect();
    fake.Expect("HORIZONTAL:MAIN:DELAY:MODE OFF\n");
    EXPECT_EQ(Horizontal()->ConfigureDelayOff(), S_OK);
    fake.Expect("HORIZONTAL:MAIN:DELAY:MODE ON;TIME 1.5e-09\n");
    EXPECT_EQ(Horizontal()->ConfigureDelayOn(1.5e-9), S_OK);
}

TEST_F(HorizontalTest, TheHorizontalModelIsWrittenAndRead) {
    Connect();
    fake.Expect("HOR:MODE:SAMPLER 2500000000;SCALE 4e-08;RECO 1000;AUTO:LIMIT 500000\n");
    EXPECT_EQ(Horizontal()->ConfigureHorizontalModel(500000, 2.5e9, 4.0e-8, 1000), S_OK);
    fake.Expect("HOR:MODE:SAMPLER?;SCALE?;RECO?;AUTO:LIMIT?\n").Reply("2.5E9;4.0E-8;1000;500000\n");
    LONG limit = 0;
    double rate = 0.0;
    double scale = 0.0;
    LONG length = 0;
    EXPECT_EQ(Horizontal()->ReadHorizontalModel(&limit, &rate, &scale, &length), S_OK);
    EXPECT_EQ(limit, 500000);
    EXPECT_EQ(rate, 2.5e9);
    EXPECT_EQ(scale, 4.0e-8);
    EXPECT_EQ(length, 1000);
}

TEST_F(HorizontalTest, DurationIsDivisionsTimesScale) {
    Connect();
    fake.Expect("HORIZONTAL:DIVISION?;SCALE?\n").Reply("10;4.0E-4\n");
    double duration = 0.0;
    EXPECT_EQ(Horizontal()->get_Duration(&duration), S_OK);
    EXPECT_DOUBLE_EQ(duration, 4.0e-3);
}

TEST_F(HorizontalTest, RealsTravelWithFifteenDigits) {
    Connect();
    fake.Expect("HORIZONTAL:SCALE 0.000123456789012345\n");
    EXPECT_EQ(Horizontal()->put_HorizontalScale(0.000123456789012345), S_OK);
    fake.Expect("HORIZONTAL:SCALE?\n").Reply("1.23456789012345E-4\n");
    double scale = 0.0;
    EXPECT_EQ(Horizontal()->get_HorizontalScale(&scale), S_OK);
    EXPECT_EQ(scale, 1.23456789012345e-4);
}

TEST_F(HorizontalTest, PropertiesHaveThePathsOfTheCommandSet) {
    Connect();
    const auto horizontal = Horizontal();
    LONG number = 0;
    double real = 0.0;
    fake.Expect("HORIZONTAL:RECORDLENGTH 100000000\n");
    EXPECT_EQ(horizontal->put_RecordLength(100000000), S_OK);
    fake.Expect("HORIZONTAL:RECORDLENGTH?\n").Reply("1000\n");
    EXPECT_EQ(horizontal->get_RecordLength(&number), S_OK);
    EXPECT_EQ(number, 1000);
    fake.Expect("HORIZONTAL:MAIN:SAMPLERATE?\n").Reply("2.5000E+6\n");
    EXPECT_EQ(horizontal->get_SampleRate(&real), S_OK);
    EXPECT_EQ(real, 2.5e6);
    fake.Expect("HORIZONTAL:TRIGGER:POSITION 50\n");
    EXPECT_EQ(horizontal->put_TriggerPosition(50.0), S_OK);
    fake.Expect("HORIZONTAL:MAIN:DELAY:POSITION 10\n");
    EXPECT_EQ(horizontal->put_ReferencePoint(10.0), S_OK);
    fake.Expect("HORIZONTAL:MAIN:UNITS:STRING \"s\"\n");
    const BstrPtr unit(std::u16string_view(u"s"));
    EXPECT_EQ(horizontal->put_UnitsString(unit.Get()), S_OK);
    fake.Expect("HORIZONTAL:MODE:SCALE 0.001\n");
    EXPECT_EQ(horizontal->put_HorizontalModelScale(1e-3), S_OK);
}

}  // namespace
}  // namespace kestrion
