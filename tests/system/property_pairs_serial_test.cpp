// Serial, communication and video triggers.
#include "tests/system/property_pairs.h"

namespace kestrion {
namespace {

class PairsOfSignals : public PropertyPairs {};

struct SerialPattern {
    KestrionChannelEnum source;
    KestrionTriggerSerialCodeEnum code;
    KestrionTriggerSerialStandardEnum standard;
    KestrionTriggerSerialDataFormatEnum format;
    std::string pattern;
};

TEST_P(PairsOfSignals, SerialPattern) {
    Open();
    const auto serial = client_.As<IKestrionTriggerSerial>();
    for (const SerialPattern& put :
         {SerialPattern{KestrionChannelCh3, KestrionTriggerSerialCodeS8B10B,
                        KestrionTriggerSerialStandardPCIe2500,
                        KestrionTriggerSerialDataFormatBinary, "01XX10"},
          SerialPattern{KestrionChannelCh1, KestrionTriggerSerialCodeNRZ,
                        KestrionTriggerSerialStandardFC4250, KestrionTriggerSerialDataFormatHex,
                        "BEEF"}}) {
        const BstrPtr pattern(std::string_view(put.pattern));
        EXPECT_EQ(serial->Configure(put.source, put.code, put.standard, put.format, pattern.Get()),
                  S_OK)
            << TakeErrorText();
        ExpectInstrumentError(0);
        auto source = KestrionChannelCh4;
        auto code = KestrionTriggerSerialCodeNRZ;
        auto standard = KestrionTriggerSerialStandardCustom;
        auto format = KestrionTriggerSerialDataFormatBinary;
        BstrPtr got;
        EXPECT_EQ(serial->Read(&source, &code, &standard, &format, got.Out()), S_OK)
            << TakeErrorText();
        EXPECT_EQ(source, put.source);
        EXPECT_EQ(code, put.code);
        EXPECT_EQ(standard, put.standard);
        EXPECT_EQ(format, put.format);
        EXPECT_EQ(got.Utf8(), '"' + put.pattern + '"');
    }
}

TEST_P(PairsOfSignals, SerialClock) {
    Open();
    const auto serial = client_.As<IKestrionTriggerSerial>();
    EXPECT_EQ(serial->ConfigureClock(KestrionTriggerSerialClockSourceRecovered,
                                     KestrionTriggerSerialClockPolarityFall, 0.5),
              S_OK)
        << TakeErrorText();
    ExpectInstrumentError(0);
    ExpectGet(*serial, &IKestrionTriggerSerial::get_ClockSource,
              KestrionTriggerSerialClockSourceRecovered);
    ExpectGet(*serial, &IKestrionTriggerSerial::get_ClockPolarity,
              KestrionTriggerSerialClockPolarityFall);
    ExpectGet(*serial, &IKestrionTriggerSerial::get_ClockLevel, 0.5);
}

TEST_P(PairsOfSignals, Communication) {
    Open();
    const auto signal = client_.As<IKestrionTriggerCommunication>();
    constexpr auto kPut = &IKestrionTriggerCommunication::Configure;
    constexpr auto kRead = &IKestrionTriggerCommunication::Read;
    PutAndRead(*signal, kPut, kRead, KestrionChannelCh2, -0.25,
               KestrionTriggerCommunicationSourceTypeClock,
               KestrionTriggerCommunicationStandardUSB5000,
               KestrionTriggerCommunicationClockPolarityFall);
    PutAndRead(*signal, kPut, kRead, KestrionChannelCh4, 100.0,
               KestrionTriggerCommunicationSourceTypeRecoveredClock,
               KestrionTriggerCommunicationStandardDS1,
               KestrionTriggerCommunicationClockPolarityRise);
}

TEST_P(PairsOfSignals, CodesOfCommunicationHavePulsesOfTheirOwn) {
    Open();
    const auto signal = client_.As<IKestrionTriggerCommunication>();
    EXPECT_EQ(signal->ConfigureCode(KestrionTriggerCommunicationCodeMLT3,
                                    KestrionTriggerCommunicationPulseFormEyeDiagram, 1.5, -1.5),
              S_OK)
        << TakeErrorText();
    EXPECT_EQ(signal->ConfigureCode(KestrionTriggerCommunicationCodeAMI,
                                    KestrionTriggerCommunicationPulseFormMinusOne, 0.5, 0.25),
              S_OK)
        << TakeErrorText();
    ExpectInstrumentError(0);
    ExpectGet(*signal, &IKestrionTriggerCommunication::get_Code,
              KestrionTriggerCommunicationCodeAMI);
    for (const auto& [code, form, high, low] :
         {std::tuple(KestrionTriggerCommunicationCodeMLT3,
                     KestrionTriggerCommunicationPulseFormEyeDiagram, 1.5, -1.5),
          std::tuple(KestrionTriggerCommunicationCodeAMI,
                     KestrionTriggerCommunicationPulseFormMinusOne, 0.5, 0.25)}) {
        auto pulse = KestrionTriggerCommunicationPulseFormZero;
        EXPECT_EQ(signal->get_PulseForm(code, &pulse), S_OK) << TakeErrorText();
        EXPECT_EQ(pulse, form);
        double level = 0.0;
        EXPECT_EQ(signal->get_ThresholdHigh(code, &level), S_OK) << TakeErrorText();
        EXPECT_EQ(level, high);
        EXPECT_EQ(signal->get_ThresholdLow(code, &level), S_OK) << TakeErrorText();
        EXPECT_EQ(level, low);
    }
}

TEST_P(PairsOfSignals, Video) {
    Open("HR5104");
    const auto video = client_.As<IKestrionTriggerVideo>();
    constexpr auto kPut = &IKestrionTriggerVideo::Configure;
    constexpr auto kRead = &IKestrionTriggerVideo::Read;
    PutAndRead(*video, kPut, kRead, KestrionChannelCh4, KestrionTriggerVideoFormatHD1080P25,
               KestrionTriggerVideoPolarityNegative, KestrionTriggerVideoFieldNumeric, 3000, 8.5);
    PutAndRead(*video, kPut, kRead, KestrionChannelCh2, KestrionTriggerVideoFormatNTSC,
               KestrionTriggerVideoPolarityPositive, KestrionTriggerVideoFieldAllLines, 1, 0.0);
    ExpectGet(*client_.As<IKestrionTrigger>(), &IKestrionTrigger::get_Type,
              KestrionTriggerTypeVideo);
}

// The line says RATE twice, so that the instrument takes all of it but the rate.
TEST_P(PairsOfSignals, ScanOfAVideoIsTakenWithoutItsRate) {
    Open("HR5104");
    const auto video = client_.As<IKestrionTriggerVideo>();
    EXPECT_EQ(video->put_ScanRate(KestrionTriggerVideoScanRateRate3), S_OK);
    for (const auto& [type, rate] :
         {std::pair(KestrionTriggerVideoScanTypeProgressive, KestrionTriggerVideoScanRateRate5),
          std::pair(KestrionTriggerVideoScanTypeInterlaced, KestrionTriggerVideoScanRateRate1)}) {
        EXPECT_EQ(video->ConfigureScan(type, rate), S_OK) << TakeErrorText();
        ExpectInstrumentError(-224);
        ExpectGet(*video, &IKestrionTriggerVideo::get_Format, KestrionTriggerVideoFormatCustom);
        ExpectGet(*video, &IKestrionTriggerVideo::get_ScanType, type);
        ExpectGet(*video, &IKestrionTriggerVideo::get_ScanRate, KestrionTriggerVideoScanRateRate3);
    }
}

INSTANTIATE_TEST_SUITE_P(Links, PairsOfSignals, testing::Bool(), LinkName);

}  // namespace
}  // namespace kestrion
