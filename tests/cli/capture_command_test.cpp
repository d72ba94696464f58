#include <gmock/gmock.h>

#include <csignal>

#include "cli/interrupt.h"
#include "tests/cli/failure_matcher.h"
#include "tests/cli/fake_scope.h"
#include "tests/support/temporary_folder.h"

namespace kestrion::cli {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

TEST(CaptureCommand, PrintsASummary) {
    FakeRun run;
    run.instrument.waveforms["CH1"] =
        MakeWaveform("CH1", {0, 1, 0, -1, 0, 1, 0, -1, 0, 1}, 0, 250e-6);
    EXPECT_EQ(run.Run({"capture"}), 0);
    EXPECT_EQ(run.Out(),
              "Kestrion Instruments PL7254C, serial number V000042, firmware 1.2.3\n"
              "Source  Points  Interval   Minimum  Maximum      Mean  Frequency\n"
              "CH1         10    250 µs  -1.000 V  1.000 V  100.0 mV  1.000 kHz\n");
    EXPECT_EQ(run.Err(), "");
}

TEST(CaptureCommand, PlotsInATerminalOnly) {
    FakeRun file;
    EXPECT_EQ(file.Run({"capture"}), 0);
    EXPECT_THAT(file.Out(), Not(HasSubstr("┤")));
    FakeRun terminal;
    terminal.outIsTerminal = true;
    EXPECT_EQ(terminal.Run({"capture", "--source", "CH1,CH2"}), 0);
    EXPECT_THAT(terminal.Out(), HasSubstr("\nCH1\n"));
    EXPECT_THAT(terminal.Out(), HasSubstr("\nCH2\n"));
    EXPECT_THAT(terminal.Out(), HasSubstr("┤"));
    FakeRun unwanted;
    unwanted.outIsTerminal = true;
    EXPECT_EQ(unwanted.Run({"capture", "--no-plot"}), 0);
    EXPECT_THAT(unwanted.Out(), Not(HasSubstr("┤")));
}

TEST(CaptureCommand, WritesEveryOutput) {
    const TemporaryFolder folder;
    FakeRun run;
    run.instrument.waveforms["CH1"] = MakeWaveform("CH1", {1, 2}, 0, 0.5);
    run.instrument.waveforms["CH2"] = MakeWaveform("CH2", {3, 4}, 0, 0.5);
    EXPECT_EQ(run.Run({"capture", "--source", "CH1,CH2", "--csv", folder.File("a.csv").string(),
                       "--npy", folder.File("b.npy").string(), "--svg",
                       folder.File("c.svg").string(), "--title", "Two <traces>"}),
              0);
    EXPECT_THAT(folder.Names(), ElementsAre("a.csv", "b.json", "b.npy", "c.svg"));
    EXPECT_EQ(ReadFile(folder.File("a.csv")), "time_s,CH1_V,CH2_V\n0,1,3\n0.5,2,4\n");
    EXPECT_THAT(ReadFile(folder.File("b.npy")), HasSubstr("'shape': (2, 2), }"));
    EXPECT_THAT(ReadFile(folder.File("b.json")), HasSubstr("\"serial\": \"V000042\""));
    const std::string svg = ReadFile(folder.File("c.svg"));
    EXPECT_THAT(svg, HasSubstr("Two &lt;traces&gt;"));
    EXPECT_THAT(svg, HasSubstr("Kestrion Instruments PL7254C · 2 points · 500 ms per point"));
}

TEST(CaptureCommand, ThePictureIsTitledBySourcesByDefault) {
    const TemporaryFolder folder;
    FakeRun run;
    EXPECT_EQ(run.Run({"capture", "--source", "CH1,REF2", "--svg", folder.File("c.svg").string()}),
              0);
    EXPECT_THAT(ReadFile(folder.File("c.svg")), HasSubstr("<title>CH1, REF2</title>"));
}

TEST(CaptureCommand, AnUnwritableFileFailsBeforeTheInstrumentIsAsked) {
    const TemporaryFolder folder;
    for (const char* option : {"--csv", "--npy", "--svg"}) {
        FakeRun run;
        const std::string target = folder.File("none/a.npy").string();
        EXPECT_EQ(run.Run({"capture", option, target}), 1);
        EXPECT_EQ(run.Out(), "");
        EXPECT_EQ(run.Err(),
                  "kestrion: Cannot write '" + target + "': No such file or directory.\n");
        EXPECT_THAT(run.instrument.calls, IsEmpty());
    }
}

TEST(CaptureCommand, AFailureOfOneOutputLeavesNoFileAtAll) {
    const TemporaryFolder folder;
    FakeRun run;
    // The time axes differ, which the array file refuses after the CSV file was written.
    run.instrument.waveforms["REF1"] = MakeWaveform("REF1", {1}, 0, 1);
    EXPECT_EQ(run.Run({"capture", "--source", "CH1,REF1", "--csv", folder.File("a.csv").string(),
                       "--npy", folder.File("a.npy").string()}),
              1);
    EXPECT_THAT(run.Err(), HasSubstr("kestrion: The sources don't share a time axis"));
    EXPECT_EQ(run.Out(), "");
    EXPECT_THAT(folder.Names(), IsEmpty());
}

TEST(CaptureCommand, AFailingAcquisitionLeavesNoFileAndPrintsNothing) {
    const TemporaryFolder folder;
    FakeRun run;
    run.instrument.failures["Read"] = "I/O error: .";
    EXPECT_EQ(run.Run({"capture", "--csv", folder.File("a.csv").string()}), 1);
    EXPECT_EQ(run.Err(), "kestrion: I/O error: .\n");
    EXPECT_EQ(run.Out(), "");
    EXPECT_THAT(folder.Names(), IsEmpty());
    EXPECT_EQ(run.instrument.calls.back(), "Close");
}

TEST(CaptureCommand, FailuresOfTheDriverHaveHints) {
    const auto errorFor = [](const std::string& text) {
        FakeRun run;
        run.instrument.failures["Fetch"] = text;
        EXPECT_EQ(run.Run({"capture", "--as-is"}), 1);
        return run.Err();
    };
    EXPECT_THAT(errorFor("Preview State,Acquire the Waveform."),
                HasSubstr("hint: The instrument holds no complete record for this source. Leave "
                          "out --as-is"));
    EXPECT_THAT(errorFor("Maximum time exceeded before the operation completed."),
                HasSubstr("hint: The trigger may never have come. Give more time by --max-time."));
    EXPECT_THAT(errorFor("Invalid acquisition type."),
                HasSubstr("hint: A capture needs the acquisition mode sample"));
}

TEST(CaptureCommand, TheTriggerThatNeverComesOnASocket) {
    FakeRun run;
    run.instrument.pollsWhileAcquiring = 1000000;
    EXPECT_EQ(run.Run({"capture", "--resource", "TCPIP::a::1::SOCKET", "--max-time", "20"}), 1);
    EXPECT_EQ(run.Err(),
              "kestrion: No complete acquisition within 20 ms.\n"
              "hint: The trigger may never have come. Give more time by --max-time.\n");
}

TEST(CaptureCommand, ASimulatedSessionHasNoWaveforms) {
    FakeRun run;
    EXPECT_EQ(run.Run({"capture", "--options", "simulate=true"}), 1);
    EXPECT_EQ(run.Out(), "");
    EXPECT_THAT(run.Err(), HasSubstr("kestrion: A simulated session has no waveforms.\n"
                                     "hint: Leave out simulate=true;"));
}

TEST(CaptureCommand, SetsTheRecordLength) {
    FakeRun run;
    EXPECT_EQ(run.Run({"capture", "--points", "2500"}), 0);
    EXPECT_THAT(run.instrument.calls, Contains("SetRecordLength 2500"));
}

TEST(InterruptGuard, NotesTheSignalAndPutsTheHandlerBack) {
    const auto before = std::signal(SIGINT, SIG_IGN);
    {
        const InterruptGuard guard;
        guard.Check();
        (void)std::raise(SIGINT);
        const Failure failure = ExpectFailure([&] { guard.Check(); });
        EXPECT_EQ(failure.ExitCode(), 130);
        EXPECT_STREQ(failure.what(), "Interrupted; the unfinished file was removed.");
    }
    {
        const InterruptGuard later;
        later.Check();
    }
    EXPECT_EQ(std::signal(SIGINT, before), SIG_IGN);
}

}  // namespace
}  // namespace kestrion::cli
