// The inputs.
#include "tests/system/property_pairs.h"

namespace kestrion {
namespace {

class PairsOfChannels : public PropertyPairs {};

TEST_P(PairsOfChannels, ProbeInputModesOfTwoChannels) {
    Open();
    const auto first = client_.Channel("Channel1");
    const auto last = client_.Channel("Channel4");
    constexpr auto kPut = &IKestrionChannel::ConfigureProbeInputMode;
    constexpr auto kRead = &IKestrionChannel::ReadProbeInputMode;
    PutAndRead(*first, kPut, kRead, KestrionChannelProbeInputModeA, 0.5, -0.25, 100.0, -100.0);
    PutAndRead(*last, kPut, kRead, KestrionChannelProbeInputModeCommon, -3.0, 4.0, 0.001, 0.0);
    ExpectRead(*first, kRead, KestrionChannelProbeInputModeA, 0.5, -0.25, 100.0, -100.0);
    PutAndRead(*first, kPut, kRead, KestrionChannelProbeInputModeB, 1.0, 2.0, 3.0, 4.0);
    PutAndRead(*first, kPut, kRead, KestrionChannelProbeInputModeDifferential, 4.0, 3.0, 2.0, 1.0);
}

TEST_P(PairsOfChannels, ProbeInputModeOfTheAuxiliaryInput) {
    Open();
    const auto channels = client_.As<IKestrionChannels>();
    constexpr auto kPut = &IKestrionChannels::ConfigureAuxInProbeInputMode;
    constexpr auto kRead = &IKestrionChannels::ReadAuxInProbeInputMode;
    PutAndRead(*channels, kPut, kRead, KestrionChannelProbeInputModeCommon, 0.5, -0.25, 100.0,
               -100.0);
    PutAndRead(*channels, kPut, kRead, KestrionChannelProbeInputModeB, 1.0, 2.0, 3.0, 4.0);
}

struct ChannelSettings {
    double position;
    double scale;
    double offset;
    double deskew;
    KestrionChannelCouplingEnum coupling;
    KestrionChannelBandwidthEnum bandwidth;
    double hertz;  // what is read of the bandwidth
    VARIANT_BOOL shown;
};

TEST_P(PairsOfChannels, AWholeChannelIsReadWithItsBandwidthInHertz) {
    Open();
    for (const char* name : {"Channel1", "Channel4"}) {
        const auto channel = client_.Channel(name);
        for (const ChannelSettings& put :
             {ChannelSettings{-8.0, 0.001, 100.0, -75e-9, KestrionChannelCouplingAC,
                              KestrionChannelBandwidthFull, 2.5e9, VARIANT_TRUE},
              ChannelSettings{1.5, 10.0, -0.125, 1e-9, KestrionChannelCouplingGND,
                              KestrionChannelBandwidthTwofifty, 250e6, VARIANT_FALSE},
              ChannelSettings{0.0, 0.2, 0.0, 0.0, KestrionChannelCouplingDCREJECT,
                              KestrionChannelBandwidthTwenty, 20e6, VARIANT_TRUE}}) {
            EXPECT_EQ(
                channel->Configure(put.position, put.scale, put.offset, put.deskew, put.coupling,
                                   KestrionChannelTerminationFifty, put.bandwidth, put.shown),
                S_OK)
                << TakeErrorText();
            ExpectInstrumentError(0);
            ExpectRead(*channel, &IKestrionChannel::Read, put.position, put.scale, put.offset,
                       put.deskew, put.coupling, KestrionChannelTerminationFifty, put.hertz,
                       put.shown);
        }
    }
}

// The instrument answers 1.0000E+6, which isn't among the words of this method: from there on
// nothing is read but the display state. The property has the word.
TEST_P(PairsOfChannels, AMegohmEndsTheReadingOfAWholeChannel) {
    Open();
    const auto channel = client_.Channel("Channel3");
    EXPECT_EQ(channel->Configure(1.5, 0.5, -0.125, 1e-9, KestrionChannelCouplingGND,
                                 KestrionChannelTerminationOneMeg, KestrionChannelBandwidthTwofifty,
                                 VARIANT_TRUE),
              S_OK)
        << TakeErrorText();
    ExpectInstrumentError(0);
    ExpectRead(*channel, &IKestrionChannel::Read, 1.5, 0.5, -0.125, 1e-9,
               KestrionChannelCouplingGND, KestrionChannelTerminationFifty, 0.0, VARIANT_TRUE);
    ExpectGet(*channel, &IKestrionChannel::get_Termination, KestrionChannelTerminationOneMeg);
    ExpectGet(*channel, &IKestrionChannel::get_Bandwidth, 250e6);
}

// Its text is read as the instrument answers, in quotes.
TEST_P(PairsOfChannels, ALabelIsReadByItsProperties) {
    Open();
    const auto channel = client_.Channel("Channel2");
    for (const std::string_view name : {"clock", ""}) {
        const BstrPtr text(name);
        const double place = static_cast<double>(name.size());
        EXPECT_EQ(channel->ConfigureLabel(text.Get(), place, -place), S_OK) << TakeErrorText();
        BstrPtr got;
        EXPECT_EQ(channel->get_LabelName(got.Out()), S_OK) << TakeErrorText();
        EXPECT_EQ(got.Utf8(), '"' + std::string(name) + '"');
        ExpectGet(*channel, &IKestrionChannel::get_LabelPositionX, place);
        ExpectGet(*channel, &IKestrionChannel::get_LabelPositionY, -place);
    }
}

TEST_P(PairsOfChannels, ProbeDetailsAreStoredByTheirMeaning) {
    Open();
    const auto channel = client_.Channel("Channel3");
    EXPECT_EQ(channel->put_ExternalAttenuation(100.0), S_OK);
    BstrPtr type;
    BstrPtr serialNumber;
    BstrPtr unit;
    double resistance = 0.0;
    double gain = 0.0;
    double attenuation = 0.0;
    double decibels = 0.0;
    auto calibration = KestrionChannelCalibrationRunning;
    EXPECT_EQ(channel->ReadProbeDetails(type.Out(), &resistance, &gain, serialNumber.Out(),
                                        unit.Out(), &attenuation, &decibels, &calibration),
              S_OK)
        << TakeErrorText();
    EXPECT_EQ(type.Utf8(), "\"No probe detected\"");
    EXPECT_EQ(serialNumber.Utf8(), "\"N/A\"");
    EXPECT_EQ(unit.Utf8(), "\"V\"");
    EXPECT_EQ(resistance, 1e6);
    EXPECT_EQ(gain, 1.0);
    EXPECT_EQ(attenuation, 100.0);
    EXPECT_DOUBLE_EQ(decibels, 40.0);
    EXPECT_EQ(calibration, KestrionChannelCalibrationInitialized);
}

// The display state goes out as "1, ON", which the instrument doesn't take.
TEST_P(PairsOfChannels, TheClassConfiguresWithEightDivisionsAndReadsWithTen) {
    Open();
    const auto channel = Query<IIviScopeChannel>(client_.Channel("Channel2").Get());
    for (const auto& [range, read] : {std::pair(10.0, 12.5), std::pair(0.8, 1.0)}) {
        EXPECT_EQ(channel->Configure(range, range / 4, IviScopeVerticalCouplingAC, 2 * range,
                                     VARIANT_TRUE),
                  S_OK)
            << TakeErrorText();
        ExpectInstrumentError(-108);
        ExpectGet(*channel, &IIviScopeChannel::get_Range, read);
        ExpectGet(*channel, &IIviScopeChannel::get_Offset, range / 4);
        ExpectGet(*channel, &IIviScopeChannel::get_Coupling, IviScopeVerticalCouplingAC);
        ExpectGet(*channel, &IIviScopeChannel::get_ProbeAttenuation, 2 * range);
        ExpectGet(*channel, &IIviScopeChannel::get_Enabled, VARIANT_FALSE);
    }
}

TEST_P(PairsOfChannels, CharacteristicsOfTheClass) {
    Open();
    const auto channel = Query<IIviScopeChannel>(client_.Channel("Channel1").Get());
    for (const auto& [impedance, frequency] : {std::pair(1e6, 20e6), std::pair(50.0, 1e9)}) {
        EXPECT_EQ(channel->ConfigureCharacteristics(impedance, frequency), S_OK) << TakeErrorText();
        ExpectInstrumentError(0);
        ExpectGet(*channel, &IIviScopeChannel::get_InputImpedance, impedance);
        ExpectGet(*channel, &IIviScopeChannel::get_InputFrequencyMax, frequency);
    }
}

INSTANTIATE_TEST_SUITE_P(Links, PairsOfChannels, testing::Bool(), LinkName);

}  // namespace
}  // namespace kestrion
