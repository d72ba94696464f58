// IKestrionTriggerCommunication, IKestrionTriggerSerial and IKestrionTriggerVideo.
#include "tests/scope/trigger_test.h"

namespace kestrion {
namespace {

class TriggerSignalTest : public TriggerTest {
  protected:
    using Communication = IKestrionTriggerCommunication;
    using Serial = IKestrionTriggerSerial;
    using Video = IKestrionTriggerVideo;

    HRESULT PutStandard(int standard) {
        return As<Communication>()->put_Standard(
            static_cast<KestrionTriggerCommunicationStandardEnum>(standard));
    }
};

TEST_F(TriggerSignalTest, CommunicationIsConfiguredAndRead) {
    Connect();
    const auto communication = As<Communication>();
    fake.Expect(
        "TRIGGER:A:LEVEL 0.5;TYPE COMMUNICATION;COMMUNICATION:SOURCE CH2;SOURCE:TYPE DATA;"
        ":TRIGGER:A:COMMUNICATION:STANDARD OC12;CLOCK:POLARITY RISE\n");
    EXPECT_EQ(communication->Configure(KestrionChannelCh2, 0.5,
                                       KestrionTriggerCommunicationSourceTypeData,
                                       KestrionTriggerCommunicationStandardOC12,
                                       KestrionTriggerCommunicationClockPolarityRise),
              S_OK);
    fake.Expect(
        "TRIGGER:A:COMMUNICATION:CODE HDB3;HDB3:PULSEFORM MINUSONE;THRESHOLD:HIGH 0.5;LOW -0.5\n");
    EXPECT_EQ(
        communication->ConfigureCode(KestrionTriggerCommunicationCodeHDB3,
                                     KestrionTriggerCommunicationPulseFormMinusOne, 0.5, -0.5),
        S_OK);
    fake.Expect(
            "TRIGGER:A:LEVEL?;COMMUNICATION:SOURCE?;SOURCE:TYPE?;"
            ":TRIGGER:A:COMMUNICATION:STANDARD?;CLOCK:POLARITY?\n")
        .Reply("0.25;CH1;CLOCK;CUSTOM;FALL\n");
    auto source = KestrionChannelCh4;
    double level = 0.0;
    auto type = KestrionTriggerCommunicationSourceTypeData;
    auto standard = KestrionTriggerCommunicationStandardDS1;
    auto polarity = KestrionTriggerCommunicationClockPolarityRise;
    EXPECT_EQ(communication->Read(&source, &level, &type, &standard, &polarity), S_OK);
    EXPECT_EQ(source, KestrionChannelCh1);
    EXPECT_EQ(level, 0.25);
    EXPECT_EQ(type, KestrionTriggerCommunicationSourceTypeClock);
    EXPECT_EQ(standard, KestrionTriggerCommunicationStandardCustom);
    EXPECT_EQ(polarity, KestrionTriggerCommunicationClockPolarityFall);
}

TEST_F(TriggerSignalTest, PropertiesOfCommunication) {
    Connect();
    const auto communication = As<Communication>();
    const std::string root = "TRIGGER:A:COMMUNICATION";
    CheckReal(communication, &Communication::get_Level, &Communication::put_Level,
              "TRIGGER:A:LEVEL");
    CheckWrittenWords(communication, &Communication::put_LevelEnum, "TRIGGER:A:LEVEL",
                      kLogicFamilies);
    CheckWords(communication, &Communication::get_Source, &Communication::put_Source,
               root + ":SOURCE", kChannels);
    CheckWords(communication, &Communication::get_SourceType, &Communication::put_SourceType,
               root + ":SOURCE:TYPE", {{"DATA", 0}, {"CLOCK", 1}, {"RCLOCK", 2}});
    CheckWords(communication, &Communication::get_ClockPolarity, &Communication::put_ClockPolarity,
               root + ":CLOCK:POLARITY", {{"FALL", 0}, {"RISE", 1}});
    CheckWords(communication, &Communication::get_Code, &Communication::put_Code, root + ":CODE",
               {{"AMI", 0},
                {"HDB3", 1},
                {"B3ZS", 2},
                {"B6ZS", 3},
                {"B8ZS", 4},
                {"CMI", 5},
                {"MLT3", 6},
                {"NRZ", 7}});
    CheckWords(communication, &Communication::get_Standard, &Communication::put_Standard,
               root + ":STANDARD",
               {{"CUSTOM", 0},
                {"STM1E", 14},
                {"G703DS1", 15},
                {"ENET1000BASEX", 26},
                {"SAS1500", 52},
                {"USB5000", 70}});
}

TEST_F(TriggerSignalTest, PulsesAndThresholdsAreByLineCode) {
    Connect();
    const auto communication = As<Communication>();
    fake.Expect("TRIGGER:A:COMMUNICATION:AMI:PULSEFORM PLUSONE\n");
    EXPECT_EQ(communication->put_PulseForm(KestrionTriggerCommunicationCodeAMI,
                                           KestrionTriggerCommunicationPulseFormPlusOne),
              S_OK);
    auto form = KestrionTriggerCommunicationPulseFormPlusOne;
    fake.Expect("TRIGGER:A:COMMUNICATION:CMI:PULSEFORM?\n").Reply("EYEDIAGRAM\n");
    EXPECT_EQ(communication->get_PulseForm(KestrionTriggerCommunicationCodeCMI, &form), S_OK);
    EXPECT_EQ(form, KestrionTriggerCommunicationPulseFormEyeDiagram);
    fake.Expect("TRIGGER:A:COMMUNICATION:MLT3:THRESHOLD:HIGH 0.5\n");
    EXPECT_EQ(communication->put_ThresholdHigh(KestrionTriggerCommunicationCodeMLT3, 0.5), S_OK);
    double threshold = 0.0;
    fake.Expect("TRIGGER:A:COMMUNICATION:B8ZS:THRESHOLD:LOW?\n").Reply("-0.5\n");
    EXPECT_EQ(communication->get_ThresholdLow(KestrionTriggerCommunicationCodeB8ZS, &threshold),
              S_OK);
    EXPECT_EQ(threshold, -0.5);
}

TEST_F(TriggerSignalTest, FastCommunicationStandardsAreRefusedOnOldFamilies) {
    Connect("LK7254B");
    for (const int standard : {52, 53, 54, 55, 56, 66, 67, 70}) {
        ExpectValueRefused(PutStandard(standard), std::to_string(standard), "Standard",
                           "put_Standard");
    }
    ExpectValueRefused(As<Communication>()->Configure(
                           KestrionChannelCh1, 0.0, KestrionTriggerCommunicationSourceTypeData,
                           KestrionTriggerCommunicationStandardSAS3000,
                           KestrionTriggerCommunicationClockPolarityFall),
                       "53", "Standard", "Configure");
    fake.Expect("TRIGGER:A:COMMUNICATION:STANDARD VIDEO270\n");
    EXPECT_EQ(PutStandard(51), S_OK);
}

class FastCommunicationTest : public TriggerTest,
                              public testing::WithParamInterface<const char*> {};

TEST_P(FastCommunicationTest, FastStandardsAreWrittenOnThreeFamilies) {
    Connect(GetParam());
    const std::pair<int, const char*> standards[] = {
        {53, "SAS3000"}, {55, "FBDIMM4000"}, {56, "FBDIMM4800"}, {67, "PCIE5000"}};
    for (const auto& [standard, token] : standards) {
        fake.Expect("TRIGGER:A:COMMUNICATION:STANDARD " + std::string(token) + "\n");
        EXPECT_EQ(As<IKestrionTriggerCommunication>()->put_Standard(
                      static_cast<KestrionTriggerCommunicationStandardEnum>(standard)),
                  S_OK);
    }
}

INSTANTIATE_TEST_SUITE_P(Families, FastCommunicationTest,
                         testing::Values("PL7254C", "SW72004C", "MR5104B"));

TEST_F(TriggerSignalTest, SerialIsConfiguredAndRead) {
    Connect();
    const auto serial = As<Serial>();
    const BstrPtr bits(std::u16string_view(u"01XX10"));
    fake.Expect(
        "TRIGGER:A:TYPE SERIAL;SERIAL:SOURCE CH1;CODE NRZ;STANDARD FC4250;DATA:FORMAT BINARY;"
        "PATTERN \"01XX10\"\n");
    EXPECT_EQ(serial->Configure(KestrionChannelCh1, KestrionTriggerSerialCodeNRZ,
                                KestrionTriggerSerialStandardFC4250,
                                KestrionTriggerSerialDataFormatBinary, bits.Get()),
              S_OK);
    fake.Expect("TRIGGER:A:SERIAL:CLOCK:SOURCE RECOVERED;POLARITY FALL;LEVEL 0.3\n");
    EXPECT_EQ(serial->ConfigureClock(KestrionTriggerSerialClockSourceRecovered,
                                     KestrionTriggerSerialClockPolarityFall, 0.3),
              S_OK);
    fake.Expect("TRIGGER:A:SERIAL:SOURCE?;CODE?;STANDARD?;DATA:FORMAT?;PATTERN?\n")
        .Reply("CH3;S8B10B;XAUI3125;HEX;1FX\n");
    auto source = KestrionChannelCh1;
    auto code = KestrionTriggerSerialCodeNRZ;
    auto standard = KestrionTriggerSerialStandardCustom;
    auto format = KestrionTriggerSerialDataFormatBinary;
    BstrPtr pattern;
    EXPECT_EQ(serial->Read(&source, &code, &standard, &format, pattern.Out()), S_OK);
    EXPECT_EQ(source, KestrionChannelCh3);
    EXPECT_EQ(code, KestrionTriggerSerialCodeS8B10B);
    EXPECT_EQ(standard, KestrionTriggerSerialStandardXAUI3125);
    EXPECT_EQ(format, KestrionTriggerSerialDataFormatHex);
    EXPECT_EQ(pattern.Utf8(), "1FX");
}

TEST_F(TriggerSignalTest, PropertiesOfSerial) {
    Connect();
    const auto serial = As<Serial>();
    const std::string root = "TRIGGER:A:SERIAL";
    CheckReal(serial, &Serial::get_ClockLevel, &Serial::put_ClockLevel, root + ":CLOCK:LEVEL");
    CheckWrittenWords(serial, &Serial::put_ClockLevelEnum, root + ":CLOCK:LEVEL", kLogicFamilies);
    CheckWords(serial, &Serial::get_ClockPolarity, &Serial::put_ClockPolarity,
               root + ":CLOCK:POLARITY", {{"FALL", 0}, {"RISE", 1}});
    CheckWords(serial, &Serial::get_ClockSource, &Serial::put_ClockSource, root + ":CLOCK:SOURCE",
               {{"CH1", 0}, {"CH2", 1}, {"CH3", 2}, {"CH4", 3}, {"RECOVERED", 4}});
    CheckWords(serial, &Serial::get_Code, &Serial::put_Code, root + ":CODE",
               {{"NRZ", 0}, {"S8B10B", 1}});
    CheckWords(serial, &Serial::get_DataFormat, &Serial::put_DataFormat, root + ":DATA:FORMAT",
               {{"BINARY", 0}, {"HEX", 1}});
    CheckWords(
        serial, &Serial::get_ErrorType, &Serial::put_ErrorType, root + ":ERRORTYPE",
        {{"NONE", 0}, {"CHARACTER", 1}, {"DISPARITY", 2}, {"FRAME", 3}, {"BIT", 4}, {"ANY", 5}});
    CheckWords(serial, &Serial::get_Source, &Serial::put_Source, root + ":SOURCE", kChannels);
    CheckWords(serial, &Serial::get_Standard, &Serial::put_Standard, root + ":STANDARD",
               {{"CUSTOM", 0}, {"FC133", 1}, {"SATA1500", 11}, {"FC4250", 17}});
    const BstrPtr bits(std::u16string_view(u"1X0"));
    fake.Expect(root + ":DATA:PATTERN \"1X0\"\n");
    EXPECT_EQ(serial->put_Pattern(bits.Get()), S_OK);
    fake.Expect(root + ":DATA:PATTERN?\n").Reply("0101\n");
    BstrPtr pattern;
    EXPECT_EQ(serial->get_Pattern(pattern.Out()), S_OK);
    EXPECT_EQ(pattern.Utf8(), "0101");
}

class FastSerialTest : public TriggerTest, public testing::WithParamInterface<const char*> {};

TEST_P(FastSerialTest, TheFastestStandardIsRefusedElsewhere) {
    Connect(GetParam());
    const auto serial = As<IKestrionTriggerSerial>();
    ExpectValueRefused(serial->put_Standard(KestrionTriggerSerialStandardFC4250), "17", "Standard",
                       "put_Standard");
    const BstrPtr bits(std::u16string_view(u"1"));
    ExpectValueRefused(serial->Configure(KestrionChannelCh1, KestrionTriggerSerialCodeNRZ,
                                         KestrionTriggerSerialStandardFC4250,
                                         KestrionTriggerSerialDataFormatBinary, bits.Get()),
                       "17", "Standard", "Configure");
    fake.Expect("TRIGGER:A:SERIAL:STANDARD XAUI3125\n");
    EXPECT_EQ(serial->put_Standard(KestrionTriggerSerialStandardXAUI3125), S_OK);
}

INSTANTIATE_TEST_SUITE_P(Families, FastSerialTest,
                         testing::Values("SW72004C", "LK7054", "CR7404B", "HR5054B"));

TEST_F(TriggerSignalTest, TheFastestSerialStandardOnTheLarkBAndMerlinSeries) {
    Connect("MR5104B");
    fake.Expect("TRIGGER:A:SERIAL:STANDARD FC4250\n");
    EXPECT_EQ(As<Serial>()->put_Standard(KestrionTriggerSerialStandardFC4250), S_OK);
}

TEST_F(TriggerSignalTest, VideoIsConfiguredAndRead) {
    Connect("HR5104");
    const auto video = As<Video>();
    fake.Expect(
        "TRIGGER:A:TYPE VIDEO;VIDEO:SOURCE CH1;STANDARD PAL;POLARITY NEGATIVE;FIELD NUMERIC;"
        "LINE 17;HOLDOFF:FIELD 2\n");
    EXPECT_EQ(video->Configure(KestrionChannelCh1, KestrionTriggerVideoFormatPAL,
                               KestrionTriggerVideoPolarityNegative,
                               KestrionTriggerVideoFieldNumeric, 17, 2.0),
              S_OK);
    fake.Expect("TRIGGER:A:VIDEO:STANDARD CUSTOM;CUSTOM:FORMAT INTERLACED;SCAN RATE RATE2\n");
    EXPECT_EQ(video->ConfigureScan(KestrionTriggerVideoScanTypeInterlaced,
                                   KestrionTriggerVideoScanRateRate2),
              S_OK);
    fake.Expect(
            "TRIGGER:A:VIDEO:SOURCE?;STANDARD?;POLARITY?;FIELD?;HOLDOFF:FIELD?;"
            ":TRIGGER:A:VIDEO:LINE?\n")
        .Reply("CH2;HD1080P25;POSITIVE;ALLLINES;1.5;625\n");
    auto source = KestrionChannelCh1;
    auto format = KestrionTriggerVideoFormatNTSC;
    auto polarity = KestrionTriggerVideoPolarityNegative;
    auto field = KestrionTriggerVideoFieldOdd;
    LONG line = 0;
    double holdoff = 0.0;
    EXPECT_EQ(video->Read(&source, &format, &polarity, &field, &line, &holdoff), S_OK);
    EXPECT_EQ(source, KestrionChannelCh2);
    EXPECT_EQ(format, KestrionTriggerVideoFormatHD1080P25);
    EXPECT_EQ(polarity, KestrionTriggerVideoPolarityPositive);
    EXPECT_EQ(field, KestrionTriggerVideoFieldAllLines);
    EXPECT_EQ(line, 625);
    EXPECT_EQ(holdoff, 1.5);
}

TEST_F(TriggerSignalTest, PropertiesOfVideo) {
    Connect("HR5104");
    const auto video = As<Video>();
    const std::string root = "TRIGGER:A:VIDEO";
    CheckWords(video, &Video::get_Field, &Video::put_Field, root + ":FIELD",
               {{"ODD", 0}, {"EVEN", 1}, {"ALLFIELDS", 2}, {"ALLLINES", 3}, {"NUMERIC", 4}});
    CheckWords(video, &Video::get_Format, &Video::put_Format, root + ":STANDARD",
               {{"NTSC", 0},
                {"PAL", 1},
                {"SECAM", 2},
                {"HD480P60", 3},
                {"HD576P50", 4},
                {"HD720P60", 5},
                {"HD1080I50", 6},
                {"HD1080I60", 7},
                {"HD1080P24", 8},
                {"HD1080P25", 9},
                {"CUSTOM", 10}});
    CheckReal(video, &Video::get_HoldoffField, &Video::put_HoldoffField, root + ":HOLDOFF:FIELD");
    CheckWords(video, &Video::get_Polarity, &Video::put_Polarity, root + ":POLARITY",
               {{"POSITIVE", 0}, {"NEGATIVE", 1}});
    CheckWords(video, &Video::get_ScanRate, &Video::put_ScanRate, root + ":CUSTOM:SCAN",
               {{"RATE1", 0}, {"RATE2", 1}, {"RATE3", 2}, {"RATE4", 3}, {"RATE5", 4}});
    CheckWords(video, &Video::get_ScanType, &Video::put_ScanType, root + ":CUSTOM:FORMAT",
               {{"INTERLACED", 0}, {"PROGRESSIVE", 1}});
    CheckWords(video, &Video::get_Source, &Video::put_Source, root + ":SOURCE", kChannels);
    fake.Expect(root + ":LINE 22\n");
    EXPECT_EQ(video->put_Line(22), S_OK);
    LONG line = 0;
    fake.Expect(root + ":LINE?\n").Reply("23\n");
    EXPECT_EQ(video->get_Line(&line), S_OK);
    EXPECT_EQ(line, 23);
}

}  // namespace
}  // namespace kestrion
