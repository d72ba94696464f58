#include "cli/arguments.h"

#include <gmock/gmock.h>

#include "tests/cli/failure_matcher.h"

namespace kestrion::cli {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

template <typename Expected>
Expected ParseAs(const std::vector<std::string>& arguments) {
    const Arguments parsed = ParseArguments(arguments, "3.9.0");
    EXPECT_TRUE(std::holds_alternative<Expected>(parsed));
    return std::get<Expected>(parsed);
}

Failure UsageError(const std::vector<std::string>& arguments) {
    Failure failure = ExpectFailure([&] { (void)ParseArguments(arguments, "3.9.0"); });
    EXPECT_EQ(failure.ExitCode(), 2);
    return failure;
}

TEST(Arguments, DefaultsOfCapture) {
    const auto capture = ParseAs<CaptureArguments>({"capture"});
    EXPECT_EQ(capture.connection.resource, "VIRTUAL::PL7254C::INSTR");
    EXPECT_EQ(capture.connection.options, "");
    EXPECT_FALSE(capture.connection.timeoutMilliseconds.has_value());
    EXPECT_THAT(capture.sources, ElementsAre(Source{SourceKind::kChannel, 1}));
    EXPECT_FALSE(capture.points.has_value());
    EXPECT_FALSE(capture.asIs);
    EXPECT_EQ(capture.maxTimeMilliseconds, 10000);
    EXPECT_TRUE(capture.csv.empty());
    EXPECT_TRUE(capture.plot);
}

TEST(Arguments, EveryOptionOfCapture) {
    const auto capture = ParseAs<CaptureArguments>(
        {"capture", "--source", "CH1,ch2", "--points", "100000000", "--single", "--max-time", "50",
         "--csv", "a.csv", "--npy", "a.npy", "--svg", "a.svg", "--title", "A title", "--no-plot"});
    EXPECT_THAT(capture.sources,
                ElementsAre(Source{SourceKind::kChannel, 1}, Source{SourceKind::kChannel, 2}));
    EXPECT_EQ(capture.points, 100000000);
    EXPECT_EQ(capture.maxTimeMilliseconds, 50);
    EXPECT_EQ(capture.csv, "a.csv");
    EXPECT_EQ(capture.npy, "a.npy");
    EXPECT_EQ(capture.svg, "a.svg");
    EXPECT_EQ(capture.title, "A title");
    EXPECT_FALSE(capture.plot);
}

TEST(Arguments, SourcesMayBeGivenOneByOne) {
    const auto capture =
        ParseAs<CaptureArguments>({"capture", "--source", "CH1", "--source", "MATH1"});
    EXPECT_THAT(capture.sources,
                ElementsAre(Source{SourceKind::kChannel, 1}, Source{SourceKind::kMath, 1}));
}

TEST(Arguments, CommonOptionsWorkBeforeAndAfterTheCommand) {
    const auto before = ParseAs<InfoArguments>(
        {"--resource", "A", "--options", "simulate=1", "--timeout", "5", "info"});
    EXPECT_EQ(before.connection.resource, "A");
    EXPECT_EQ(before.connection.options, "simulate=1");
    EXPECT_EQ(before.connection.timeoutMilliseconds, 5);
    const auto after =
        ParseAs<InfoArguments>({"info", "--resource=A", "--options=simulate=1", "--timeout=5"});
    EXPECT_EQ(after.connection.resource, "A");
    EXPECT_EQ(after.connection.options, "simulate=1");
    EXPECT_EQ(after.connection.timeoutMilliseconds, 5);
    EXPECT_EQ(ParseAs<ScpiArguments>({"scpi", "*RST", "--resource", "B"}).connection.resource, "B");
    EXPECT_EQ(ParseAs<CaptureArguments>({"capture", "--resource", "B"}).connection.resource, "B");
}

TEST(Arguments, DefaultsOfMeasure) {
    const auto measure = ParseAs<MeasureArguments>({"measure"});
    EXPECT_EQ(measure.connection.resource, "VIRTUAL::PL7254C::INSTR");
    EXPECT_THAT(measure.sources, ElementsAre(Source{SourceKind::kChannel, 1}));
    EXPECT_EQ(measure.measurements.size(), 11U);
    EXPECT_EQ(measure.measurements.front().name, "frequency");
    EXPECT_EQ(measure.measurements.back().name, "pduty");
    EXPECT_FALSE(measure.asIs);
    EXPECT_EQ(measure.maxTimeMilliseconds, 10000);
    EXPECT_FALSE(measure.json);
}

TEST(Arguments, EveryOptionOfMeasure) {
    const auto measure = ParseAs<MeasureArguments>(
        {"measure", "--source", "MATH2", "--source", "ref3", "--type", "Rise, fall", "--type",
         "RMS", "--as-is", "--max-time", "70", "--json", "--resource", "A"});
    EXPECT_EQ(measure.connection.resource, "A");
    EXPECT_THAT(measure.sources,
                ElementsAre(Source{SourceKind::kMath, 2}, Source{SourceKind::kReference, 3}));
    ASSERT_EQ(measure.measurements.size(), 3U);
    EXPECT_EQ(measure.measurements[0].name, "rise");
    EXPECT_EQ(measure.measurements[1].name, "fall");
    EXPECT_EQ(measure.measurements[2].name, "rms");
    EXPECT_TRUE(measure.asIs);
    EXPECT_EQ(measure.maxTimeMilliseconds, 70);
    EXPECT_TRUE(measure.json);
    EXPECT_EQ(ParseAs<MeasureArguments>({"measure", "--all"}).measurements.size(), 23U);
}

TEST(Arguments, ScpiAsksForTheIdentityByDefault) {
    EXPECT_THAT(ParseAs<ScpiArguments>({"scpi"}).commands, ElementsAre("*IDN?"));
}

TEST(Arguments, ScpiTakesSeveralCommandsAndAMode) {
    const auto plain = ParseAs<ScpiArguments>({"scpi", "CH1:SCALE 0.5", "CH1:SCALE?"});
    EXPECT_THAT(plain.commands, ElementsAre("CH1:SCALE 0.5", "CH1:SCALE?"));
    EXPECT_EQ(plain.mode, ScpiMode::kByQuestionMark);
    EXPECT_FALSE(plain.check);
    EXPECT_EQ(ParseAs<ScpiArguments>({"scpi", "--write", "A?"}).mode, ScpiMode::kWrite);
    const auto query = ParseAs<ScpiArguments>({"scpi", "A", "--query", "--check"});
    EXPECT_EQ(query.mode, ScpiMode::kQuery);
    EXPECT_TRUE(query.check);
}

TEST(Arguments, ModelsCanBePlain) {
    EXPECT_FALSE(ParseAs<ModelsArguments>({"models"}).plain);
    EXPECT_TRUE(ParseAs<ModelsArguments>({"models", "--plain"}).plain);
}

TEST(Arguments, VersionAndHelp) {
    EXPECT_EQ(ParseAs<ShowText>({"--version"}).text, "kestrion 3.9.0\n");
    const std::string help = ParseAs<ShowText>({"--help"}).text;
    for (const char* part : {"info", "capture", "measure", "scpi", "models", "--resource",
                             "--options", "--timeout", "Examples:"}) {
        EXPECT_THAT(help, HasSubstr(part));
    }
}

TEST(Arguments, EveryCommandHasHelpWithExamples) {
    for (const char* command : {"info", "capture", "measure", "scpi", "models"}) {
        const std::string help = ParseAs<ShowText>({command, "--help"}).text;
        EXPECT_THAT(help, HasSubstr("Examples:\n  kestrion " + std::string(command)));
    }
    const std::string capture = ParseAs<ShowText>({"capture", "--help"}).text;
    for (const char* option : {"--source", "--points", "--single", "--as-is", "--max-time", "--csv",
                               "--npy", "--svg", "--title", "--no-plot"}) {
        EXPECT_THAT(capture, HasSubstr(option));
    }
}

TEST(ArgumentErrors, NoCommand) {
    const Failure failure = UsageError({});
    EXPECT_STREQ(failure.what(), "A command is missing.");
    EXPECT_EQ(failure.Hint(),
              "Legal commands are info, capture, measure, scpi and models; 'kestrion --help' tells "
              "more.");
}

TEST(ArgumentErrors, UnknownCommand) {
    const Failure failure = UsageError({"captrue"});
    EXPECT_STREQ(failure.what(), "Unknown command 'captrue'.");
    EXPECT_EQ(failure.Hint(),
              "Did you mean capture? Legal commands are info, capture, measure, scpi and models.");
}

TEST(ArgumentErrors, UnknownOptionSaysWhatIsLegal) {
    const Failure failure = UsageError({"capture", "--point=5"});
    EXPECT_STREQ(failure.what(), "Unknown option '--point'.");
    EXPECT_THAT(failure.Hint(), StartsWith("Did you mean --points? Legal options are "));
    EXPECT_THAT(failure.Hint(), HasSubstr("--resource"));
    EXPECT_THAT(failure.Hint(), HasSubstr("--no-plot"));
    EXPECT_STREQ(UsageError({"--frobnicate", "info"}).what(), "Unknown option '--frobnicate'.");
    EXPECT_STREQ(UsageError({"models", "--csv", "a"}).what(), "Unknown option '--csv'.");
}

TEST(ArgumentErrors, UnexpectedArgument) {
    const Failure failure = UsageError({"info", "more"});
    EXPECT_STREQ(failure.what(), "Unexpected argument 'more'.");
    EXPECT_EQ(failure.Hint(), "'kestrion info --help' lists what is legal.");
}

TEST(ArgumentErrors, UnknownSource) {
    const Failure failure = UsageError({"capture", "--source", "CH9"});
    EXPECT_STREQ(failure.what(), "Unknown source 'CH9'.");
    EXPECT_THAT(failure.Hint(), HasSubstr("CH1 to CH4, MATH1 to MATH4 and REF1 to REF4"));
}

TEST(ArgumentErrors, UnknownMeasurement) {
    const Failure failure = UsageError({"measure", "--type", "freqency"});
    EXPECT_STREQ(failure.what(), "Unknown measurement 'freqency'.");
    EXPECT_THAT(failure.Hint(),
                StartsWith("Did you mean frequency? Legal measurements are frequency, period, "));
    EXPECT_STREQ(UsageError({"measure", "--type", "rise,"}).what(), "Unknown measurement ''.");
    EXPECT_STREQ(UsageError({"measure", "--type", "rise,RISE"}).what(),
                 "Measurement rise is named twice.");
}

TEST(ArgumentErrors, PointsOutOfRange) {
    for (const char* points : {"999", "100000001", "-5", "many", "1e4"}) {
        const Failure failure = UsageError({"capture", "--points", points});
        EXPECT_THAT(failure.what(), HasSubstr("--points")) << points;
        EXPECT_THAT(failure.what(), HasSubstr("1000")) << points;
    }
    EXPECT_EQ(ParseAs<CaptureArguments>({"capture", "--points", "1000"}).points, 1000);
}

TEST(ArgumentErrors, TimesOutOfRange) {
    EXPECT_THAT(UsageError({"capture", "--max-time", "0"}).what(), HasSubstr("--max-time"));
    EXPECT_THAT(UsageError({"info", "--timeout", "0"}).what(), HasSubstr("--timeout"));
    EXPECT_THAT(UsageError({"info", "--timeout", "x"}).what(), HasSubstr("--timeout"));
}

TEST(ArgumentErrors, OptionsThatExcludeEachOther) {
    EXPECT_THAT(UsageError({"capture", "--single", "--as-is"}).what(), HasSubstr("--as-is"));
    EXPECT_THAT(UsageError({"capture", "--as-is", "--points", "1000"}).what(),
                HasSubstr("--as-is"));
    EXPECT_THAT(UsageError({"measure", "--all", "--type", "rise"}).what(), HasSubstr("--all"));
    EXPECT_THAT(UsageError({"scpi", "A", "--write", "--query"}).what(), HasSubstr("--query"));
}

TEST(ArgumentErrors, AnOptionWithoutItsValue) {
    EXPECT_THAT(UsageError({"capture", "--csv"}).what(), HasSubstr("--csv"));
    EXPECT_STREQ(UsageError({"capture", "--csv", ""}).what(), "--csv needs the name of a file.");
}

TEST(ArgumentErrors, OneFileForTwoOutputs) {
    EXPECT_STREQ(UsageError({"capture", "--csv", "a", "--svg", "./a"}).what(),
                 "'./a' would be written twice.");
    EXPECT_STREQ(UsageError({"capture", "--csv", "a.json", "--npy", "a.npy"}).what(),
                 "'a.json' would be written twice.");
}

TEST(OptionString, KnownNamesPass) {
    EXPECT_FALSE(FailureOf([] { CheckOptionString(""); }).has_value());
    EXPECT_FALSE(FailureOf([] {
                     CheckOptionString(
                         "Cache=false, SIMULATE=1,interchangecheck=true,"
                         "QueryInstrStatus=0,rangecheck=1,RecordCoercions=true,");
                 }).has_value());
}

TEST(OptionString, AnUnknownNameSaysWhatIsLegal) {
    const Failure failure = UsageError({"info", "--options", "simulat=true"});
    EXPECT_STREQ(failure.what(), "Unknown driver option 'simulat'.");
    EXPECT_THAT(failure.Hint(), StartsWith("Legal options are Cache, InterchangeCheck, "
                                           "QueryInstrStatus, RangeCheck, RecordCoercions, "
                                           "Simulate and, as the last one, DriverSetup"));
}

TEST(OptionString, TheDriverSetupIsTheDrivers) {
    EXPECT_FALSE(FailureOf([] {
                     CheckOptionString("simulate=true,DriverSetup=Model=PL7254C,Anything=1");
                 }).has_value());
    EXPECT_FALSE(FailureOf([] { CheckOptionString("driversetup = Trace=true"); }).has_value());
}

}  // namespace
}  // namespace kestrion::cli
