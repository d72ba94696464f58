// kestrion-scope: an oscilloscope in software on a TCP port.
#include <fmt/format.h>
#include <CLI/CLI.hpp>
#include <atomic>
#include <csignal>
#include <fstream>
#include <iostream>

#include "virtual/server/socket_server.h"

namespace {

std::atomic<virtual_scope::SocketServer*> runningServer = nullptr;
static_assert(decltype(runningServer)::is_always_lock_free);

extern "C" void StopServer(int /*signal*/) {
    if (auto* server = runningServer.load()) {
        server->RequestStop();
    }
}

struct CommandLine {
    virtual_scope::ServerOptions server;
    bool listModels = false;
    std::string logFile;
    const CLI::Option* log = nullptr;
};

void Describe(CLI::App& app, CommandLine& line) {
    app.set_version_flag("--version", "kestrion-scope " KESTRION_VERSION);
    app.add_option("--port", line.server.port, "TCP port; 0 takes a free one")
        ->capture_default_str();
    app.add_option("--bind", line.server.address, "address to listen on")->capture_default_str();
    app.add_option("--model", line.server.model, "model to play")->capture_default_str();
    app.add_flag("--list-models", line.listModels, "print the names of the models and end");
    line.log = app.add_option("--log", line.logFile,
                              "write one line for each message to FILE, or to standard error")
                   ->expected(0, 1)
                   ->type_name("[FILE]");
    app.add_flag("--once", line.server.once, "end when the first client leaves");
}

int Serve(const virtual_scope::ServerOptions& options) {
    std::string error;
    const auto server = virtual_scope::SocketServer::Start(options, error);
    if (!server) {
        std::cerr << "kestrion-scope: " << error << '\n';
        return 1;
    }
    runningServer = server.get();
    std::signal(SIGINT, StopServer);
    std::signal(SIGTERM, StopServer);
    std::cout << server->ResourceName() << std::endl;  // a waiting script has to see it at once
    server->Wait();
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGTERM, SIG_DFL);
    runningServer = nullptr;
    return 0;
}

int Run(CommandLine& line) {
    if (line.listModels) {
        std::cout << fmt::format("{}\n", fmt::join(virtual_scope::ModelNames(), "\n"));
        return 0;
    }
    std::ofstream logFile;
    if (line.log->count() > 0) {
        line.server.log = &std::cerr;
    }
    if (!line.logFile.empty()) {
        logFile.open(line.logFile);
        if (!logFile) {
            std::cerr << "kestrion-scope: cannot write " << line.logFile << '\n';
            return 1;
        }
        line.server.log = &logFile;
    }
    return Serve(line.server);
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app("An oscilloscope in software on a TCP port.");
    CommandLine line;
    line.server.port = 4000;
    Describe(app, line);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error);
    }
    return Run(line);
}
