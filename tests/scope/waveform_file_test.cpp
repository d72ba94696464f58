// SaveWaveformToFile: the transaction on the wire, and the lines of the file.
#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "platform/system_time.h"
#include "tests/scope/waveform_test.h"

namespace kestrion {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::EndsWith;
using testing::StartsWith;

class WaveformFileTest : public WaveformTest {
  protected:
    WaveformFileTest()
        : folder_(testing::TempDir() + "waveform_file_test_" +
                  std::to_string(CurrentProcessNumber())) {
        std::filesystem::create_directory(folder_);
    }
    ~WaveformFileTest() override { std::filesystem::remove_all(folder_); }

    [[nodiscard]] std::string Path() const { return folder_ + "/record.txt"; }
    HRESULT Save(KestrionSourceEnum source, KestrionWaveformFileFormatEnum format) {
        return SaveTo(Path(), source, format);
    }
    HRESULT SaveTo(const std::string& path, KestrionSourceEnum source,
                   KestrionWaveformFileFormatEnum format) {
        const BstrPtr name(path);
        return As<IKestrionWaveformTransfer>()->SaveWaveformToFile(source, name.Get(), format);
    }
    [[nodiscard]] std::string Content() const {
        std::ostringstream text;
        text << std::ifstream(Path(), std::ios::binary).rdbuf();
        return text.str();
    }
    [[nodiscard]] std::vector<std::string> Lines() const {
        std::istringstream text(Content());
        std::vector<std::string> lines;
        for (std::string line; std::getline(text, line);) {
            lines.push_back(line);
        }
        return lines;
    }
    // The mode isn't asked for.
    void ExpectSelected(std::string_view source) {
        ExpectHeaderOff();
        fake.Expect("SELECT:" + std::string(source) + "?\n").Reply("1\n");
        ExpectSavedState();
    }
    void ExpectChannel(std::string_view points, std::string_view block) {
        ExpectSelected("CH1");
        ExpectChannelSetUp("CH1", points);
        fake.Expect("CURVE?\n").Reply(block);
        ExpectPreamble();
        ExpectRestore();
    }
    void ExpectMath(std::string_view points, std::string_view block) {
        ExpectSelected("MATH1");
        fake.Expect("DATA:SOURCE MATH1\n");
        fake.Expect("DATA:STOP 800000000;:WFMOUTPRE:NR_PT?\n").Reply(std::string(points) + "\n");
        fake.Expect("DATA:START 1;STOP " + std::string(points) + "\n");
        fake.Expect("WFMOUTPRE:BYT_NR 1;BYT_NR?\n").Reply("4\n");
        fake.Expect("WFMOUTPRE:ENCDG BIN;BN_FMT FP\n");
        fake.Expect(":WFMOUTPRE:BYT_OR LSB\n");
        fake.Expect("CURVE?\n").Reply(block);
        ExpectPreamble();
        ExpectRestore();
    }

