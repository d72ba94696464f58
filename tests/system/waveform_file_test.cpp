// SaveWaveformToFile: what stands in the file is what the array has.
#include <gmock/gmock.h>

#include <sstream>

#include "tests/support/temporary_folder.h"
#include "tests/system/link_test.h"

namespace kestrion {
namespace {

using testing::SizeIs;
using testing::StartsWith;

class WaveformFileTest : public LinkTest {
  protected:
    HRESULT Save(KestrionSourceEnum source, KestrionWaveformFileFormatEnum format,
                 std::string_view name = "waveform.csv") {
        const BstrPtr path(folder_.File(name).string());
        return Transfer()->SaveWaveformToFile(source, path.Get(), format);
    }
    std::vector<std::string> Lines(KestrionSourceEnum source,
                                   KestrionWaveformFileFormatEnum format) {
        const std::string before = TransferSettings();
        EXPECT_EQ(Save(source, format), S_OK) << TakeErrorText();
        EXPECT_EQ(TransferSettings(), before);
        const std::string text = ReadFile(folder_.File("waveform.csv"));
        EXPECT_TRUE(text.ends_with('\n'));
        std::istringstream stream(text);
        std::vector<std::string> lines;
        for (std::string line; std::getline(stream, line);) {
            lines.push_back(line);
        }
        return lines;
    }
    Waveform Fetch(KestrionSourceEnum source) {
        Waveform waveform;
        EXPECT_EQ(client_.Fetch(source, waveform), S_OK) << TakeErrorText();
        return waveform;
    }
    static std::vector<std::string> Columns(const std::string& line) {
        std::istringstream stream(line);
        std::vector<std::string> columns;
        for (std::string column; std::getline(stream, column, ',');) {
            columns.push_back(column);
        }
        return columns;
    }
    // Time and amplitude of each line against the array, to nine and seven digits.
    static void ExpectRows(const std::vector<std::string>& lines, const Waveform& waveform) {
        ASSERT_EQ(lines.size(), waveform.volts.size());
        for (std::size_t i = 0; i < lines.size(); ++i) {
            const auto columns = Columns(lines[i]);
            ASSERT_THAT(columns, SizeIs(5)) << lines[i];
            const double time = waveform.initialX + static_cast<double>(i) * waveform.xIncrement;
            ASSERT_NEAR(std::stod(columns[3]), time, std::abs(time) * 5e-9 + 1e-15) << lines[i];
            ASSERT_NEAR(std::stod(columns[4]), waveform.volts[i],
                        std::abs(waveform.volts[i]) * 5e-7 + 1e-15)
                << lines[i];
            if (i >= 6 || i == 4) {
                ASSERT_EQ(columns[0] + columns[1] + columns[2], "") << lines[i];
            }
        }
    }

    static constexpr auto kWith = KestrionWaveformFileFormatWithScaleFactor;
    static constexpr auto kWithout = KestrionWaveformFileFormatWithoutScaleFactor;

