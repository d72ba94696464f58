#include <chrono>
#include <iostream>
#include <string>
#include <thread>
#include <vector>

#include "cli/program.h"
#include "cli/terminal.h"

int main(int argc, char** argv) {
    using namespace kestrion::cli;
    const Environment environment{.out = std::cout,
                                  .err = std::cerr,
                                  .outIsTerminal = OutputIsTerminal(),
                                  .errIsTerminal = ErrorIsTerminal(),
                                  .columns = TerminalColumns(),
                                  .version = DriverVersion(),
                                  .makeClient = MakeScopeClient,
                                  .timing = {.now = std::chrono::steady_clock::now,
                                             .sleep = [](std::chrono::milliseconds time) {
                                                 std::this_thread::sleep_for(time);
                                             }}};
    return Run(std::vector<std::string>(argv + 1, argv + argc), environment);
}
