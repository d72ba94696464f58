// The built program, as its users run it.
#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <sys/socket.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <fstream>

#include "cli/ascii.h"
#include "tests/cli/process.h"

namespace kestrion::cli {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;
using ::testing::StartsWith;

ProcessResult Kestrion(const std::vector<std::string>& arguments, const std::string& target = {}) {
    return RunProcess(KESTRION_PROGRAM, arguments, target);
}

// The values of a line of numbers.
std::vector<double> Numbers(std::string_view line) {
    std::vector<double> numbers;
    for (std::string_view field : Split(line, ',')) {
        numbers.push_back(std::stod(std::string(field)));
    }
    return numbers;
}

// The line of the summary that begins with `source`.
std::string SummaryLine(const std::string& text, const std::string& source) {
    for (std::string_view line : Split(text, '\n')) {
        if (line.starts_with(source + " ")) {
            return std::string(line);
        }
    }
    return {};
}

// A port of this computer that nothing listens at.
std::string UnusedPort() {
    const int handle = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof(address);
    auto* const any = reinterpret_cast<sockaddr*>(&address);
    EXPECT_EQ(bind(handle, any, size), 0);
    EXPECT_EQ(getsockname(handle, any, &size), 0);
    close(handle);
    return std::to_string(ntohs(address.sin_port));
}

TEST(ProgramWithoutArguments, VersionAndHelp) {
    const ProcessResult version = Kestrion({"--version"});
    EXPECT_EQ(version.exitCode, 0);
    EXPECT_EQ(version.out, "kestrion " KESTRION_TEST_VERSION "\n");
    const ProcessResult help = Kestrion({"--help"});
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_THAT(help.out, HasSubstr("Examples:"));
}

TEST(ProgramWithoutArguments, Info) {
    const ProcessResult result = Kestrion({"info"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_THAT(result.out, StartsWith("Instrument\n  Manufacturer "));
    for (const char* text :
         {"  Model  ", "PL7254C\n", "VIRTUAL::PL7254C::INSTR\n", "3.9.0.0\n", "IviScope 3.0\n",
          "[Compiled for 64-bit.]\n", "  VISA library  ", "  Simulate  "}) {
        EXPECT_THAT(result.out, HasSubstr(text));
    }
    EXPECT_THAT(result.out, ::testing::Not(HasSubstr("unknown")));
}

// The virtual instrument applies a sine of 1 kHz and 1 V to its first channel.
void ExpectTheSine(const std::string& summary) {
    const std::string line = SummaryLine(summary, "CH1");
    EXPECT_THAT(line, HasSubstr(" -1.000 V "));
    EXPECT_THAT(line, HasSubstr(" 1.000 V "));
    EXPECT_THAT(line, EndsWith(" 1.000 kHz"));
}

TEST(ProgramWithoutArguments, Capture) {
    const ProcessResult result = Kestrion({"capture"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_THAT(result.out,
                StartsWith("KESTRION PL7254C, serial number V000001, firmware 1.0.0\nSource "));
    ExpectTheSine(result.out);
    // Three lines, and nothing behind the last line end.
    EXPECT_EQ(Split(result.out, '\n').size(), 4U);
}

TEST(ProgramWithoutArguments, Scpi) {
    const ProcessResult result = Kestrion({"scpi"});
    EXPECT_EQ(result.exitCode, 0);
    const auto fields = Split(result.out, ',');
    ASSERT_EQ(fields.size(), 4U);
    EXPECT_EQ(fields[1], "PL7254C");
}

TEST(ProgramWithoutArguments, Models) {
    const ProcessResult result = Kestrion({"models"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.out, HasSubstr("115 models\n"));
    EXPECT_THAT(result.out, HasSubstr("PL7254C"));
    EXPECT_EQ(Split(Kestrion({"models", "--plain"}).out, '\n').size(), 116U);
}

TEST(Program, SimulationNeedsNoInstrument) {
    const ProcessResult result = Kestrion(
        {"info", "--timeout", "100", "--options", "simulate=true,DriverSetup=Model=MR5104B"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_THAT(result.out, HasSubstr("MR5104B\n"));
    EXPECT_THAT(result.out, HasSubstr("Sim3.9.0.0\n"));
    EXPECT_THAT(result.out, HasSubstr("none (simulated, no instrument attached)\n"));
}

// Names the store for the programs that a test runs.
class StoreVariable {
  public:
    explicit StoreVariable(const std::string& path) {
        if (const char* before = getenv(kName); before != nullptr) {
            before_ = before;
        }
        EXPECT_EQ(setenv(kName, path.c_str(), 1), 0);
    }
    StoreVariable(const StoreVariable&) = delete;
    StoreVariable& operator=(const StoreVariable&) = delete;
    ~StoreVariable() { EXPECT_EQ(setenv(kName, before_.c_str(), 1), 0); }

  private:
    static constexpr const char* kName = "IVI_CONFIGURATION_STORE";
    // An empty variable is as good as none.
    std::string before_;
};

TEST(ProgramWithAStore, InfoGoesThroughALogicalName) {
    const StoreVariable variable(KESTRION_SAMPLE_STORE);
    const ProcessResult result = Kestrion({"info", "--resource", "MyScope"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.err, "");
    for (const char* line :
         {"  Model                    PL7254C\n",
          "  Resource                 VIRTUAL::PL7254C::INSTR\n",
          "  Logical name             MyScope\n",
          "  Configuration store      " KESTRION_SAMPLE_STORE
          " (the environment variable IVI_CONFIGURATION_STORE names it)\n",
          "  Cache                    off\n", "  Query instrument status  on\n",
          "  Range check              off\n", "  Record coercions         on\n",
          "  Simulate                 off\n", "  Driver setup             Shape=Round\n"}) {
        EXPECT_THAT(result.out, HasSubstr(line));
    }
}

TEST(ProgramWithAStore, OptionsOverrideTheSession) {
    const StoreVariable variable(KESTRION_SAMPLE_STORE);
    const ProcessResult result =
        Kestrion({"info", "--resource", "MyScope", "--options", "simulate=true,cache=true"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_THAT(result.out, HasSubstr("  Model                    PL7054C\n"))
        << "the initial setting of the session";
    EXPECT_THAT(result.out, HasSubstr("  Cache                    on\n"));
    EXPECT_THAT(result.out, HasSubstr("  Simulate                 on\n"));
}

TEST(ProgramWithAStore, ADescriptorStillLeadsToItsInstrument) {
    const StoreVariable variable(KESTRION_SAMPLE_STORE);
    const ProcessResult result = Kestrion({"info", "--resource", "VIRTUAL::HR5104::INSTR"});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_THAT(result.out, HasSubstr("  Model                    HR5104\n"));
    EXPECT_THAT(result.out, HasSubstr("  Logical name             none\n"));
}

TEST(ProgramWithAStore, ABrokenStoreIsToldAndOtherwiseAsNone) {
    const TemporaryFolder folder;
    const std::string path = folder.File("store.xml").string();
    std::ofstream(path) << "<IviConfigStore>\n<Name></Vendor>\n";
    const StoreVariable variable(path);
    const std::string trouble =
        "'" + path + "' can't be used: line 2 is not well-formed XML: Start-end tags mismatch";
    const ProcessResult info = Kestrion({"info"});
    EXPECT_EQ(info.exitCode, 0) << info.err;
    EXPECT_THAT(info.out, HasSubstr("  Configuration store      none (" + trouble + ")\n"));
    const ProcessResult failing = Kestrion({"info", "--resource", "MyScope"});
    EXPECT_EQ(failing.exitCode, 1);
    EXPECT_EQ(failing.out, "");
    EXPECT_THAT(failing.err, HasSubstr("\nConfiguration store: " + trouble + ".\n"));
    EXPECT_THAT(failing.err, HasSubstr("hint: 'MyScope' is neither a logical name"));
}

TEST(ProgramWithAStore, AnUnknownLogicalNameIsNoResource) {
    const StoreVariable variable(KESTRION_SAMPLE_STORE);
    const ProcessResult result = Kestrion({"info", "--resource", "YourScope"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, HasSubstr("hint: 'YourScope' is neither a logical name of the "
                                      "configuration store nor a VISA resource"));
    EXPECT_THAT(result.err, HasSubstr("The store is " KESTRION_SAMPLE_STORE ": "));
}

TEST(Program, CaptureWritesTheSamePointsToEveryFile) {
    const TemporaryFolder folder;
    const ProcessResult result =
        Kestrion({"capture", "--source", "CH1,CH2", "--points", "1000", "--csv",
                  folder.File("a.csv").string(), "--npy", folder.File("a.npy").string(), "--svg",
                  folder.File("a.svg").string(), "--title", "Two channels"});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_THAT(folder.Names(), ElementsAre("a.csv", "a.json", "a.npy", "a.svg"));
    EXPECT_THAT(SummaryLine(result.out, "CH1"), HasSubstr(" 1000 "));
    EXPECT_THAT(SummaryLine(result.out, "CH2"), HasSubstr(" 1000 "));

    const std::string csv = ReadFile(folder.File("a.csv"));
    const auto lines = Split(csv, '\n');
    ASSERT_EQ(lines.size(), 1002U);
    EXPECT_EQ(lines[0], "time_s,CH1_V,CH2_V");
    const std::string npy = ReadFile(folder.File("a.npy"));
    ASSERT_EQ(npy.size(), 128U + 2U * 1000U * sizeof(double));
    double volts[2][1000];
    std::memcpy(volts, npy.data() + 128, sizeof(volts));
    bool varies = false;
    for (std::size_t i = 0; i < 1000; ++i) {
        const std::vector<double> row = Numbers(lines[i + 1]);
        ASSERT_EQ(row.size(), 3U);
        ASSERT_EQ(row[1], volts[0][i]);
        ASSERT_EQ(row[2], volts[1][i]);
        varies = varies || row[1] != volts[0][0];
    }
    EXPECT_TRUE(varies) << "a signal is applied to the virtual instrument's first channel";
    EXPECT_GT(Numbers(lines[2])[0], Numbers(lines[1])[0]);
    EXPECT_THAT(ReadFile(folder.File("a.json")), HasSubstr("\"points\": 1000,"));
    EXPECT_THAT(ReadFile(folder.File("a.svg")), HasSubstr("<title>Two channels</title>"));
}

TEST(Program, CaptureSwitchesOnASourceThatIsOff) {
    const ProcessResult result = Kestrion({"capture", "--source", "CH3,MATH1", "--points", "1000"});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    EXPECT_NE(SummaryLine(result.out, "CH3"), "");
    EXPECT_NE(SummaryLine(result.out, "MATH1"), "");
}

TEST(Program, ScpiRunsItsCommandsInOneSession) {
    const ProcessResult result =
        Kestrion({"scpi", "HORIZONTAL:RECORDLENGTH 2000", "HORIZONTAL:RECORDLENGTH?"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "2000\n");
}

TEST(Program, AnUnknownQueryTellsWhatTheInstrumentSays) {
    const ProcessResult result = Kestrion({"scpi", "--timeout", "200", "NOSUCH:HEADER?"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, StartsWith("kestrion: "));
    EXPECT_THAT(result.err, HasSubstr("Command = NOSUCH:HEADER?\n"));
    EXPECT_THAT(result.err, HasSubstr("hint: The instrument's error queue says: -113, "));
}

TEST(Program, AnUnknownCommandFailsWhenTheErrorQueueIsChecked) {
    const ProcessResult result = Kestrion({"scpi", "--check", "NOSUCH:HEADER 1"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, HasSubstr("The instrument's error queue has an entry: -113, "));
}

TEST(ProgramErrors, NoListener) {
    const std::string port = UnusedPort();
    const std::string resource = "TCPIP::127.0.0.1::" + port + "::SOCKET";
    for (const char* command : {"info", "capture", "scpi"}) {
        const ProcessResult result = Kestrion({command, "--resource", resource});
        EXPECT_EQ(result.exitCode, 1) << command;
        EXPECT_EQ(result.out, "") << command;
        EXPECT_THAT(result.err, StartsWith("kestrion: ")) << command;
        // The sentence before is the VISA library's; what follows is the program's.
        EXPECT_THAT(result.err,
                    EndsWith("\nResource = " + resource +
                             "\nhint: Is anything listening at 127.0.0.1 port " + port +
                             "? 'kestrion-scope' serves a virtual instrument over TCP.\n"))
            << command;
    }
}

TEST(ProgramErrors, UnknownModel) {
    const ProcessResult result = Kestrion({"info", "--resource", "VIRTUAL::PL7255C::INSTR"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, StartsWith("kestrion: "));
    EXPECT_THAT(result.err, HasSubstr("\nResource = VIRTUAL::PL7255C::INSTR\n"
                                      "hint: 'PL7255C' is no model. "));
    EXPECT_THAT(result.err, HasSubstr("'kestrion models' lists, such as PL7254C"));
}

TEST(ProgramErrors, BadUsage) {
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases{
        {{}, "kestrion: A command is missing.\n"},
        {{"capture", "--source", "CH5"}, "kestrion: Unknown source 'CH5'.\n"},
        {{"capture", "--colour"}, "kestrion: Unknown option '--colour'.\n"},
        {{"plot"}, "kestrion: Unknown command 'plot'.\n"},
        {{"info", "--options", "speed=1"}, "kestrion: Unknown driver option 'speed'.\n"}};
    for (const auto& [arguments, line] : cases) {
        const ProcessResult result = Kestrion(arguments);
        EXPECT_EQ(result.exitCode, 2) << line;
        EXPECT_EQ(result.out, "") << line;
        EXPECT_THAT(result.err, StartsWith(line));
        EXPECT_THAT(result.err, HasSubstr("\nhint: Legal ")) << line;
    }
}

TEST(ProgramErrors, ABadOptionValueIsTheDriversOwnText) {
    const ProcessResult result = Kestrion({"info", "--options", "simulate=yes"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err,
              "kestrion: The yes value in the option string is unknown.\n"
              "hint: Legal values are true and false, 1 and 0.\n");
}

TEST(ProgramErrors, SimulationHasNothingToMeasure) {
    const ProcessResult result = Kestrion({"measure", "--options", "simulate=true"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, StartsWith("kestrion: A simulated session has nothing to measure.\n"));
}

TEST(ProgramErrors, AWrongAcquisitionModeHasAHint) {
    // Each run has an instrument of its own, so the mode is set where a server keeps it.
    const ServerProcess server({KESTRION_SCOPE_PROGRAM, "--port", "0", "--bind", "127.0.0.1"});
    const std::string resource = server.FirstLine();
    ASSERT_EQ(Kestrion({"scpi", "--resource", resource, "ACQUIRE:MODE ENVELOPE"}).exitCode, 0);
    const ProcessResult result = Kestrion({"capture", "--resource", resource});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, StartsWith("kestrion: Invalid acquisition type.\n"));
    EXPECT_THAT(result.err, HasSubstr("hint: A capture needs the acquisition mode sample"));
}

TEST(ProgramErrors, AnUnwritableFileLeavesNothingBehind) {
    const TemporaryFolder folder;
    const std::string target = folder.File("none/a.csv").string();
    const ProcessResult result = Kestrion({"capture", "--csv", target});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "kestrion: Cannot write '" + target + "': No such file or directory.\n");
    EXPECT_THAT(folder.Names(), IsEmpty());
}

TEST(ProgramErrors, AFullStandardOutputIsAFailure) {
    const ProcessResult result = Kestrion({"models"}, "/dev/full");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.err, "kestrion: Cannot write to standard output.\n");
}

// The instrument's own signal at CH1: a sine of 1 kHz from -1 V to 1 V.
TEST(ProgramOverASocket, MeasuresTheSignal) {
    const ServerProcess server({KESTRION_SCOPE_PROGRAM, "--port", "0", "--bind", "127.0.0.1"});
    const ProcessResult result =
        Kestrion({"measure", "--source", "CH1", "--type", "frequency,pk2pk,rms", "--resource",
                  server.FirstLine()});
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_THAT(result.out, EndsWith("Measurement         CH1\n"
                                     "Frequency     1.000 kHz\n"
                                     "Peak to peak    2.000 V\n"
                                     "RMS            707.1 mV\n"));
}

TEST(ProgramOverASocket, CapturesByPolling) {
    const TemporaryFolder folder;
    const ServerProcess server({KESTRION_SCOPE_PROGRAM, "--port", "0", "--bind", "127.0.0.1"});
    const std::string resource = server.FirstLine();
    ASSERT_THAT(resource, MatchesRegex("TCPIP.*::127\\.0\\.0\\.1::[0-9]+::SOCKET"));
    const ProcessResult result =
        Kestrion({"capture", "--resource", resource, "--source", "CH1,CH2", "--points", "1000",
                  "--csv", folder.File("a.csv").string()});
    ASSERT_EQ(result.exitCode, 0) << result.err;
    ExpectTheSine(result.out);
    EXPECT_THAT(SummaryLine(result.out, "CH2"), HasSubstr(" 1000 "));
    // What the instrument holds now is what was captured.
    const ProcessResult again = Kestrion({"capture", "--as-is", "--resource", resource, "--source",
                                          "CH1,CH2", "--csv", folder.File("b.csv").string()});
    ASSERT_EQ(again.exitCode, 0) << again.err;
    EXPECT_EQ(ReadFile(folder.File("a.csv")), ReadFile(folder.File("b.csv")));
    EXPECT_EQ(again.out, result.out);
}

}  // namespace
}  // namespace kestrion::cli
