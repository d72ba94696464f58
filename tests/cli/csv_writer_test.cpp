#include "cli/csv_writer.h"

#include <gmock/gmock.h>

#include <charconv>
#include <clocale>
#include <cmath>

#include "tests/cli/failure_matcher.h"
#include "tests/cli/waveform_maker.h"
#include "tests/support/temporary_folder.h"

namespace kestrion::cli {
namespace {

std::string CsvOf(const Waveforms& waveforms) {
    const TemporaryFolder folder;
    OutputFile file(folder.File("a.csv"));
    WriteCsv(file, waveforms);
    file.Commit();
    return ReadFile(folder.File("a.csv"));
}

TEST(CsvWriter, OneSource) {
    EXPECT_EQ(CsvOf({MakeWaveform("CH1", {0.5, -1.25, 0}, -0.25, 0.125)}),
              "time_s,CH1_V\n"
              "-0.25,0.5\n"
              "-0.125,-1.25\n"
              "0,0\n");
}

TEST(CsvWriter, SourcesShareATimeAxis) {
    EXPECT_EQ(CsvOf({MakeWaveform("CH1", {1, 2}, 0, 0.5), MakeWaveform("MATH2", {3, 4}, 0, 0.5)}),
              "time_s,CH1_V,MATH2_V\n"
              "0,1,3\n"
              "0.5,2,4\n");
}

TEST(CsvWriter, SourcesWithTimesOfTheirOwnHaveATimeColumnEach) {
    EXPECT_EQ(CsvOf({MakeWaveform("CH1", {1, 2, 3}, 0, 0.5), MakeWaveform("REF1", {4}, -2, 1)}),
              "CH1_time_s,CH1_V,REF1_time_s,REF1_V\n"
              "0,1,-2,4\n"
              "0.5,2,,\n"
              "1,3,,\n");
}

TEST(CsvWriter, AShorterFirstSourceLeavesItsFieldsEmpty) {
    EXPECT_EQ(CsvOf({MakeWaveform("CH1", {1}, 0, 0.5), MakeWaveform("REF1", {4, 5}, -2, 1)}),
              "CH1_time_s,CH1_V,REF1_time_s,REF1_V\n"
              "0,1,-2,4\n"
              ",,-1,5\n");
}

TEST(CsvWriter, ARecordWithoutPointsIsAHeader) {
    EXPECT_EQ(CsvOf({MakeWaveform("CH1", {}, 0, 1)}), "time_s,CH1_V\n");
}

TEST(CsvWriter, NumbersAreTheShortestThatReadBack) {
    EXPECT_EQ(CsvOf({MakeWaveform("CH1", {0.1, 1e-9, 0.1 + 0.2, -2.2250738585072014e-308}, 0, 1)}),
              "time_s,CH1_V\n"
              "0,0.1\n"
              "1,1e-09\n"
              "2,0.30000000000000004\n"
              "3,-2.2250738585072014e-308\n");
}

TEST(CsvWriter, ALocaleWithADecimalCommaChangesNothing) {
    // Whether or not the system has this locale, the expectation is the same.
    (void)std::setlocale(LC_ALL, "de_DE.UTF-8");
    const std::string text = CsvOf({MakeWaveform("CH1", {0.5}, 0.25, 1)});
    (void)std::setlocale(LC_ALL, "C");
    EXPECT_EQ(text, "time_s,CH1_V\n0.25,0.5\n");
}

TEST(CsvWriter, ALongRecordKeepsEveryRowAcrossItsBuffer) {
    // 100000 rows of some 25 bytes: the buffer of 1 MiB is written out twice before the end.
    std::vector<double> volts(100000);
    for (std::size_t i = 0; i < volts.size(); ++i) {
        volts[i] = std::sin(static_cast<double>(i));
    }
    const std::string text = CsvOf({MakeWaveform("CH1", volts, 0, 1)});
    std::size_t position = text.find('\n') + 1;
    for (std::size_t row = 0; row < volts.size(); ++row) {
        double time = -1;
        double value = -2;
        const char* const end = text.data() + text.size();
        const auto first = std::from_chars(text.data() + position, end, time);
        ASSERT_EQ(*first.ptr, ',');
        const auto second = std::from_chars(first.ptr + 1, end, value);
        ASSERT_EQ(*second.ptr, '\n');
        ASSERT_EQ(time, static_cast<double>(row));
        ASSERT_EQ(value, volts[row]);
        position = static_cast<std::size_t>(second.ptr + 1 - text.data());
    }
    EXPECT_EQ(position, text.size());
}

TEST(CsvWriter, TellsItsProgressAndEndsWithAllRows) {
    const TemporaryFolder folder;
    OutputFile file(folder.File("a.csv"));
    std::vector<std::uint64_t> steps;
    WriteCsv(file, {MakeWaveform("CH1", std::vector<double>(200000, 0.123456789), 0, 1)},
             [&](std::uint64_t done, std::uint64_t total) {
                 EXPECT_EQ(total, 200000U);
                 steps.push_back(done);
             });
    EXPECT_GE(steps.size(), 3U);
    EXPECT_TRUE(std::is_sorted(steps.begin(), steps.end()));
    EXPECT_EQ(steps.back(), 200000U);
}

TEST(CsvWriter, AFailureOfTheListenerEndsTheWriting) {
    const TemporaryFolder folder;
    {
        OutputFile file(folder.File("a.csv"));
        EXPECT_STREQ(ExpectFailure([&] {
                         WriteCsv(file, {MakeWaveform("CH1", {1}, 0, 1)},
                                  [](std::uint64_t, std::uint64_t) { throw Failure("stop"); });
                     }).what(),
                     "stop");
    }
    EXPECT_TRUE(folder.Names().empty());
}

TEST(CsvWriter, AFullDeviceIsReported) {
    OutputFile file("/dev/full");
    EXPECT_STREQ(ExpectFailure([&] {
                     WriteCsv(file, {MakeWaveform("CH1", std::vector<double>(200000, 1), 0, 1)});
                 }).what(),
                 "Cannot write '/dev/full': No space left on device.");
}

}  // namespace
}  // namespace kestrion::cli
