// The program kestrion-scope from the outside.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>

#include <array>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <vector>

#include "tests/virtual/client.h"

extern char** environ;

namespace virtual_scope {
namespace {

// A running kestrion-scope with its standard output and error in pipes.
class Program {
  public:
    explicit Program(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), SCOPE_PROGRAM);
        std::vector<char*> argv;
        for (std::string& argument : arguments) {
            argv.push_back(argument.data());
        }
        argv.push_back(nullptr);
        std::array<int, 2> out{};
        std::array<int, 2> error{};
        EXPECT_EQ(pipe2(out.data(), O_CLOEXEC), 0);
        EXPECT_EQ(pipe2(error.data(), O_CLOEXEC), 0);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&actions, error[1], STDERR_FILENO);
        EXPECT_EQ(posix_spawn(&process_, SCOPE_PROGRAM, &actions, nullptr, argv.data(), environ),
                  0);
        posix_spawn_file_actions_destroy(&actions);
        close(out[1]);
        close(error[1]);
        out_ = out[0];
        error_ = error[0];
    }
    ~Program() {
        if (process_ > 0) {
            kill(process_, SIGKILL);
            Wait();
        }
        close(out_);
        close(error_);
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    std::string OutLine() {
        std::string line;
        char c = 0;
        while (read(out_, &c, 1) == 1 && c != '\n') {
            line += c;
        }
        return line;
    }
    std::string RestOfOutput() { return ReadAll(out_); }
    std::string RestOfError() { return ReadAll(error_); }

    void Signal(int number) { kill(process_, number); }

    // The exit status, or minus the number of the signal that ended it.
    int Wait() {
        int status = 0;
        EXPECT_EQ(waitpid(process_, &status, 0), process_);
        process_ = 0;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }

  private:
    static std::string ReadAll(int pipe) {
        std::string text;
        std::array<char, 4096> buffer;
        for (ssize_t n = read(pipe, buffer.data(), buffer.size()); n > 0;
             n = read(pipe, buffer.data(), buffer.size())) {
            text.append(buffer.data(), static_cast<std::size_t>(n));
        }
        return text;
    }

    pid_t process_ = 0;
    int out_ = -1;
    int error_ = -1;
};

// The port in "TCPIP0::127.0.0.1::<port>::SOCKET"; 0 if the line is anything else.
std::uint16_t PortOf(const std::string& line) {
    const std::string prefix = "TCPIP0::127.0.0.1::";
    const std::string suffix = "::SOCKET";
    if (!line.starts_with(prefix) || !line.ends_with(suffix)) {
        return 0;
    }
    return static_cast<std::uint16_t>(
        std::stoi(line.substr(prefix.size(), line.size() - prefix.size() - suffix.size())));
}

TEST(ScopeProgram, PrintsItsAddressAndEndsWithASignal) {
    for (const int signal : {SIGINT, SIGTERM}) {
        Program program({"--port", "0"});
        const std::uint16_t port = PortOf(program.OutLine());
        ASSERT_NE(port, 0);
        Client client(port);
        EXPECT_EQ(client.Query("*IDN?"), "KESTRION,PL7254C,V000001,1.0.0");
        program.Signal(signal);
        EXPECT_EQ(program.Wait(), 0);
        EXPECT_EQ(program.RestOfOutput(), "");
        EXPECT_EQ(program.RestOfError(), "");
        EXPECT_TRUE(client.IsClosedByServer());
    }
}

TEST(ScopeProgram, PlaysTheModelAndEndsAfterOneClient) {
    Program program({"--port", "0", "--model", "HR5052BE", "--once"});
    {
        Client client(PortOf(program.OutLine()));
        EXPECT_EQ(client.Query("*IDN?"), "KESTRION,HR5052BE,V000001,1.0.0");
    }
    EXPECT_EQ(program.Wait(), 0);
}

TEST(ScopeProgram, LogsToStandardError) {
    Program program({"--port", "0", "--once", "--log"});
    {
        Client client(PortOf(program.OutLine()));
        EXPECT_EQ(client.Query("*OPC?"), "1");
    }
    EXPECT_EQ(program.Wait(), 0);
    EXPECT_EQ(program.RestOfError(), "1 -> *OPC?\n1 <- 1\n");
}

TEST(ScopeProgram, LogsToAFile) {
    const std::string path =
        (std::filesystem::temp_directory_path() / ("scope-log-" + std::to_string(getpid())))
            .string();
    Program program({"--port", "0", "--once", "--log", path});
    {
        Client client(PortOf(program.OutLine()));
        EXPECT_EQ(client.Query("*OPC?"), "1");
    }
    EXPECT_EQ(program.Wait(), 0);
    std::stringstream text;
    text << std::ifstream(path).rdbuf();
    std::filesystem::remove(path);
    EXPECT_EQ(text.str(), "1 -> *OPC?\n1 <- 1\n");
}

TEST(ScopeProgram, RefusesALogThatCannotBeWritten) {
    Program program({"--port", "0", "--log", "/no/such/folder/log"});
    EXPECT_EQ(program.Wait(), 1);
    EXPECT_EQ(program.RestOfError(), "kestrion-scope: cannot write /no/such/folder/log\n");
}

TEST(ScopeProgram, RefusesAnUnknownModel) {
    Program program({"--port", "0", "--model", "PL9999"});
    EXPECT_EQ(program.Wait(), 1);
    EXPECT_EQ(program.RestOfOutput(), "");
    EXPECT_EQ(
        program.RestOfError(),
        "kestrion-scope: unknown model PL9999; the models are MR5104B, MR71254C, MR72304DX, "
        "SW72004C, SW73304D, PL5034, PL7254C, PL72304DX, PL77002SX, CR7404B, LK7254B, LK7054, "
        "IB6804B, IB6404, IB6124C, HR5054B, HR5052BE, HR5104\n");
}

TEST(ScopeProgram, RefusesAnUnknownOptionOrPort) {
    for (const char* argument : {"--nonsense", "--port=70000", "--port=x"}) {
        Program program({argument});
        EXPECT_NE(program.Wait(), 0) << argument;
        EXPECT_EQ(program.RestOfOutput(), "") << argument;
    }
}

TEST(ScopeProgram, ListsItsModels) {
    Program program({"--list-models"});
    EXPECT_EQ(program.RestOfOutput(),
              "MR5104B\nMR71254C\nMR72304DX\nSW72004C\nSW73304D\nPL5034\nPL7254C\nPL72304DX\n"
              "PL77002SX\nCR7404B\nLK7254B\nLK7054\nIB6804B\nIB6404\nIB6124C\nHR5054B\nHR5052BE\n"
              "HR5104\n");
    EXPECT_EQ(program.Wait(), 0);
}

TEST(ScopeProgram, TellsItsVersion) {
    Program program({"--version"});
    EXPECT_EQ(program.RestOfOutput(), "kestrion-scope " SCOPE_VERSION "\n");
    EXPECT_EQ(program.Wait(), 0);
}

}  // namespace
}  // namespace virtual_scope
