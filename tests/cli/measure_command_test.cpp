#include <gmock/gmock.h>

#include <limits>

#include "tests/cli/fake_scope.h"

namespace kestrion::cli {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Not;
using ::testing::StartsWith;

TEST(MeasureCommand, PrintsATableWithAColumnForEachSource) {
    FakeRun run;
    run.instrument.sourcesOn = {"CH1", "CH2"};
    run.instrument.measured = {{"CH1 frequency", {1000.0, "Hz"}}, {"CH2 frequency", {{}, "Hz"}},
                               {"CH1 pk2pk", {2.0, "V"}},         {"CH2 pk2pk", {0.0125, "V"}},
                               {"CH1 pduty", {50.25, "%"}},       {"CH2 pduty", {0.5, "%"}}};
    EXPECT_EQ(run.Run({"measure", "--source", "CH1,CH2", "--type", "frequency,pk2pk,pduty"}), 0);
    EXPECT_EQ(run.Out(),
              "Kestrion Instruments PL7254C, serial number V000042, firmware 1.2.3\n"
              "Measurement                CH1       CH2\n"
              "Frequency            1.000 kHz      none\n"
              "Peak to peak           2.000 V  12.50 mV\n"
              "Positive duty cycle    50.25 %  0.5000 %\n");
    EXPECT_EQ(run.Err(), "");
}

TEST(MeasureCommand, AcquiresOnceThenMeasuresSourceBySource) {
    FakeRun run;
    run.instrument.pollsWhileAcquiring = 1;
    EXPECT_EQ(run.Run({"measure", "--source", "CH1,CH2", "--type", "rise,fall"}), 0);
    EXPECT_THAT(run.instrument.calls,
                ElementsAre("Open VIRTUAL::PL7254C::INSTR []", "TurnOn CH2", "StartSingleSequence",
                            "IsAcquiring", "IsAcquiring", "Measure CH1 rise", "Measure CH1 fall",
                            "Measure CH2 rise", "Measure CH2 fall", "Instrument", "Close"));
}

TEST(MeasureCommand, AsIsTakesWhatTheInstrumentHolds) {
    FakeRun run;
    EXPECT_EQ(run.Run({"measure", "--as-is", "--type", "mean"}), 0);
    EXPECT_THAT(run.instrument.calls, ElementsAre("Open VIRTUAL::PL7254C::INSTR []",
                                                  "Measure CH1 mean", "Instrument", "Close"));
}

TEST(MeasureCommand, TheUsualMeasurementsAreMadeWhereNoneIsNamed) {
    FakeRun run;
    EXPECT_EQ(run.Run({"measure", "--as-is"}), 0);
    EXPECT_THAT(run.instrument.calls,
                ElementsAre("Open VIRTUAL::PL7254C::INSTR []", "Measure CH1 frequency",
                            "Measure CH1 period", "Measure CH1 pk2pk", "Measure CH1 amplitude",
                            "Measure CH1 maximum", "Measure CH1 minimum", "Measure CH1 mean",
                            "Measure CH1 rms", "Measure CH1 rise", "Measure CH1 fall",
                            "Measure CH1 pduty", "Instrument", "Close"));
}

TEST(MeasureCommand, PrintsJson) {
    FakeRun run;
    run.instrument.sourcesOn = {"CH1", "REF2"};
    run.instrument.measured = {{"CH1 rise", {3.5e-7, "s"}},
                               {"CH1 area", {-0.25, "V\"s"}},
                               {"REF2 rise", {{}, "s"}},
                               {"REF2 area", {0.0, ""}}};
    EXPECT_EQ(run.Run({"measure", "--source", "CH1,REF2", "--type", "rise,area", "--json"}), 0);
    EXPECT_EQ(run.Out(),
              "{\n"
              "  \"identity\": {\n"
              "    \"manufacturer\": \"Kestrion Instruments\",\n"
              "    \"model\": \"PL7254C\",\n"
              "    \"serial\": \"V000042\",\n"
              "    \"firmware\": \"1.2.3\"\n"
              "  },\n"
              "  \"measurements\": [\n"
              "    {\"source\": \"CH1\", \"measurement\": \"rise\", \"value\": 3.5e-07, "
              "\"unit\": \"s\"},\n"
              "    {\"source\": \"CH1\", \"measurement\": \"area\", \"value\": -0.25, "
              "\"unit\": \"V\\\"s\"},\n"
              "    {\"source\": \"REF2\", \"measurement\": \"rise\", \"value\": null, "
              "\"unit\": \"s\"},\n"
              "    {\"source\": \"REF2\", \"measurement\": \"area\", \"value\": 0, "
              "\"unit\": \"\"}\n"
              "  ]\n"
              "}\n");
}

TEST(MeasureCommand, AValueWithoutAUnitStandsAlone) {
    FakeRun run;
    run.instrument.measured = {{"CH1 area", {12345.0, ""}}};
    EXPECT_EQ(run.Run({"measure", "--as-is", "--type", "area"}), 0);
    EXPECT_EQ(run.Out(),
              "Kestrion Instruments PL7254C, serial number V000042, firmware 1.2.3\n"
              "Measurement        CH1\n"
              "Area         1.234e+04\n");
}

TEST(MeasureCommand, VeryLargeNumbersMeanThatThereIsNoValue) {
    EXPECT_EQ(ValueOrNone(9.91e37), std::nullopt);
    EXPECT_EQ(ValueOrNone(-9.91e37), std::nullopt);
    EXPECT_EQ(ValueOrNone(9e37), std::nullopt);
    EXPECT_EQ(ValueOrNone(std::numeric_limits<double>::infinity()), std::nullopt);
    EXPECT_EQ(ValueOrNone(std::numeric_limits<double>::quiet_NaN()), std::nullopt);
    EXPECT_EQ(ValueOrNone(8.9e37), 8.9e37);
    EXPECT_EQ(ValueOrNone(0.0), 0.0);
}

TEST(MeasureCommand, NumbersOfTheMeasurementsAreTheDrivers) {
    // Typed from the list of the driver's measurement types.
    const std::pair<const char*, int> numbers[] = {
        {"rise", 0},       {"fall", 1},    {"frequency", 2}, {"period", 3},      {"rms", 4},
        {"pk2pk", 5},      {"maximum", 6}, {"minimum", 7},   {"high", 8},        {"low", 9},
        {"mean", 10},      {"nwidth", 11}, {"pwidth", 12},   {"nduty", 13},      {"pduty", 14},
        {"amplitude", 15}, {"crms", 16},   {"cmean", 17},    {"povershoot", 18}, {"novershoot", 19},
        {"area", 20},      {"carea", 21},  {"burst", 22}};
    for (const auto& [name, number] : numbers) {
        EXPECT_EQ(ParseMeasurements(name).front().type, number) << name;
    }
    EXPECT_EQ(AllMeasurements().size(), std::size(numbers));
}

TEST(MeasureCommand, AnAcquisitionThatDoesNotEndIsTold) {
    FakeRun run;
    run.instrument.pollsWhileAcquiring = 1000000;
    EXPECT_EQ(run.Run({"measure", "--max-time", "100"}), 1);
    EXPECT_EQ(run.Out(), "");
    EXPECT_EQ(run.Err(),
              "kestrion: No complete acquisition within 100 ms.\n"
              "hint: The trigger may never have come. Give more time by --max-time.\n");
    EXPECT_THAT(run.instrument.calls, Not(Contains(StartsWith("Measure"))));
}

TEST(MeasureCommand, AMeasurementThatFailsIsNamedWithWhatTheInstrumentSays) {
    FakeRun run;
    run.instrument.failures["Measure CH1 fall"] = "I/O timeout error: .";
    run.instrument.error = {-221, "Settings conflict"};
    EXPECT_EQ(run.Run({"measure", "--as-is", "--type", "rise,fall"}), 1);
    EXPECT_EQ(run.Out(), "");
    EXPECT_EQ(run.Err(),
              "kestrion: I/O timeout error: .\nMeasurement = fall of CH1\n"
              "hint: The instrument's error queue says: -221, Settings conflict\n");
}

TEST(MeasureCommand, AMeasurementThatFailsWithoutAnEntryInTheQueueHasAHint) {
    FakeRun run;
    run.instrument.failures["Measure"] = "I/O timeout error: .";
    EXPECT_EQ(run.Run({"measure", "--as-is"}), 1);
    EXPECT_EQ(run.Err(),
              "kestrion: I/O timeout error: .\nMeasurement = frequency of CH1\n"
              "hint: --timeout gives the instrument more time.\n");
}

TEST(MeasureCommand, SimulationHasNothingToMeasure) {
    FakeRun run;
    EXPECT_EQ(run.Run({"measure", "--options", "simulate=true"}), 1);
    EXPECT_EQ(run.Out(), "");
    EXPECT_THAT(run.Err(), StartsWith("kestrion: A simulated session has nothing to measure.\n"
                                      "hint: Leave out simulate=true; "));
    EXPECT_THAT(run.instrument.calls, Not(Contains("StartSingleSequence")));
}

}  // namespace
}  // namespace kestrion::cli