    std::string folder_;
};

TEST_F(WaveformFileTest, WithoutScaleTheFileHoldsAmplitudesOnly) {
    Connect();
    ExpectChannel("3", std::string_view("#13\x00\x02\xFE\n", 7));
    ASSERT_EQ(Save(KestrionSourceCh1, KestrionWaveformFileFormatWithoutScaleFactor), S_OK);
    EXPECT_EQ(Content(),
              "       -0.75\n"
              "        0.25\n"
              "       -1.75\n");
}

TEST_F(WaveformFileTest, WithScaleTheHeaderStandsBesideTheFirstSixPoints) {
    Connect();
    ExpectChannel("8", "#18\x02\x03\x02\x03\x02\x03\x02\x03\n");
    ASSERT_EQ(Save(KestrionSourceCh1, KestrionWaveformFileFormatWithScaleFactor), S_OK);
    // The first time is 1e-3 - 500 * 4e-7.
    EXPECT_EQ(Content(),
              "\"Record Length\",8,\"Points\",      0.0008,        0.25\n"
              "\"Sample Interval\",       4e-07,\"s\",   0.0008004,        0.75\n"
              "\"Trigger Point\",500,\"Points\",   0.0008008,        0.25\n"
              "\"Trigger Time\",       0.001,\"s\",   0.0008012,        0.75\n"
              ",,,   0.0008016,        0.25\n"
              "\"Horizontial Offset\",       0.001,\"s\",    0.000802,        0.75\n"
              ",,,   0.0008024,        0.25\n"
              ",,,   0.0008028,        0.75\n");
}

TEST_F(WaveformFileTest, ARecordOfFewerThanSevenPointsHasAsManyHeaderLines) {
    Connect();
    ExpectChannel("2", "#12\x02\x03\n");
    ASSERT_EQ(Save(KestrionSourceCh1, KestrionWaveformFileFormatWithScaleFactor), S_OK);
    EXPECT_EQ(Content(),
              "\"Record Length\",2,\"Points\",      0.0008,        0.25\n"
              "\"Sample Interval\",       4e-07,\"s\",   0.0008004,        0.75\n");
}

TEST_F(WaveformFileTest, FloatingPointRowsHaveNoTimeFromTheSeventhOn) {
    Connect();
    // 1.5 is 3FC00000; 1.5 - 2 + 0.25 without the multiplier.
    std::string block = "#232";
    for (int i = 0; i < 8; ++i) {
        block += std::string_view("\x00\x00\xC0\x3F", 4);
    }
    ExpectMath("8", block + "\n");
    ASSERT_EQ(Save(KestrionSourceMath1, KestrionWaveformFileFormatWithScaleFactor), S_OK);
    const auto lines = Lines();
    ASSERT_EQ(lines.size(), 8U);
    EXPECT_EQ(lines[0], "\"Record Length\",8,\"Points\",      0.0008,       -0.25");
    EXPECT_EQ(lines[4], ",,,   0.0008016,       -0.25");
    EXPECT_EQ(lines[5], "\"Horizontial Offset\",       0.001,\"s\",    0.000802,       -0.25");
    EXPECT_EQ(lines[6], ",,,%12.9,g       -0.25");
    EXPECT_EQ(lines[7], ",,,%12.9,g       -0.25");
}

TEST_F(WaveformFileTest, FloatingPointAmplitudesAreNotMultiplied) {
    Connect();
    ExpectMath("1", std::string_view("#14\x00\x00\xC0\x3F\n", 8));
    ASSERT_EQ(Save(KestrionSourceMath1, KestrionWaveformFileFormatWithoutScaleFactor), S_OK);
    EXPECT_EQ(Content(), "       -0.25\n");
}

TEST_F(WaveformFileTest, TwoBytePointsAreTakenWhereTheInstrumentInsistsOnThem) {
    Connect();
    ExpectSelected("CH1");
    fake.Expect("DATA:SOURCE CH1\n");
    fake.Expect("HORIZONTAL:RECORDLENGTH?\n").Reply("2\n");
    fake.Expect("DATA:START 1;STOP 2\n");
    fake.Expect("WFMOUTPRE:BYT_NR 1;BYT_NR?\n").Reply("2\n");
    fake.Expect(
        "WFMOUTPRE:ENCD BIN;BN_FMT RI;BYT_NR\xA0"
        "1\n");
    fake.Expect("CURVE?\n").Reply(std::string_view("#14\x02\x01\xFE\xFF\n", 8));
    ExpectPreamble();
    ExpectRestore();
    ASSERT_EQ(Save(KestrionSourceCh1, KestrionWaveformFileFormatWithoutScaleFactor), S_OK);
    EXPECT_EQ(Content(),
              "      128.25\n"
              "       -1.75\n");
}

TEST_F(WaveformFileTest, TheLockIsGivenBackBehindTheTriggerPoint) {
    Connect();
    ExpectChannel("1", "#11\x02\n");
    fake.ForgetCalls();
    ASSERT_EQ(Save(KestrionSourceCh1, KestrionWaveformFileFormatWithoutScaleFactor), S_OK);
    const auto calls = fake.Calls();
    const auto find = [&calls](std::string_view text) {
        return std::ranges::find_if(calls,
                                    [text](const auto& call) { return call.starts_with(text); });
    };
    EXPECT_LT(find("viWrite(\"WFMOUTPRE:PT_OFF?"), find("viUnlock("));
    EXPECT_LT(find("viUnlock("), find("viWrite(\"DATA:SOURCE CH4"));
}

TEST_F(WaveformFileTest, AFileThatWasThereIsReplaced) {
    std::ofstream(Path()) << std::string(1000, 'x');
    Connect();
    ExpectChannel("1", "#11\x02\n");
    ASSERT_EQ(Save(KestrionSourceCh1, KestrionWaveformFileFormatWithoutScaleFactor), S_OK);
    EXPECT_EQ(Content(), "        0.25\n");
}

TEST_F(WaveformFileTest, ALongRecordIsWrittenWhole) {
    Connect();
    ExpectChannel("20000", "#520000" + std::string(20000, '\x03') + "\n");
    ASSERT_EQ(Save(KestrionSourceCh1, KestrionWaveformFileFormatWithScaleFactor), S_OK);
    const auto lines = Lines();
    ASSERT_EQ(lines.size(), 20000U);
    EXPECT_THAT(lines, Each(EndsWith(",        0.75")));
    // 8e-4 + 19999 * 4e-7
    EXPECT_EQ(lines.back(), ",,,   0.0087996,        0.75");
}

TEST_F(WaveformFileTest, AFileThatCannotBeOpenedIsReportedAfterTheRestore) {
    Connect();
    ExpectChannel("1", "#11\x02\n");
    const std::string path = folder_ + "/missing/record.txt";
    const HRESULT status =
        SaveTo(path, KestrionSourceCh1, KestrionWaveformFileFormatWithoutScaleFactor);
    EXPECT_TRUE(Failed(status));
    EXPECT_THAT(ErrorText(), EndsWith("\r\n" + path));
    EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(WaveformFileTest, AFullDeviceIsReportedAfterTheRestore) {
    Connect();
    ExpectChannel("1", "#11\x02\n");
    const HRESULT status =
        SaveTo("/dev/full", KestrionSourceCh1, KestrionWaveformFileFormatWithoutScaleFactor);
    EXPECT_TRUE(Failed(status));
    EXPECT_THAT(ErrorText(), EndsWith("\r\n/dev/full"));
}

TEST_F(WaveformFileTest, ASourceThatIsOffMakesNoFile) {
    Connect();
    ExpectHeaderOff();
    fake.Expect("SELECT:CH1?\n").Reply("0\n");
    fake.Expect("HEADER 0\n");
    EXPECT_EQ(Save(KestrionSourceCh1, KestrionWaveformFileFormatWithScaleFactor),
              MakeStatus(0x80042001));
    EXPECT_EQ(ErrorText(),
              "Kestrion: Specified channel is not enabled.\r\nChannel Not Enabled error");
    EXPECT_FALSE(std::filesystem::exists(Path()));
}

TEST_F(WaveformFileTest, ABlockOfAnotherLengthThanTheRecordMakesNoFile) {
    Connect();
    ExpectSelected("CH1");
    ExpectChannelSetUp("CH1", "1000");
    fake.Expect("CURVE?\n").Reply("#3999");
    ExpectRestore();
    EXPECT_EQ(Save(KestrionSourceCh1, KestrionWaveformFileFormatWithScaleFactor),
              MakeStatus(0x80044217));
    EXPECT_FALSE(std::filesystem::exists(Path()));
}

TEST_F(WaveformFileTest, AnUnknownFormatSendsNothing) {
    Connect();
    fake.ForgetCalls();
    EXPECT_EQ(Save(KestrionSourceCh1, static_cast<KestrionWaveformFileFormatEnum>(2)),
              MakeStatus(0x80047010));
    EXPECT_EQ(ErrorText(),
              "Kestrion: Invalid value (2) for method SaveWaveformToFile, parameter FileFormat.");
    EXPECT_THAT(fake.Calls(), ElementsAre());
}

}  // namespace
}  // namespace kestrion
