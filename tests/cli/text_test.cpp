#include <gmock/gmock.h>

#include <limits>

#include "cli/ascii.h"
#include "cli/json.h"
#include "cli/suggest.h"
#include "cli/summary.h"
#include "cli/utf8.h"
#include "tests/cli/waveform_maker.h"

namespace kestrion::cli {
namespace {

using ::testing::ElementsAre;

TEST(Ascii, SplitsAtEverySeparator) {
    EXPECT_THAT(Split("a,,b,", ','), ElementsAre("a", "", "b", ""));
    EXPECT_THAT(Split("", ','), ElementsAre(""));
}

TEST(Ascii, TrimsBlanksAndLineEnds) {
    EXPECT_EQ(TrimBlanks(" \ta b\r\n"), "a b");
    EXPECT_EQ(TrimBlanks(" \n"), "");
}

TEST(Ascii, EnumeratesWithAnAndBeforeTheLast) {
    EXPECT_EQ(Enumerate({"a"}), "a");
    EXPECT_EQ(Enumerate({"a", "b", "c"}), "a, b and c");
}

TEST(Utf8, WellFormedTextStays) {
    EXPECT_EQ(CleanUtf8("aµ€😀"), "aµ€😀");
}

TEST(Utf8, MalformedBytesAreReplacedOneByOne) {
    EXPECT_EQ(CleanUtf8("a\xFFz"), "a\xEF\xBF\xBDz");
    // An overlong slash, half a surrogate pair, a code point above the last one, a cut sequence.
    EXPECT_EQ(CleanUtf8("\xC0\xAF"), "\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(CleanUtf8("\xED\xA0\x80"), "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(CleanUtf8("\xF4\x90\x80\x80"), "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(CleanUtf8("\xE2\x82"), "\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(CleanUtf8("\xE0\x80\xAF"), "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(CleanUtf8("\xF0\x80\x80\xAF"), "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(CleanUtf8("\xC3("), "\xEF\xBF\xBD(");
}

TEST(Utf8, ShorteningCountsCharacters) {
    EXPECT_EQ(Shorten("µµµ", 3), "µµµ");
    EXPECT_EQ(Shorten("µµµµ", 3), "µµ…");
    EXPECT_EQ(CountCharacters("aµ€😀"), 4U);
}

TEST(Json, EscapesWhatALiteralMustNotHold) {
    EXPECT_EQ(JsonText("a\"b\\c\n\x01µ"), "\"a\\\"b\\\\c\\u000a\\u0001µ\"");
    EXPECT_EQ(JsonText("\xFF"), "\"\xEF\xBF\xBD\"");
}

TEST(Json, NumbersAreTheShortestThatReadBack) {
    EXPECT_EQ(JsonNumber(4e-10), "4e-10");
    EXPECT_EQ(JsonNumber(-0.5), "-0.5");
    EXPECT_EQ(JsonNumber(0.1 + 0.2), "0.30000000000000004");
    EXPECT_EQ(JsonNumber(std::numeric_limits<double>::quiet_NaN()), "null");
}

TEST(Suggest, NearestNamesComeFirst) {
    const std::vector<std::string> names{"info", "capture", "scpi", "models"};
    EXPECT_THAT(Nearest("captrue", names, 1), ElementsAre("capture"));
    EXPECT_THAT(Nearest("MODEL", names, 3), ElementsAre("models"));
    EXPECT_THAT(Nearest("xyz", names, 3), ElementsAre());
}

TEST(Suggest, GivesNoMoreThanAskedFor) {
    EXPECT_THAT(Nearest("CH5", {"CH1", "CH2", "CH3"}, 2), ElementsAre("CH1", "CH2"));
}

TEST(Summary, ShowsEverySourceInALine) {
    EXPECT_EQ(RenderSummary({MakeWaveform("CH1", {0, 1, 0, -1, 0, 1, 0, -1, 0, 1}, 0, 250e-6),
                             MakeWaveform("MATH1", {0.5, 0.5}, 0, 1e-9)}),
              "Source  Points  Interval   Minimum   Maximum      Mean  Frequency\n"
              "CH1         10    250 µs  -1.000 V   1.000 V  100.0 mV  1.000 kHz\n"
              "MATH1        2      1 ns  500.0 mV  500.0 mV  500.0 mV       none\n");
}

TEST(Summary, AMeanThatIsARoundingErrorIsZero) {
    EXPECT_EQ(RenderSummary({MakeWaveform("CH1", {0.1, 0.2, -0.3}, 0, 1e-9)}),
              "Source  Points  Interval    Minimum   Maximum  Mean  Frequency\n"
              "CH1          3      1 ns  -300.0 mV  200.0 mV   0 V       none\n");
}

TEST(Summary, ARecordWithoutPointsHasNoNumbers) {
    EXPECT_EQ(RenderSummary({MakeWaveform("CH1", {}, 0, 1e-9)}),
              "Source  Points  Interval  Minimum  Maximum  Mean  Frequency\n"
              "CH1          0      none     none     none  none       none\n");
}

}  // namespace
}  // namespace kestrion::cli