    TemporaryFolder folder_;
};

TEST_P(WaveformFileTest, WithScaleFactorTheHeaderStandsInFrontOfTheFirstPoints) {
    client_.AcquireOnce(1000);
    const auto lines = Lines(KestrionSourceCh1, kWith);
    ExpectRows(lines, Fetch(KestrionSourceCh1));
    ASSERT_THAT(lines, SizeIs(1000));
    // The sine begins with 0, 0.025, 0.050, 0.075 ... V, in levels of 20 mV.
    EXPECT_EQ(lines[0], "\"Record Length\",1000,\"Points\",      -0.002,           0");
    EXPECT_EQ(lines[1], "\"Sample Interval\",       4e-06,\"s\",   -0.001996,        0.02");
    EXPECT_EQ(lines[2], "\"Trigger Point\",500,\"Points\",   -0.001992,        0.06");
    EXPECT_EQ(lines[3], "\"Trigger Time\",           0,\"s\",   -0.001988,        0.08");
    EXPECT_EQ(lines[4], ",,,   -0.001984,         0.1");
    EXPECT_EQ(lines[5], "\"Horizontial Offset\",           0,\"s\",    -0.00198,        0.12");
    EXPECT_EQ(lines[6], ",,,   -0.001976,        0.16");
}

TEST_P(WaveformFileTest, ADelayIsInTheTimes) {
    Send("HORIZONTAL:DELAY:POSITION 50");
    EXPECT_EQ(client_.As<IKestrionHorizontal>()->ConfigureDelayOn(250e-6), S_OK);
    client_.AcquireOnce(1000);
    const auto lines = Lines(KestrionSourceCh1, kWith);
    ExpectRows(lines, Fetch(KestrionSourceCh1));
    EXPECT_THAT(lines[3], StartsWith("\"Trigger Time\",     0.00025,\"s\",   -0.001738,"));
    EXPECT_THAT(lines[5], StartsWith("\"Horizontial Offset\",     0.00025,\"s\",    -0.00173,"));
}

TEST_P(WaveformFileTest, WithoutScaleFactorThereAreAmplitudesOnly) {
    Send("SELECT:CH2 1;MATH1 1;REF1 1");
    client_.AcquireOnce(2000);
    for (const auto source :
         {KestrionSourceCh1, KestrionSourceCh2, KestrionSourceMath1, KestrionSourceRef1}) {
        const auto lines = Lines(source, kWithout);
        const Waveform waveform = Fetch(source);
        ASSERT_EQ(lines.size(), waveform.volts.size());
        for (std::size_t i = 0; i < lines.size(); ++i) {
            ASSERT_EQ(lines[i].find(','), std::string::npos);
            ASSERT_NEAR(std::stod(lines[i]), waveform.volts[i],
                        std::abs(waveform.volts[i]) * 5e-7 + 1e-15)
                << i;
        }
    }
}

TEST_P(WaveformFileTest, ARecordInFloatsHasNoTimeColumnBehindTheHeader) {
    Send("SELECT:MATH1 1;:MATH1:DEFINE \"CH1\"");
    client_.AcquireOnce(1000);
    const auto lines = Lines(KestrionSourceMath1, kWith);
    const Waveform waveform = Fetch(KestrionSourceMath1);
    ASSERT_THAT(lines, SizeIs(1000));
    const std::vector<std::string> first(lines.begin(), lines.begin() + 6);
    Waveform start = waveform;
    start.volts.resize(6);
    ExpectRows(first, start);
    EXPECT_THAT(lines[0], StartsWith("\"Record Length\",1000,\"Points\",      -0.002,"));
    const std::string broken = ",,,%12.9,g";
    for (std::size_t i = 6; i < lines.size(); ++i) {
        ASSERT_THAT(lines[i], StartsWith(broken));
        ASSERT_NEAR(std::stod(lines[i].substr(broken.size())), waveform.volts[i], 5.1e-7) << i;
    }
}

TEST_P(WaveformFileTest, TheSameFileIsWrittenAnew) {
    client_.AcquireOnce(2000);
    EXPECT_THAT(Lines(KestrionSourceCh1, kWith), SizeIs(2000));
    client_.AcquireOnce(1000);
    EXPECT_THAT(Lines(KestrionSourceCh1, kWithout), SizeIs(1000));
    EXPECT_THAT(folder_.Names(), testing::ElementsAre("waveform.csv"));
}

TEST_P(WaveformFileTest, PairsAreSavedAsTheyAreTransferred) {
    SetMode(KestrionAcquisitionModePeakDetect);
    client_.AcquireOnce(1000);
    const auto lines = Lines(KestrionSourceCh1, kWithout);
    ASSERT_THAT(lines, SizeIs(1000));
    for (std::size_t i = 0; i < lines.size(); i += 2) {
        ASSERT_LE(std::stod(lines[i]), std::stod(lines[i + 1])) << i;
    }
}

TEST_P(WaveformFileTest, WhatCannotBeSavedLeavesEverythingInOrder) {
    client_.AcquireOnce(1000);
    const std::string before = TransferSettings();
    EXPECT_EQ(Save(KestrionSourceCh2, kWith), kChannelNotEnabled);
    EXPECT_EQ(TakeErrorText(),
              "Kestrion: Specified channel is not enabled.\r\nChannel Not Enabled error");
    EXPECT_LT(Save(KestrionSourceCh1, kWith, "no such folder/waveform.csv"), 0);
    EXPECT_THAT(folder_.Names(), testing::IsEmpty());
    EXPECT_EQ(TransferSettings(), before);
    EXPECT_THAT(Lines(KestrionSourceCh1, kWith), SizeIs(1000));
}

INSTANTIATE_TEST_SUITE_P(Links, WaveformFileTest, testing::Bool(), LinkName);

}  // namespace
}  // namespace kestrion
