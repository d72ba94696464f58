// IKestrionChannel: the members that set or read several settings at once.
#include <gmock/gmock.h>

#include "tests/support/scope_fixture.h"

namespace kestrion {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

class ChannelGroupTest : public ScopeTest {
  protected:
    HRESULT Configure(std::string_view name, KestrionChannelBandwidthEnum limit) {
        return Channel(name)->Configure(-1.5, 0.2, 0.05, 1e-9, KestrionChannelCouplingDC,
                                        KestrionChannelTerminationOneMeg, limit, VARIANT_TRUE);
    }
    HRESULT Read(std::string_view name) {
        return Channel(name)->Read(&position, &scale, &offset, &deskew, &coupling, &termination,
                                   &bandwidth, &displayed);
    }

    double position = -1.0;
    double scale = -1.0;
    double offset = -1.0;
    double deskew = -1.0;
    KestrionChannelCouplingEnum coupling = KestrionChannelCouplingAC;
    KestrionChannelTerminationEnum termination = KestrionChannelTerminationFifty;
    double bandwidth = -1.0;
    VARIANT_BOOL displayed = VARIANT_FALSE;
};

TEST_F(ChannelGroupTest, ConfigureIsOneLine) {
    Connect();
    fake.Expect(
        "CH3:POSITION -1.5;SCALE 0.2;OFFSET 0.05;DESKEW 1e-09;COUPLING DC;TERMINATION 1MEG;"
        "BANDWIDTH TWENTY;:SELECT:CH3 1\n");
    EXPECT_EQ(Configure("Channel3", KestrionChannelBandwidthTwenty), S_OK);
    fake.Expect(
        "CH1:POSITION 0;SCALE 1;OFFSET 0;DESKEW 0;COUPLING DCREJECT;TERMINATION 50;"
        "BANDWIDTH TWOFIFTY;:SELECT:CH1 0\n");
    EXPECT_EQ(Channel("Channel1")
                  ->Configure(0.0, 1.0, 0.0, 0.0, KestrionChannelCouplingDCREJECT,
                              KestrionChannelTerminationFifty, KestrionChannelBandwidthTwofifty,
                              VARIANT_FALSE),
              S_OK);
}

class EveryFamilyTest : public ScopeTest, public testing::WithParamInterface<const char*> {};

TEST_P(EveryFamilyTest, Bandwidth150MHzIsRefusedByNameOnlyAndEverywhere) {
    Connect(GetParam());
    const auto channel = Channel("Channel1");
    fake.ForgetCalls();
    EXPECT_EQ(channel->Configure(0.0, 1.0, 0.0, 0.0, KestrionChannelCouplingDC,
                                 KestrionChannelTerminationOneMeg, KestrionChannelBandwidthOnefifty,
                                 VARIANT_TRUE),
              MakeStatus(0x80047013));
    EXPECT_THAT(ErrorText(), HasSubstr("(enumeration) value Configure passed as the value for "
                                       "parameter Channel in method"));
    EXPECT_THAT(fake.CallsOf("viWrite"), IsEmpty());
    fake.Expect("CH1:BANDWIDTH 150000000\n");
    EXPECT_EQ(channel->put_Bandwidth(150e6), S_OK);
}

INSTANTIATE_TEST_SUITE_P(Families, EveryFamilyTest,
                         testing::Values("MR5104B", "SW72004C", "PL7254C", "CR7404B", "LK7254B",
                                         "LK7054", "IB6804B", "IB6404", "HR5054B", "HR5104"));

TEST_F(ChannelGroupTest, Bandwidth250MHzIsRefusedByTheHeronSeries) {
    Connect("HR5104");
    EXPECT_EQ(Configure("Channel1", KestrionChannelBandwidthTwofifty), MakeStatus(0x80047013));
    EXPECT_THAT(ErrorText(),
                HasSubstr("value Configure passed as the value for parameter Channel"));
}

TEST_F(ChannelGroupTest, Channel3OfATwoChannelModelIsRefusedBeforeAnyOtherTest) {
    Connect("PL77002SX");
    EXPECT_EQ(Configure("Channel3", KestrionChannelBandwidthOnefifty), MakeStatus(0x80020009));
    EXPECT_THAT(ErrorText(), HasSubstr("Resource ID = 245"));
    EXPECT_EQ(Configure("Channel4", KestrionChannelBandwidthTwenty), MakeStatus(0x80020009));
    EXPECT_EQ(Configure("Channel2", KestrionChannelBandwidthOnefifty), MakeStatus(0x80047013));
}

TEST_F(ChannelGroupTest, ReadTakesTwoQueriesAndGivesTheBandwidthAsANumber) {
    Connect();
    fake.Expect("CH2:POSITION?;SCALE?;OFFSET?;DESKEW?;COUPLING?;TERMINATION?;BANDWIDTH?;\n")
        .Reply("1.5;200.0E-3;-50.0E-3;1.0E-9;DC;50.0000;20.0000E+6\n");
    fake.Expect(":SELECT:CH2?\n").Reply("1\n");
    EXPECT_EQ(Read("Channel2"), S_OK);
    EXPECT_DOUBLE_EQ(position, 1.5);
    EXPECT_DOUBLE_EQ(scale, 0.2);
    EXPECT_DOUBLE_EQ(offset, -0.05);
    EXPECT_DOUBLE_EQ(deskew, 1e-9);
    EXPECT_EQ(coupling, KestrionChannelCouplingDC);
    EXPECT_EQ(termination, KestrionChannelTerminationFifty);
    EXPECT_DOUBLE_EQ(bandwidth, 20e6);
    EXPECT_EQ(displayed, VARIANT_TRUE);
}

TEST_F(ChannelGroupTest, ReadHasAWordOfItsOwnForOneMegohm) {
    Connect();
    fake.Expect("CH1:POSITION?;SCALE?;OFFSET?;DESKEW?;COUPLING?;TERMINATION?;BANDWIDTH?;\n")
        .Reply("0;1;0;0;AC;1MEG;1E9\n");
    fake.Expect(":SELECT:CH1?\n").Reply("0\n");
    EXPECT_EQ(Read("Channel1"), S_OK);
    EXPECT_EQ(termination, KestrionChannelTerminationOneMeg);
    EXPECT_DOUBLE_EQ(bandwidth, 1e9);
    EXPECT_EQ(displayed, VARIANT_FALSE);
}

TEST_F(ChannelGroupTest, ReadGoesByTheStatusOfTheDisplayStateAlone) {
    Connect();
    // The settings hold a word that the member doesn't know.
    fake.Expect("CH1:POSITION?;SCALE?;OFFSET?;DESKEW?;COUPLING?;TERMINATION?;BANDWIDTH?;\n")
        .Reply("2;1;0;0;NONE;50.0000;20E6\n");
    fake.Expect(":SELECT:CH1?\n").Reply("1\n");
    EXPECT_EQ(Read("Channel1"), S_OK);
    EXPECT_EQ(ErrorText(), "");
    EXPECT_EQ(position, 2.0);
    EXPECT_EQ(bandwidth, 0.0);
    EXPECT_EQ(displayed, VARIANT_TRUE);

    fake.Expect("CH1:POSITION?;SCALE?;OFFSET?;DESKEW?;COUPLING?;TERMINATION?;BANDWIDTH?;\n")
        .Reply("2;1;0;0;DC;50.0000;20E6\n");
    fake.Expect(":SELECT:CH1?\n").Reply("MAYBE\n");
    EXPECT_EQ(Read("Channel1"), MakeStatus(0x80047059));
    EXPECT_THAT(ErrorText(), HasSubstr("Unexpected value 'M' for enum 'VARIANT_BOOL'."));
}

TEST_F(ChannelGroupTest, ConfigureLabel) {
    Connect();
    fake.Expect("CH4:LABEL:NAME \"reset line\";XPOS 1.25;YPOS -2\n");
    const BstrPtr name(std::u16string_view(u"reset line"));
    EXPECT_EQ(Channel("Channel4")->ConfigureLabel(name.Get(), 1.25, -2.0), S_OK);
}

TEST_F(ChannelGroupTest, ReadProbeDetailsSortsTheReplyByMeaning) {
    Connect();
    fake.Expect(
            "CH2:PROBE:GAIN?;RESISTANCE?;UNITS?;ID:TYPE?;SERNUMBER?;:CH2:PROBEFUNC:EXTATTEN?;"
            "EXTDBATTEN?;:CH2:PROBECAL?;\n")
        .Reply("100.0E-3;10.0E+6;V;P2010;B012345;2.0;6.02;PASS\n");
    BstrPtr type;
    BstrPtr serial;
    BstrPtr unit;
    double resistance = 0.0;
    double gain = 0.0;
    double attenuation = 0.0;
    double decibels = 0.0;
    auto calibration = KestrionChannelCalibrationInitialized;
    EXPECT_EQ(Channel("Channel2")
                  ->ReadProbeDetails(type.Out(), &resistance, &gain, serial.Out(), unit.Out(),
                                     &attenuation, &decibels, &calibration),
              S_OK);
    EXPECT_EQ(type.Utf8(), "P2010");
    EXPECT_DOUBLE_EQ(resistance, 10e6);
    EXPECT_DOUBLE_EQ(gain, 0.1);
    EXPECT_EQ(serial.Utf8(), "B012345");
    EXPECT_EQ(unit.Utf8(), "V");
    EXPECT_DOUBLE_EQ(attenuation, 2.0);
    EXPECT_DOUBLE_EQ(decibels, 6.02);
    EXPECT_EQ(calibration, KestrionChannelCalibrationPass);
}

TEST_F(ChannelGroupTest, ProbeInputMode) {
    Connect();
    fake.Expect(
        "CH1:PROBE:INPUTMODE DIFFERENTIAL;INPUTMODE:CMOFFS 0.1;DMOFFS 0.2;AOFFS 0.3;BOFFS 0.4\n");
    EXPECT_EQ(Channel("Channel1")
                  ->ConfigureProbeInputMode(KestrionChannelProbeInputModeDifferential, 0.1, 0.2,
                                            0.3, 0.4),
              S_OK);
    fake.Expect(":CH1:PROBE:INPUTM?;:CH1:PROBE:INPUTM:CMOFFS?;DMOFFS?;AOFFS?;BOFFS?\n")
        .Reply("COMMONMODE;1;2;3;4\n");
    auto mode = KestrionChannelProbeInputModeA;
    double offsets[4] = {};
    EXPECT_EQ(Channel("Channel1")
                  ->ReadProbeInputMode(&mode, &offsets[0], &offsets[1], &offsets[2], &offsets[3]),
              S_OK);
    EXPECT_EQ(mode, KestrionChannelProbeInputModeCommon);
    EXPECT_THAT(offsets, testing::ElementsAre(1.0, 2.0, 3.0, 4.0));
}

TEST_F(ChannelGroupTest, AuxiliaryInput) {
    Connect();
    ComPtr<IKestrionChannels> channels;
    ASSERT_EQ(scope->get_Channels(channels.Out()), S_OK);
    fake.Expect("AUXIN:PROBE:INPUTMODE A;INPUTMODE:CMOFFS 0;DMOFFS 0.5;AOFFS 1;BOFFS 1.5\n");
    EXPECT_EQ(
        channels->ConfigureAuxInProbeInputMode(KestrionChannelProbeInputModeA, 0.0, 0.5, 1.0, 1.5),
        S_OK);
    fake.Expect("AUXIN:PROBE:INPUTM?;INPUTM:CMOFFS?;DMOFFS?;AOFFS?;BOFFS?\n").Reply("B;1;2;3;4\n");
    auto mode = KestrionChannelProbeInputModeA;
    double offsets[4] = {};
    EXPECT_EQ(channels->ReadAuxInProbeInputMode(&mode, &offsets[0], &offsets[1], &offsets[2],
                                                &offsets[3]),
              S_OK);
    EXPECT_EQ(mode, KestrionChannelProbeInputModeB);
    EXPECT_THAT(offsets, testing::ElementsAre(1.0, 2.0, 3.0, 4.0));
    fake.Expect("AUXIN:COUPLING GND\n");
    EXPECT_EQ(channels->put_AUXInCoupling(KestrionChannelCouplingGND), S_OK);
    fake.Expect("AUXIN:PROBE:SIGNAL?\n").Reply("PASS\n");
    auto signal = KestrionChannelProbeSignalBypass;
    EXPECT_EQ(channels->get_AUXInProbeSignal(&signal), S_OK);
    EXPECT_EQ(signal, KestrionChannelProbeSignalPass);
    fake.Expect("AUXIN:PROBE:SET \"RANGE 1\"\n");
    const BstrPtr setting(std::u16string_view(u"RANGE 1"));
    EXPECT_EQ(channels->put_AUXInProbeSet(setting.Get()), S_OK);
}

TEST_F(ChannelGroupTest, WavelengthHasNoChannelNumber) {
    Connect("CR7404B");
    fake.Expect("WLENGTH:VALUE?\n").Reply("1.3100E+3\n");
    auto wavelength = KestrionChannelWavelength780;
    EXPECT_EQ(Channel("Channel2")->get_WaveLength(&wavelength), S_OK);
    EXPECT_EQ(wavelength, KestrionChannelWavelength1310);
}

}  // namespace
}  // namespace kestrion
