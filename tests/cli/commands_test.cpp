#include <gmock/gmock.h>

#include "tests/cli/fake_scope.h"

namespace kestrion::cli {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

TEST(InfoCommand, PrintsAlignedText) {
    FakeRun run;
    EXPECT_EQ(run.Run({"info"}), 0);
    EXPECT_EQ(run.Out(),
              "Instrument\n"
              "  Manufacturer         Kestrion Instruments\n"
              "  Model                PL7254C\n"
              "  Serial number        V000042\n"
              "  Firmware             1.2.3\n"
              "  Family               Plover Series\n"
              "Driver\n"
              "  Description          IVI driver for Kestrion Instruments oscilloscopes "
              "[Compiled for 64-bit.]\n"
              "  Identifier           Kestrion\n"
              "  Revision             3.9.0.0\n"
              "  Vendor               Kestrion Instruments\n"
              "  Specification        IviScope 3.0\n"
              "Connection\n"
              "  Resource             VIRTUAL::PL7254C::INSTR\n"
              "  Logical name         none\n"
              "  Configuration store  none (there is none here)\n"
              "  VISA library         bundled (the resource is virtual)\n"
              "Options in force\n"
              "  Cache                on\n"
              "  Simulate             off\n"
              "  Driver setup         none\n");
    EXPECT_EQ(run.Err(), "");
    EXPECT_THAT(run.instrument.calls,
                ElementsAre("Open VIRTUAL::PL7254C::INSTR []", "Instrument", "Close"));
}

TEST(InfoCommand, SimulationHasNoVisaLibraryAndNoSerialNumber) {
    FakeRun run;
    EXPECT_EQ(run.Run({"info", "--options", "simulate=true"}), 0);
    EXPECT_THAT(run.Out(),
                HasSubstr("VISA library         none (simulated, no instrument attached)\n"));
    EXPECT_THAT(run.Out(), HasSubstr("Serial number        none\n"));
}

TEST(InfoCommand, TellsTheStoreThatIsInUse) {
    FakeRun run;
    run.instrument.store = {.path = "/etc/store.xml", .reason = "a test put it there"};
    EXPECT_EQ(run.Run({"info"}), 0);
    EXPECT_THAT(run.Out(),
                HasSubstr("  Configuration store  /etc/store.xml (a test put it there)\n"));
}

TEST(InfoCommand, SetsTheTimeoutAfterOpening) {
    FakeRun run;
    EXPECT_EQ(run.Run({"--timeout", "250", "info"}), 0);
    EXPECT_THAT(run.instrument.calls, ElementsAre("Open VIRTUAL::PL7254C::INSTR []",
                                                  "SetTimeout 250", "Instrument", "Close"));
}

TEST(ModelsCommand, GroupsByLetters) {
    FakeRun run;
    EXPECT_EQ(run.Run({"models"}), 0);
    EXPECT_EQ(run.Out(),
              "HR (1)\n"
              "  HR5104\n"
              "\n"
              "PL (2)\n"
              "  PL7254C  PL7054\n"
              "\n"
              "MR (1)\n"
              "  MR5104B\n"
              "\n"
              "4 models\n");
    EXPECT_THAT(run.instrument.calls, ElementsAre("Open VIRTUAL::PL7254C::INSTR [simulate=true]",
                                                  "SupportedModels", "Close"));
}

TEST(ModelsCommand, FillsTheLineWithColumns) {
    FakeRun run;
    run.instrument.models = {"PL1000", "PL1001", "PL1002", "PL1003",
                             "PL1004", "PL1005", "PL1006", "PL1007"};
    EXPECT_EQ(run.Run({"models"}), 0);
    EXPECT_THAT(run.Out(), StartsWith("PL (8)\n"
                                      "  PL1000  PL1001  PL1002  PL1003  PL1004  PL1005  PL1006\n"
                                      "  PL1007\n"));
}

TEST(ModelsCommand, PlainIsOneNameALine) {
    FakeRun run;
    EXPECT_EQ(run.Run({"models", "--plain"}), 0);
    EXPECT_EQ(run.Out(), "HR5104\nPL7254C\nPL7054\nMR5104B\n");
}

TEST(ScpiCommand, AQuestionMarkMakesAQuery) {
    FakeRun run;
    run.instrument.responses["CH1:SCALE?"] = "5.0E-1\n";
    EXPECT_EQ(run.Run({"scpi", "CH1:SCALE 0.5", "CH1:SCALE?"}), 0);
    EXPECT_EQ(run.Out(), "5.0E-1\n");
    EXPECT_THAT(run.instrument.calls,
                ElementsAre("Open VIRTUAL::PL7254C::INSTR []", "Write CH1:SCALE 0.5",
                            "Query CH1:SCALE?", "Close"));
}

TEST(ScpiCommand, TheModeCanBeForced) {
    FakeRun write;
    EXPECT_EQ(write.Run({"scpi", "--write", "*IDN?"}), 0);
    EXPECT_THAT(write.instrument.calls, ::testing::Contains("Write *IDN?"));
    EXPECT_EQ(write.Out(), "");
    FakeRun query;
    EXPECT_EQ(query.Run({"scpi", "--query", "ODD"}), 0);
    EXPECT_THAT(query.instrument.calls, ::testing::Contains("Query ODD"));
}

TEST(ScpiCommand, AFailingQueryTellsWhatTheInstrumentSays) {
    FakeRun run;
    run.instrument.responses["*IDN?"] = "A,B,C,D";
    run.instrument.failures["Query FOO?"] = "I/O timeout error: .\nRead";
    run.instrument.error = {-113, "Undefined header"};
    EXPECT_EQ(run.Run({"scpi", "*IDN?", "FOO?"}), 1);
    EXPECT_EQ(run.Out(), "");
    EXPECT_EQ(run.Err(),
              "kestrion: I/O timeout error: .\nRead\nCommand = FOO?\n"
              "hint: The instrument's error queue says: -113, Undefined header\n");
}

TEST(ScpiCommand, AFailingQueryWithoutAnEntryInTheQueueHasAHint) {
    FakeRun empty;
    empty.instrument.failures["Query"] = "no answer";
    EXPECT_EQ(empty.Run({"scpi", "FOO?"}), 1);
    EXPECT_THAT(empty.Err(), HasSubstr("hint: Does the instrument know this query? --timeout"));
    FakeRun broken;
    broken.instrument.failures = {{"Query", "no answer"}, {"NextError", "no answer either"}};
    EXPECT_EQ(broken.Run({"scpi", "FOO?"}), 1);
    EXPECT_THAT(broken.Err(), StartsWith("kestrion: no answer\nCommand = FOO?\nhint: Does the"));
}

TEST(ScpiCommand, AFailingWriteNamesTheCommand) {
    FakeRun run;
    run.instrument.failures["Write"] = "I/O error: .";
    EXPECT_EQ(run.Run({"scpi", "A 1"}), 1);
    EXPECT_EQ(run.Err(), "kestrion: I/O error: .\nCommand = A 1\n");
}

TEST(ScpiCommand, TheErrorQueueCanBeChecked) {
    FakeRun good;
    EXPECT_EQ(good.Run({"scpi", "--check", "A 1"}), 0);
    EXPECT_THAT(good.instrument.calls, ::testing::Contains("NextError"));
    FakeRun bad;
    bad.instrument.error = {-224, "Illegal parameter value"};
    EXPECT_EQ(bad.Run({"scpi", "--check", "A 1", "B?"}), 1);
    EXPECT_EQ(bad.Out(), "");
    EXPECT_EQ(bad.Err(),
              "kestrion: The instrument's error queue has an entry: -224, Illegal parameter "
              "value\n");
}

TEST(Connecting, ASocketWithoutAListenerHasAHint) {
    FakeRun run;
    run.instrument.failures["Open"] =
        "Unknown resource.\nResource descriptor = TCPIP::127.0.0.1::4000::SOCKET.";
    EXPECT_EQ(run.Run({"info", "--resource", "TCPIP::127.0.0.1::4000::SOCKET"}), 1);
    EXPECT_EQ(run.Out(), "");
    EXPECT_EQ(run.Err(),
              "kestrion: Unknown resource.\n"
              "Resource descriptor = TCPIP::127.0.0.1::4000::SOCKET.\n"
              "hint: Is anything listening at 127.0.0.1 port 4000? 'kestrion-scope' serves a "
              "virtual instrument over TCP.\n");
}

TEST(Connecting, OtherLinksHaveTheirHints) {
    const auto hintFor = [](const std::string& resource) {
        FakeRun run;
        run.instrument.failures["Open"] = "no";
        EXPECT_EQ(run.Run({"info", "--resource", resource}), 1);
        return run.Err();
    };
    EXPECT_EQ(hintFor("TCPIP0::scope.local::INSTR"),
              "kestrion: no\nResource = TCPIP0::scope.local::INSTR\n"
              "hint: Is the instrument at scope.local switched on and reachable?\n");
    EXPECT_EQ(hintFor("USB0::1::2::3::INSTR"),
              "kestrion: no\nResource = USB0::1::2::3::INSTR\n"
              "hint: Is the instrument switched on and connected?\n");
    EXPECT_EQ(hintFor("MyScope"),
              "kestrion: no\nResource = MyScope\n"
              "hint: 'MyScope' is neither a logical name of the configuration store nor a VISA "
              "resource such as TCPIP::192.168.0.20::INSTR. No store is in use: there is none "
              "here.\n");
}

TEST(Connecting, AnUnknownLogicalNameIsToldWithItsStore) {
    FakeRun run;
    run.instrument.failures["Open"] = "no";
    run.instrument.store = {.path = "/etc/store.xml", .reason = "a test put it there"};
    EXPECT_EQ(run.Run({"info", "--resource", "YourScope"}), 1);
    EXPECT_EQ(run.Err(),
              "kestrion: no\nResource = YourScope\n"
              "hint: 'YourScope' is neither a logical name of the configuration store nor a VISA "
              "resource such as TCPIP::192.168.0.20::INSTR. The store is /etc/store.xml: a test "
              "put it there.\n");
}

TEST(Connecting, AStoreWithoutTheDriverIsTold) {
    FakeRun run;
    run.instrument.failures["Open"] =
        "Unrecoverable failure.\n"
        "Software module could not be loaded from the IVI Configuration Store.";
    run.instrument.store = {.path = "/etc/store.xml", .reason = "a test put it there"};
    EXPECT_EQ(run.Run({"info"}), 1);
    EXPECT_EQ(run.Err(),
              "kestrion: Unrecoverable failure.\n"
              "Software module could not be loaded from the IVI Configuration Store.\n"
              "hint: The configuration store /etc/store.xml (a test put it there) has no software "
              "module 'Kestrion', which drivers need in every store.\n");
}

TEST(Connecting, AnUnknownVirtualModelIsToldWithItsNeighbours) {
    FakeRun run;
    // The simulated session that the hint asks for the models works.
    run.instrument.failures["Open VIRTUAL::PL7255C"] = "Unknown resource.";
    EXPECT_EQ(run.Run({"info", "--resource", "VIRTUAL::PL7255C::INSTR"}), 1);
    EXPECT_EQ(run.Err(),
              "kestrion: Unknown resource.\nResource = VIRTUAL::PL7255C::INSTR\n"
              "hint: 'PL7255C' is no model. The virtual instrument's resource is "
              "VIRTUAL::MODEL::INSTR, with a model of those that 'kestrion models' lists, such as "
              "PL7254C.\n");
}

TEST(Connecting, AVirtualResourceWithoutAModelIsToldItsForm) {
    FakeRun run;
    run.instrument.failures["Open"] = "Unknown resource.";
    EXPECT_EQ(run.Run({"info", "--resource", "VIRTUAL"}), 1);
    EXPECT_EQ(run.Err(),
              "kestrion: Unknown resource.\nResource = VIRTUAL\n"
              "hint: The virtual instrument's resource is VIRTUAL::MODEL::INSTR, with a model of "
              "those that 'kestrion models' lists.\n");
}

TEST(Connecting, ABadOptionValueSaysWhatIsLegal) {
    FakeRun run;
    run.instrument.failures["Open"] = "The yes value in the option string is unknown.";
    EXPECT_EQ(run.Run({"info", "--options", "simulate=yes"}), 1);
    EXPECT_EQ(run.Err(),
              "kestrion: The yes value in the option string is unknown.\n"
              "hint: Legal values are true and false, 1 and 0.\n");
}

TEST(Program, BadUsageIsExitCodeTwoAndPrintsNothing) {
    FakeRun run;
    EXPECT_EQ(run.Run({"capture", "--source", "CH9"}), 2);
    EXPECT_EQ(run.Out(), "");
    EXPECT_THAT(run.Err(), StartsWith("kestrion: Unknown source 'CH9'.\nhint: Legal sources are"));
    EXPECT_TRUE(run.instrument.calls.empty());
}

TEST(Program, HelpAndVersionSucceed) {
    FakeRun run;
    EXPECT_EQ(run.Run({"--version"}), 0);
    EXPECT_EQ(run.Out(), "kestrion 3.9.0\n");
    EXPECT_EQ(run.Run({"capture", "--help"}), 0);
    EXPECT_TRUE(run.instrument.calls.empty());
}

TEST(Program, AStandardOutputThatCannotBeWrittenIsAFailure) {
    FakeRun run;
    run.BreakOutput();
    EXPECT_EQ(run.Run({"models"}), 1);
    EXPECT_EQ(run.Err(), "kestrion: Cannot write to standard output.\n");
}

}  // namespace
}  // namespace kestrion::cli
