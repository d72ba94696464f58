#include "bench/rounds.h"

#include <benchmark/benchmark.h>

#include <charconv>
#include <cstdio>
#include <exception>
#include <fstream>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace bench {
namespace {

// The value of an option such as --rounds=5; nothing if the argument is another one.
std::optional<std::string_view> ValueOf(std::string_view argument, std::string_view option) {
    if (!argument.starts_with(option)) {
        return std::nullopt;
    }
    return argument.substr(option.size());
}

}  // namespace

int RunInRounds(int argc, char** argv) {
    int rounds = 5;
    std::string output;
    std::vector<char*> others;
    for (char* argument : std::vector<char*>(argv, argv + argc)) {
        if (const auto count = ValueOf(argument, "--rounds=")) {
            (void)std::from_chars(count->data(), count->data() + count->size(), rounds);
        } else if (const auto file = ValueOf(argument, "--output=")) {
            output = *file;
        } else {
            others.push_back(argument);
        }
    }
    int count = static_cast<int>(others.size());
    benchmark::Initialize(&count, others.data());
    if (benchmark::ReportUnrecognizedArguments(count, others.data())) {
        return 2;
    }
    std::ofstream file(output);
    std::ostream& report = output.empty() ? std::cout : file;
    report << "[\n";
    for (int round = 0; round < rounds; ++round) {
        benchmark::JSONReporter reporter;
        reporter.SetOutputStream(&report);
        reporter.SetErrorStream(&std::cerr);
        if (benchmark::RunSpecifiedBenchmarks(&reporter) == 0) {
            std::fprintf(stderr, "no benchmark has that name\n");
            return 2;
        }
        report << (round + 1 < rounds ? ",\n" : "]\n") << std::flush;
    }
    return report.good() ? 0 : 1;
}

int RunProgram(int (*program)(int argc, char** argv), int argc, char** argv) {
    try {
        return program(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", argv[0], error.what());
        return 1;
    }
}

}  // namespace bench
