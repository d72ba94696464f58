#include "cli/source.h"

#include <gtest/gtest.h>

#include "tests/cli/failure_matcher.h"

namespace kestrion::cli {
namespace {

TEST(ParseSources, TakesEveryKindInTheOrderGiven) {
    const std::vector<Source> sources = ParseSources("REF3,CH1,MATH2");
    ASSERT_EQ(sources.size(), 3U);
    EXPECT_EQ(sources[0], (Source{SourceKind::kReference, 3}));
    EXPECT_EQ(sources[1], (Source{SourceKind::kChannel, 1}));
    EXPECT_EQ(sources[2], (Source{SourceKind::kMath, 2}));
}

TEST(ParseSources, IgnoresLetterCaseAndBlanks) {
    const std::vector<Source> sources = ParseSources(" ch4 , Math1");
    ASSERT_EQ(sources.size(), 2U);
    EXPECT_EQ(SourceName(sources[0]), "CH4");
    EXPECT_EQ(SourceName(sources[1]), "MATH1");
}

TEST(ParseSources, AnUnknownNameSaysWhatIsLegal) {
    const Failure failure = ExpectFailure([] { (void)ParseSources("CH1,CH5"); });
    EXPECT_EQ(failure.ExitCode(), 2);
    EXPECT_STREQ(failure.what(), "Unknown source 'CH5'.");
    EXPECT_EQ(failure.Hint(),
              "Legal sources are CH1 to CH4, MATH1 to MATH4 and REF1 to REF4, several of them "
              "split by commas.");
}

TEST(ParseSources, RefusesEmptyNames) {
    EXPECT_STREQ(ExpectFailure([] { (void)ParseSources(""); }).what(), "Unknown source ''.");
    EXPECT_STREQ(ExpectFailure([] { (void)ParseSources("CH1,"); }).what(), "Unknown source ''.");
}

TEST(ParseSources, RefusesNumbersThatOnlyBeginRight) {
    EXPECT_STREQ(ExpectFailure([] { (void)ParseSources("CH11"); }).what(),
                 "Unknown source 'CH11'.");
    EXPECT_STREQ(ExpectFailure([] { (void)ParseSources("CH0"); }).what(), "Unknown source 'CH0'.");
}

TEST(ParseSources, RefusesASourceNamedTwice) {
    const Failure failure = ExpectFailure([] { (void)ParseSources("CH2,ch2"); });
    EXPECT_EQ(failure.ExitCode(), 2);
    EXPECT_STREQ(failure.what(), "Source CH2 is named twice.");
}

}  // namespace
}  // namespace kestrion::cli
