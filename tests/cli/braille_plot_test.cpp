#include "cli/braille_plot.h"

#include <gmock/gmock.h>

#include "cli/ascii.h"
#include "cli/utf8.h"
#include "tests/cli/waveform_maker.h"

namespace kestrion::cli {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    for (std::string_view line : Split(text, '\n')) {
        lines.emplace_back(line);
    }
    lines.pop_back();
    return lines;
}

TEST(BraillePlot, FitsTheWidthAndHasItsRowsAFrameAndATimeLine) {
    std::vector<double> volts(1000);
    for (std::size_t i = 0; i < volts.size(); ++i) {
        volts[i] = i % 100 < 50 ? -1 : 1;
    }
    const auto lines = Lines(RenderBraille(MakeWaveform("CH1", volts, -5e-6, 1e-8), 80, 10));
    ASSERT_EQ(lines.size(), 12U);
    for (std::size_t row = 0; row < 10; ++row) {
        EXPECT_EQ(CountCharacters(lines[row]), 80U) << row;
    }
    EXPECT_EQ(CountCharacters(lines[10]), 80U);
    EXPECT_THAT(lines[11], HasSubstr("-5 µs"));
    EXPECT_THAT(lines[11], EndsWith("4.99 µs"));
}

TEST(BraillePlot, AConstantFillsOneRowOfDots) {
    // Two rows of four dots; the line of a constant stands in the middle, at the top of the lower.
    const auto lines = Lines(RenderBraille(MakeWaveform("CH1", {2, 2, 2, 2}, 0, 1), 40, 2));
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_THAT(lines[0], HasSubstr("⠀⠀⠀⠀⠀⠀⠀⠀⠀⠀⠀⠀⠀⠀⠀⠀⠀⠀⠀⠀"));
    EXPECT_THAT(lines[1], HasSubstr("⠉⠉⠉⠉⠉⠉⠉⠉⠉⠉⠉⠉⠉⠉⠉⠉⠉⠉⠉⠉"));
}

TEST(BraillePlot, AStepIsJoinedByAVerticalLine) {
    const auto lines = Lines(RenderBraille(MakeWaveform("CH1", {0, 1}, 0, 1), 40, 4));
    // Left half low, right half high, and the edge between them without a gap. With the margin of
    // 8 %, the 16 rows of dots have 1 V at 1.1 and 0 V at 14.9: the second row and the last but
    // one.
    EXPECT_THAT(lines[0], EndsWith("⠒"));
    EXPECT_THAT(lines[3], HasSubstr("┤⠤⠤"));
    EXPECT_THAT(lines[3], EndsWith("⠀"));
    for (std::size_t row = 1; row < 3; ++row) {
        EXPECT_THAT(lines[row], testing::AnyOf(HasSubstr("⡇"), HasSubstr("⢸"))) << row;
    }
}

TEST(BraillePlot, AOnePointSpikeReachesTheTop) {
    std::vector<double> volts(100000, 0.0);
    volts[50001] = 1;
    const auto lines = Lines(RenderBraille(MakeWaveform("CH1", volts, 0, 1e-9), 80, 10));
    EXPECT_THAT(lines[0], testing::AnyOf(HasSubstr("⢀"), HasSubstr("⡀"), HasSubstr("⢠"),
                                         HasSubstr("⡄"), HasSubstr("⢰"), HasSubstr("⡆")));
}

TEST(BraillePlot, LabelsAreInVolts) {
    const std::string text = RenderBraille(MakeWaveform("CH1", {-1e-3, 1e-3}, 0, 1), 80, 15);
    EXPECT_THAT(text, HasSubstr("1.0 mV ┤"));
    EXPECT_THAT(text, HasSubstr("0.0 mV ┤"));
    EXPECT_THAT(text, HasSubstr("-1.0 mV ┤"));
}

TEST(BraillePlot, FarFromTheTriggerTimesAreRelative) {
    const auto lines = Lines(RenderBraille(MakeWaveform("CH1", {0, 1, 0}, 10, 1e-9), 80, 4));
    EXPECT_THAT(std::string(TrimBlanks(lines.back())), StartsWith("10 s"));
    EXPECT_THAT(lines.back(), HasSubstr("+1 ns"));
    EXPECT_THAT(lines.back(), EndsWith("+2 ns"));
}

TEST(BraillePlot, ANarrowTerminalGetsFortyColumns) {
    const auto lines = Lines(RenderBraille(MakeWaveform("CH1", {0, 1}, 0, 1), 3, 4));
    EXPECT_EQ(CountCharacters(lines[0]), 40U);
}

TEST(BraillePlot, NothingForARecordWithoutPoints) {
    EXPECT_EQ(RenderBraille(MakeWaveform("CH1", {}, 0, 1), 80, 10), "");
}

}  // namespace
}  // namespace kestrion::cli
