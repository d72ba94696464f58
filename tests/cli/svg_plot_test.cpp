#include "cli/svg_plot.h"

#include <gmock/gmock.h>

#include <cmath>

#include "tests/cli/waveform_maker.h"
#include "tests/cli/xml_check.h"

namespace kestrion::cli {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

std::size_t Count(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

// A ramp over the range from -1 V to 1 V and from -1 ms to 1 ms.
Waveform Ramp(const std::string& source) {
    std::vector<double> volts(1001);
    for (std::size_t i = 0; i < volts.size(); ++i) {
        volts[i] = -1 + 0.002 * static_cast<double>(i);
    }
    return MakeWaveform(source, volts, -1e-3, 2e-6);
}

TEST(XmlCheck, FindsWhatIsNotWellFormed) {
    EXPECT_EQ(XmlCheck::Problem("<?xml version=\"1.0\"?>\n<a b=\"1\"><c/>x &amp; y</a>\n"), "");
    EXPECT_NE(XmlCheck::Problem("<a>"), "");
    EXPECT_NE(XmlCheck::Problem("<a></b>"), "");
    EXPECT_NE(XmlCheck::Problem("<a>x & y</a>"), "");
    EXPECT_NE(XmlCheck::Problem("<a b=1/>"), "");
    EXPECT_NE(XmlCheck::Problem("<a b=\"1\" b=\"2\"/>"), "");
    EXPECT_NE(XmlCheck::Problem("<a/><a/>"), "");
    EXPECT_NE(XmlCheck::Problem("<a/>x"), "");
    EXPECT_NE(XmlCheck::Problem(std::string("<a>\x01</a>")), "");
}

TEST(SvgPlot, IsWellFormedForOneTwoFourAndTwelveTraces) {
    for (std::size_t traces : {1U, 2U, 4U, 12U}) {
        Waveforms waveforms;
        for (std::size_t i = 0; i < traces; ++i) {
            waveforms.push_back(Ramp("W" + std::to_string(i)));
        }
        const std::string svg = RenderSvg({"A title", "more"}, waveforms);
        EXPECT_EQ(XmlCheck::Problem(svg), "");
        EXPECT_EQ(Count(svg, "<path class=\"trace\""), traces);
        for (std::size_t i = 0; i < traces; ++i) {
            EXPECT_THAT(svg, HasSubstr(">W" + std::to_string(i) + "</text>"));
        }
    }
}

TEST(SvgPlot, TheFirstTracesHaveColoursOfTheirOwn) {
    const std::string svg =
        RenderSvg({"t", ""}, {Ramp("CH1"), Ramp("CH2"), Ramp("CH3"), Ramp("CH4")});
    // Each colour stands in the legend and at the trace.
    EXPECT_EQ(Count(svg, "stroke=\"#0072b2\""), 2U);
    EXPECT_EQ(Count(svg, "stroke=\"#d55e00\""), 2U);
    EXPECT_EQ(Count(svg, "stroke=\"#009e73\""), 2U);
    EXPECT_EQ(Count(svg, "stroke=\"#cc79a7\""), 2U);
}

TEST(SvgPlot, TracesBeyondTheColoursAreDashed) {
    const Waveforms eight(8, Ramp("CH1"));
    const Waveforms nine(9, Ramp("CH1"));
    EXPECT_EQ(Count(RenderSvg({"t", ""}, eight), "stroke-dasharray=\"6 3\""), 0U);
    EXPECT_EQ(Count(RenderSvg({"t", ""}, nine), "stroke-dasharray=\"6 3\""), 2U);
}

TEST(SvgPlot, AxesHaveUnitsAndTicks) {
    const std::string svg = RenderSvg({"t", ""}, {Ramp("CH1")});
    EXPECT_THAT(svg, HasSubstr(">Time (ms)</text>"));
    EXPECT_THAT(svg, HasSubstr(">Voltage (V)</text>"));
    // -1 to 1 in steps of 0.2 for the time and, with a margin, in steps of 0.5 for the voltage.
    for (const char* label : {"−1.0", "−0.8", "−0.6", "−0.4", "−0.2", "0.0", "0.2", "0.4", "0.6",
                              "0.8", "1.0", "−0.5", "0.5"}) {
        EXPECT_THAT(svg, HasSubstr(">" + std::string(label) + "</text>"));
    }
    EXPECT_EQ(Count(svg, "class=\"grid\""), 16U);
}

TEST(SvgPlot, MarksTheTriggerAndTheZeroLineWhereTheyAreInRange) {
    const std::string svg = RenderSvg({"t", ""}, {Ramp("CH1")});
    EXPECT_EQ(Count(svg, "class=\"trigger\""), 1U);
    EXPECT_EQ(Count(svg, "class=\"zero\""), 1U);
    EXPECT_THAT(svg, HasSubstr(">trigger</text>"));

    const std::string away = RenderSvg({"t", ""}, {MakeWaveform("CH1", {5, 6, 5}, 1e-3, 1e-6)});
    EXPECT_EQ(Count(away, "class=\"trigger\""), 0U);
    EXPECT_EQ(Count(away, "class=\"zero\""), 0U);
    EXPECT_THAT(away, Not(HasSubstr(">trigger</text>")));
}

TEST(SvgPlot, TheTitleIsEscaped) {
    const std::string svg = RenderSvg({"<a> & \"b\" 'c'\x01\xFF", "x < y"}, {Ramp("CH1")});
    EXPECT_EQ(XmlCheck::Problem(svg), "");
    EXPECT_THAT(
        svg, HasSubstr("<title>&lt;a&gt; &amp; &quot;b&quot; &apos;c&apos;\xEF\xBF\xBD\xEF\xBF\xBD"
                       "</title>"));
    EXPECT_THAT(svg, HasSubstr(">x &lt; y</text>"));
}

TEST(SvgPlot, ALongTitleIsCutInThePictureAndWholeInItsName) {
    const std::string title(300, 'm');
    const std::string svg = RenderSvg({title, ""}, {Ramp("CH1")});
    EXPECT_THAT(svg, HasSubstr("<title>" + title + "</title>"));
    EXPECT_THAT(svg, HasSubstr("m…</text>"));
    EXPECT_THAT(svg, Not(HasSubstr(title + "</text>")));
}

// The vertical positions in the trace's path.
std::vector<double> Heights(const std::string& svg) {
    const std::size_t start = svg.find("d=\"", svg.find("<path class=\"trace\"")) + 3;
    std::vector<double> heights;
    for (std::size_t at = svg.find(' ', start); at < svg.find('"', start);
         at = svg.find(' ', at + 1)) {
        heights.push_back(std::stod(svg.substr(at + 1)));
    }
    return heights;
}

TEST(SvgPlot, PointsStandWhereTheAxesSay) {
    // 0 V to 1 V with a margin of 8 % on either side, over the 388 pixels from 114 to 502.
    const std::vector<double> heights =
        Heights(RenderSvg({"t", ""}, {MakeWaveform("CH1", {0, 0.5, 1}, 0, 1)}));
    ASSERT_EQ(heights.size(), 3U);
    EXPECT_NEAR(heights[0], 502 - 388 * 0.08 / 1.16, 0.01);
    EXPECT_NEAR(heights[1], 308, 0.01);
    EXPECT_NEAR(heights[2], 114 + 388 * 0.08 / 1.16, 0.01);
}

TEST(SvgPlot, AOnePointSpikeOfALongRecordIsDrawnInFull) {
    std::vector<double> volts(100000, 0.0);
    volts[33333] = 1;
    const std::string svg = RenderSvg({"t", ""}, {MakeWaveform("CH1", volts, 0, 1e-9)});
    const std::vector<double> heights = Heights(svg);
    EXPECT_NEAR(*std::min_element(heights.begin(), heights.end()), 114 + 388 * 0.08 / 1.16, 0.01);
    EXPECT_LE(heights.size(), 4000U);
    EXPECT_LT(svg.size(), 200000U);
}

TEST(SvgPlot, AConstantIsALineInTheMiddle) {
    const std::vector<double> heights =
        Heights(RenderSvg({"t", ""}, {MakeWaveform("CH1", {2.5, 2.5, 2.5}, 0, 1)}));
    EXPECT_THAT(heights, ::testing::Each(308.0));
}

TEST(SvgPlot, TinyValuesHaveTheirPrefix) {
    const std::string svg = RenderSvg({"t", ""}, {MakeWaveform("CH1", {-3e-9, 3e-9}, 0, 1e-12)});
    EXPECT_THAT(svg, HasSubstr(">Voltage (nV)</text>"));
    EXPECT_THAT(svg, HasSubstr(">Time (ps)</text>"));
    EXPECT_THAT(svg, Not(HasSubstr("nan")));
    EXPECT_THAT(svg, Not(HasSubstr("inf")));
}

TEST(SvgPlot, ASinglePointIsADot) {
    const std::string svg = RenderSvg({"t", ""}, {MakeWaveform("CH1", {1}, 0, 1e-9)});
    EXPECT_EQ(XmlCheck::Problem(svg), "");
    EXPECT_EQ(Count(svg, "<circle class=\"trace\""), 1U);
}

TEST(SvgPlot, ARecordWithoutPointsIsInTheLegendOnly) {
    const std::string svg = RenderSvg({"t", ""}, {MakeWaveform("CH1", {}, 0, 1e-9)});
    EXPECT_EQ(XmlCheck::Problem(svg), "");
    EXPECT_THAT(svg, HasSubstr(">CH1</text>"));
    EXPECT_EQ(Count(svg, "class=\"trace\""), 0U);
}

}  // namespace
}  // namespace kestrion::cli
